#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

#include "app/forms/ConvertOnScreen.h"
#include "simulator/Instrument.h"
#include "support/TestFolder.h"

namespace marisonde {
namespace {

namespace fs = std::filesystem;

class ConvertOnScreenTest : public testing::Test {
  protected:
    ConvertOnScreenTest() {
        console.out = [](std::string_view) { ADD_FAILURE() << "nothing is said of what went well"; };
        console.error = [this](std::string_view text) { said += text; };
        settings.sigma.aStarValue = 0.5;
        TestFolder::Write(folder / "a.cal",
                          simulator::MakeInstrument(simulator::Model::Fathom2, {})->CalText());
    }
    /// A raw file of so many samples.
    PairToConvert Pair(int samples) {
        std::string text;
        for (int i = 0; i < samples; ++i)
            text += std::to_string(1231070712 + i) + ",1000,2000,4000,4000,8000,2000,0,0\r\n";
        TestFolder::Write(folder / "cast one.raw", text);
        return {folder / "cast one.raw", folder / "a.cal"};
    }
    void Turn(int turns) {
        for (int i = 0; i < turns && !status; ++i) QCoreApplication::processEvents();
    }
    void Start(const PairToConvert& pair) {
        conversion.Start(pair, settings, [this](int end) { status = end; });
    }
    std::string Label() { return conversion.Form().findChild<QLabel*>("Message")->text().toStdString(); }

    TestFolder folder;
    VirtualClock clock;
    Console console;
    ConvertSettings settings;
    ConvertOnScreen conversion{clock, console};
    std::optional<int> status;
    std::string said;
};

TEST_F(ConvertOnScreenTest, TheFormNamesBothFilesAndGoesWithTheEnd) {
    Start(Pair(10));
    EXPECT_EQ(conversion.Form().objectName(), "ProgressForm");
    EXPECT_EQ(conversion.Form().windowTitle(), "Marisonde Processing");
    EXPECT_EQ(Label(), (folder / "cast one.raw").string() + "; " + (folder / "a.cal").string());
    EXPECT_TRUE(conversion.Form().isVisible());
    Turn(100);
    EXPECT_EQ(status, 0);
    EXPECT_FALSE(conversion.Form().isVisible());
    const std::string dat = TestFolder::Read(folder / "cast one.dat");
    const std::string data = dat.substr(dat.find("[Data]\r\n"));
    EXPECT_EQ(std::count(data.begin(), data.end(), '\n'), 11);
    EXPECT_EQ(said, "");
}

TEST_F(ConvertOnScreenTest, TheBarFollowsAndCancelLeavesNoFile) {
    Start(Pair(150000));
    for (int i = 0; i < 1000 && conversion.Form().findChild<QProgressBar*>()->value() <= 0; ++i) {
        clock.AdvanceBy(Millis(100));
        Turn(1);
    }
    EXPECT_GT(conversion.Form().findChild<QProgressBar*>()->value(), 0);
    EXPECT_LT(conversion.Form().findChild<QProgressBar*>()->value(), 1000);
    ASSERT_FALSE(status);
    QTest::mouseClick(conversion.Form().findChild<QPushButton*>("CancelButton"), Qt::LeftButton);
    Turn(100);
    EXPECT_EQ(status, 1);
    EXPECT_EQ(TestFolder::Names(folder.Path()), (std::set<std::string>{"a.cal", "cast one.raw"}));
    EXPECT_EQ(said, "");
}

TEST_F(ConvertOnScreenTest, AnInterruptedRunLeavesNoFile) {
    bool interrupted = false;
    console.interrupted = [&interrupted] { return interrupted; };
    Start(Pair(150000));
    Turn(1);
    ASSERT_FALSE(status);
    interrupted = true;
    Turn(100);
    EXPECT_EQ(status, 1);
    EXPECT_EQ(TestFolder::Names(folder.Path()), (std::set<std::string>{"a.cal", "cast one.raw"}));
}

TEST_F(ConvertOnScreenTest, WhatGoesWrongIsSaidOnTheTerminal) {
    TestFolder::Write(folder / "a.cal", "no calibration");
    Start(Pair(10));
    EXPECT_EQ(status, 1);
    EXPECT_EQ(said,
              "marisonde: Cannot proceed, because the specified calibration file does not exist or is of an "
              "unknown type.\n");
    EXPECT_FALSE(fs::exists(folder / "cast one.dat"));
    EXPECT_FALSE(conversion.Form().isVisible());
}

}  // namespace
}  // namespace marisonde
