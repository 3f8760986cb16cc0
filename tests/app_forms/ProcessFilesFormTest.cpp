#include <QAction>
#include <QCheckBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <filesystem>

#include "app/forms/ProcessFilesForm.h"
#include "app_forms/FormsFixture.h"
#include "decode/Lines.h"

namespace marisonde {
namespace {

const std::string kLine = lines::WithChecksum(lines::kSample) + "\r\n";

class ProcessFilesFormTest : public FormsFixture {
  protected:
    ProcessFilesFormTest() {
        for (const char* name : {"in/a.raw", "in/B.raw", "in/notes.txt"})
            TestFolder::Write(folder / name, kLine);
        std::filesystem::create_directory(folder / "out");
        TestFolder::Write(folder / "x.cal", simulator::MakeInstrument(simulator::Model::Corvane6)->CalText());
    }
    void Show() {
        window = Empty();
        window->findChild<QAction*>("ProcessFilesItem")->trigger();
        Settle();
        form = window->findChild<ProcessFilesForm*>();
        ASSERT_NE(form, nullptr);
        ASSERT_TRUE(form->isVisible());
    }
    template <class Control>
    Control* Get(const char* name) {
        auto* const control = form->findChild<Control*>(name);
        EXPECT_NE(control, nullptr) << name;
        return control;
    }
    void FillIn() {
        Get<QLineEdit>("SourceFileText")->setText(QString::fromStdString((folder / "in").string()));
        Get<QLineEdit>("DatFileText")->setText(QString::fromStdString((folder / "out").string()));
        Get<QLineEdit>("CalFileText")->setText(QString::fromStdString((folder / "x.cal").string()));
        Get<QListWidget>("List1")->selectAll();
    }
    void Process() {
        QTest::mouseClick(Get<QPushButton>("ProcessButton"), Qt::LeftButton);
        Run(4 * kTick);
    }
    /// Begins the work on a first file of so many lines and a short second one. The usual number takes
    /// several slices even of a clock that stands still.
    void BeginLong(int linesOfFirst = 200000) {
        std::string cast;
        for (int i = 0; i < linesOfFirst; ++i) cast += kLine;
        TestFolder::Write(folder / "in/a.raw", cast);
        Show();
        FillIn();
        QTest::mouseClick(Get<QPushButton>("ProcessButton"), Qt::LeftButton);
        ASSERT_FALSE(Get<QPushButton>("ProcessButton")->isEnabled());
    }
    std::set<std::string> Out() { return TestFolder::Names(folder / "out"); }

    MainForm* window = nullptr;
    ProcessFilesForm* form = nullptr;
};

TEST_F(ProcessFilesFormTest, ListsRawFilesOnlyAndConvertsTheSelectedOnes) {
    Show();
    FillIn();
    auto* const list = Get<QListWidget>("List1");
    ASSERT_EQ(list->count(), 2);
    EXPECT_EQ(list->item(0)->text(), "a.raw");
    EXPECT_EQ(list->item(1)->text(), "B.raw");
    list->item(1)->setSelected(false);
    Process();
    EXPECT_EQ(Out(), std::set<std::string>{"a.dat"});
    EXPECT_TRUE(list->selectedItems().isEmpty());
    EXPECT_TRUE(form->isVisible());
    EXPECT_TRUE(Get<QPushButton>("ProcessButton")->isEnabled());
}

#ifdef __linux__
TEST_F(ProcessFilesFormTest, FilesMayHaveAnyName) {
    const std::string names[] = {"caf\xE9 au lait", "caf\xC3\xA9 au lait"};
    for (const std::string& name : names) TestFolder::Write(folder / ("in/" + name + ".RAW"), kLine);
    TestFolder::Write(folder / "in/.hidden.raw", kLine);
    std::filesystem::create_directory(folder / "in/folder.raw");
    Show();
    FillIn();
    auto* const list = Get<QListWidget>("List1");
    ASSERT_EQ(list->count(), 4);
    EXPECT_EQ(list->item(2)->text(), list->item(3)->text());
    Process();
    EXPECT_EQ(Out(), (std::set<std::string>{"a.dat", "B.dat", names[0] + ".dat", names[1] + ".dat"}));
    EXPECT_TRUE(list->selectedItems().isEmpty());
}
#endif

TEST_F(ProcessFilesFormTest, WorksOnBetweenTheTicks) {
    BeginLong();
    for (int turns = 0; turns < 100 && !Get<QPushButton>("ProcessButton")->isEnabled(); ++turns) Settle();
    EXPECT_TRUE(Get<QPushButton>("ProcessButton")->isEnabled());
    EXPECT_EQ(Out(), (std::set<std::string>{"a.dat", "B.dat"}));
}

TEST_F(ProcessFilesFormTest, ShownAgainAtWorkItKeepsWhatWaits) {
    BeginLong();
    form->Show();
    EXPECT_EQ(Get<QListWidget>("List1")->selectedItems().size(), 2);
    for (int turns = 0; turns < 100 && !Get<QPushButton>("ProcessButton")->isEnabled(); ++turns) Settle();
    EXPECT_TRUE(Get<QListWidget>("List1")->selectedItems().isEmpty());
}

TEST_F(ProcessFilesFormTest, DecimalDataNeedNoCalibration) {
    Show();
    FillIn();
    Get<QLineEdit>("CalFileText")->clear();
    EXPECT_FALSE(Get<QCheckBox>("HouseCheck")->isEnabled());
    Get<QRadioButton>("ProcessOptionButton(1)")->setChecked(true);
    EXPECT_TRUE(Get<QCheckBox>("HouseCheck")->isEnabled());
    EXPECT_FALSE(Get<QLineEdit>("CalFileText")->isEnabled());
    Get<QCheckBox>("HouseCheck")->setChecked(true);
    Get<QCheckBox>("SaveToSourceCheck")->setChecked(true);
    EXPECT_FALSE(Get<QLineEdit>("DatFileText")->isEnabled());
    Process();
    EXPECT_TRUE(TestFolder::Read(folder / "in/a.dec").starts_with("Time,Pressure,Snorm1,SigOff1,"));
    EXPECT_TRUE(std::filesystem::exists(folder / "in/B.dec"));
}

TEST_F(ProcessFilesFormTest, SaysWhatIsMissing) {
    Show();
    FillIn();
    Get<QListWidget>("List1")->clearSelection();
    Process();
    EXPECT_EQ(Message(form),
              "You must select some files from the list to specify those you wish to process.");
    EXPECT_TRUE(Out().empty());
}

TEST_F(ProcessFilesFormTest, AsksBeforeFilesAreReplaced) {
    TestFolder::Write(folder / "out/a.dat", "older");
    Show();
    FillIn();
    Process();
    EXPECT_EQ(
        Message(form),
        "1 of the 2 files you selected will overwrite existing data files. Do you wish to overwrite them?");
    Press(form, "NoButton");
    EXPECT_EQ(TestFolder::Read(folder / "out/a.dat"), "older");
    EXPECT_EQ(Get<QListWidget>("List1")->selectedItems().size(), 2);
    Process();
    Press(form, "YesButton");
    Run(2 * kTick);
    EXPECT_NE(TestFolder::Read(folder / "out/a.dat"), "older");
    EXPECT_EQ(Out(), (std::set<std::string>{"a.dat", "B.dat"}));
}

TEST_F(ProcessFilesFormTest, CancelFinishesTheFileAtWorkAndClosesOnlyAfterwards) {
    BeginLong(70000);
    EXPECT_EQ(Get<QPushButton>("CancelButton")->text().remove('&'), "Cancel");
    QTest::mouseClick(Get<QPushButton>("CancelButton"), Qt::LeftButton);
    EXPECT_TRUE(form->isVisible());
    Run(4 * kTick);
    EXPECT_EQ(Out(), std::set<std::string>{"a.dat"});
    EXPECT_EQ(Get<QPushButton>("CancelButton")->text().remove('&'), "Close");
    QTest::mouseClick(Get<QPushButton>("CancelButton"), Qt::LeftButton);
    EXPECT_FALSE(form->isVisible());
}

TEST_F(ProcessFilesFormTest, RemembersWhatWasFilledIn) {
    Show();
    FillIn();
    form->resize(form->size() + QSize(30, 20));
    form->reject();
    EXPECT_EQ(settings.GetSetting("ProcessFilesForm", "Width", "none"), std::to_string(form->width()));
    EXPECT_EQ(settings.GetSetting("ProcessFilesForm", "Top", "none"), std::to_string(form->geometry().top()));
    window->close();
    Settle();
    Show();
    EXPECT_EQ(Get<QLineEdit>("SourceFileText")->text().toStdString(), (folder / "in").string());
    EXPECT_EQ(Get<QLineEdit>("CalFileText")->text().toStdString(), (folder / "x.cal").string());
    EXPECT_EQ(Get<QListWidget>("List1")->count(), 2);
}

}  // namespace
}  // namespace marisonde
