#include "app/Calibrate.h"
#include "app/FilesFixture.h"

namespace marisonde {
namespace {

using simulator::Model;

constexpr const char* kEquipment =
    "Calibration of instruments requires special equipment and procedures.  For information about how to "
    "perform calibrations, please contact Venmark.  Do you really want to proceed with calibration?";
constexpr const char* kConnectNow =
    "No instrument is connected, so only limited functions will be available.  Do you wish to connect now?";
constexpr const char* kNoModel =
    "Calibration cannot proceed because no calibration file is loaded to specify the instrument type.";
constexpr const char* kAsleep = "The instrument is asleep.  Wake it before starting the calibration.";
constexpr const char* kNotYet = "Calibrating instruments is not part of this version yet";

class CalibrateTest : public FilesFixture {
  protected:
    /// The window has a workbench, and sends calibration files.
    DataWindow& Equip(DataWindow& window) {
        window.Children.push_back({"Cal", [] { return std::string("Calibration"); }, [this] { return open; },
                                   [this] { reached += "workbench "; }});
        window.SendToMultiC = [this](Operation&) -> QCoro::Task<> {
            reached += "file ";
            co_return;
        };
        return window;
    }
    /// A connected window without files.
    DataWindow& ConnectedWindow(Model model) {
        DataWindow& window = Equip(Keep(Scripted(model)));
        window.Files.CloseDataFiles(false);
        window.Link.State.InstState = InstStateCode::Stopped;
        return window;
    }
    /// The connect dialog of the window, in which this model is found.
    static void Offer(DataWindow& window, InstTypeCode found) {
        window.Link.ShowConnectForm = [&window, found](const std::function<void()>& closed) {
            window.Link.State.Connected = found != InstTypeCode::Unknown;
            window.Link.State.InstType = found;
            closed();
        };
    }
    std::string Calibrate(DataWindow& window, std::deque<Choice> answers) {
        dialogs.answers = std::move(answers);
        reached.clear();
        Do(window,
           [&](Operation& operation) -> QCoro::Task<> { return CalibrateCommand(operation, window); });
        return reached;
    }

    bool open = false;
    std::string reached;
};

TEST_F(CalibrateTest, OnlyWhatCanBeDoneIsOffered) {
    DataWindow& corvane = Keep(Scripted(Model::Corvane6));
    EXPECT_EQ(NoCalibratingText(corvane), kNotYet);
    EXPECT_EQ(NoCalibratingText(Equip(corvane)), "");
    corvane.Link.ClosePort();
    EXPECT_EQ(NoCalibratingText(corvane), "") << "the workbench has uses without an instrument";
    DataWindow& delph = Keep(Scripted(Model::Delph4));
    EXPECT_EQ(NoCalibratingText(delph), kNotYet);
    EXPECT_EQ(NoCalibratingText(Equip(delph)), "");
    delph.Link.State.Connected = false;
    EXPECT_EQ(NoCalibratingText(delph), "Connect the Delph-4 first");
}

TEST_F(CalibrateTest, EveryModelHasItsWay) {
    for (int code = 0; code < static_cast<int>(InstTypeCode::Unknown); ++code) {
        DataWindow& window = ConnectedWindow(static_cast<Model>(code));
        const bool delph = code >= 6;  // Fathom-2 and the Delphs
        EXPECT_EQ(Calibrate(window, {Choice::First}), delph ? "file " : "workbench ") << code;
        held.pop_back();
    }
}

TEST_F(CalibrateTest, ButtonsOfTheQuestions) {
    DataWindow& window = Equip(WithCal(Model::LTidal));
    EXPECT_EQ(Calibrate(window, {Choice::First, Choice::Third}), "");
    EXPECT_EQ(Asked(), (std::vector<std::string>{kEquipment, kConnectNow}));
    EXPECT_EQ(Buttons(0), "Yes|No|");
    EXPECT_EQ(Buttons(1), "Yes|No|Cancel");
    DataWindow& delph = ConnectedWindow(Model::Delph2);
    delph.Link.State.InstSerial = "D2001";
    EXPECT_EQ(Calibrate(delph, {Choice::Second}), "");
    EXPECT_EQ(Asked().back(),
              "Do you wish to load a new calibration file into the connected Delph-2, D2001?  The current "
              "calibration will be deleted from the instrument.");
    EXPECT_EQ(Buttons(2), "Yes|Cancel|");
}

TEST_F(CalibrateTest, AnInstrumentMayBeConnectedFirst) {
    DataWindow& window = Equip(WithCal(Model::Corvane6));
    Offer(window, InstTypeCode::Corvane6);
    EXPECT_EQ(Calibrate(window, {Choice::First, Choice::First}), "workbench ");
    window.Link.State.Connected = false;
    Offer(window, InstTypeCode::Unknown);
    EXPECT_EQ(Calibrate(window, {Choice::First, Choice::First}), "") << "the dialog was cancelled";
    EXPECT_TRUE(dialogs.notices.empty());
}

TEST_F(CalibrateTest, WhatWasConnectedMustHaveAWorkbench) {
    DataWindow& window = Equip(WithCal(Model::Corvane6));
    Offer(window, InstTypeCode::Delph4);
    EXPECT_EQ(Calibrate(window, {Choice::First, Choice::First}), "");
    EXPECT_EQ(dialogs.notices, std::vector<std::string>{kNoModel});
}

TEST_F(CalibrateTest, AnOpenWorkbenchIsShownWithoutAnotherQuestion) {
    open = true;
    DataWindow& window = Equip(Keep(Simulated(Model::Corvane6, {})));
    Run(window, std::chrono::seconds(3));
    EXPECT_EQ(Calibrate(window, {}), "workbench ");
    EXPECT_TRUE(window.Files.AnyOpen());
    window.Link.State.InstState = InstStateCode::Sleeping;
    EXPECT_EQ(Calibrate(window, {}), "");
    window.Link.State.InstType = InstTypeCode::Unknown;
    EXPECT_EQ(Calibrate(window, {}), "");
    EXPECT_TRUE(Asked().empty());
    EXPECT_EQ(dialogs.notices, (std::vector<std::string>{kAsleep, kNoModel}));
}

TEST_F(CalibrateTest, EndingTheOperationEndsItsQuestion) {
    DataWindow& window = ConnectedWindow(Model::Corvane6);
    EXPECT_EQ(Calibrate(window, {}), "");
    OperationsOf(window).CancelAll();
    Settle();
    EXPECT_FALSE(AnythingRuns());
    EXPECT_EQ(reached, "");
}

}  // namespace
}  // namespace marisonde
