#include <QAction>
#include <QDropEvent>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QToolButton>
#include <QUrl>

#include "app/RecentFiles.h"
#include "app/forms/FileCommands.h"
#include "app_forms/FormsFixture.h"
#include "link/SimulatedPorts.h"

namespace marisonde {
namespace {

class FileCommandsTest : public FormsFixture {
  protected:
    FileCommandsTest() { app.ports = &ports; }
    ~FileCommandsTest() override { shell.reset(); }

    SimulatedPorts ports{clock};

    std::string Dat(const std::string& name, int samples) {
        std::string text =
            "[Header]\r\nFileType=dat\r\nDeviceType=Fathom-2\r\n[Channels]\r\n\"k(532)\"\r\n"
            "\"k(650)\"\r\n[Data]\r\n";
        for (int i = 1; i <= samples; ++i) text += std::to_string(40000 + i) + ",1,0.5,0.25,20\r\n";
        TestFolder::Write(folder / name, text);
        return (folder / name).string();
    }
    static QAction* Item(const QWidget* form, const char* name) {
        auto* const action = form->findChild<QAction*>(name);
        EXPECT_NE(action, nullptr) << name;
        return action;
    }
    void Trigger(QWidget* form, const char* name) {
        Item(form, name)->trigger();
        Run(2 * kTick);
    }
    void Drop(QWidget* form, const std::vector<std::string>& paths) {
        QMimeData data;
        QList<QUrl> urls;
        for (const std::string& path : paths) urls << QUrl::fromLocalFile(QString::fromStdString(path));
        data.setUrls(urls);
        Drop(form, data);
    }
    void Drop(QWidget* form, const QMimeData& data) {
        QDragEnterEvent enter(QPoint(300, 300), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(form, &enter);
        EXPECT_TRUE(enter.isAccepted());
        QDropEvent drop(QPointF(300, 300), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(form, &drop);
        Run(6 * kTick);
    }
    /// Gives this name to the file dialog that is open.
    void Choose(QWidget* form, const std::string& path) {
        auto* const dialog = form->findChild<QFileDialog*>();
        ASSERT_NE(dialog, nullptr);
        dialog->findChild<QLineEdit*>("fileNameEdit")->setText(QString::fromStdString(path));
        QMetaObject::invokeMethod(dialog, "accept");
        Run(6 * kTick);
    }
    MainForm* Second() { return shell->Windows().size() > 1 ? shell->Windows()[1] : nullptr; }
};

TEST_F(FileCommandsTest, ItemsAndButtonsHaveTheirNamesAndKeys) {
    MainForm* const form = Empty();
    const std::pair<const char*, QKeySequence> items[] = {{"New_File_Menu", QKeySequence("Ctrl+N")},
                                                          {"Open_File_menu", QKeySequence("Ctrl+O")},
                                                          {"SaveFileItem", QKeySequence("Ctrl+S")},
                                                          {"SaveAsItem", QKeySequence("Ctrl+Shift+S")},
                                                          {"CloseWindowItem", QKeySequence("Ctrl+W")}};
    for (const auto& [name, key] : items) EXPECT_EQ(Item(form, name)->shortcut(), key) << name;
    for (const char* name : {"CloseFile_menu", "ProcessFilesItem", "ExitItem", "SelectCalItem"})
        Item(form, name);
    for (const char* name : {"Load_Button", "Save_Button", "CloseFileButton"}) {
        auto* const button = form->findChild<QToolButton*>(name);
        ASSERT_NE(button, nullptr) << name;
        EXPECT_FALSE(button->accessibleName().isEmpty()) << name;
        EXPECT_FALSE(button->icon().isNull()) << name;
    }
    EXPECT_EQ(form->menuBar()->actions().first()->text(), "&File");
}

TEST_F(FileCommandsTest, OpeningShowsTheFile) {
    MainForm* const form = Empty();
    EXPECT_FALSE(Item(form, "CloseFile_menu")->isEnabled());
    Trigger(form, "Open_File_menu");
    Choose(form, Dat("two words.dat", 12));
    EXPECT_EQ(form->windowTitle(), "two words.dat - Marisonde");
    EXPECT_EQ(Text(form, "StatusLine"), "two words.dat: 12 points");
    EXPECT_TRUE(form->findChild<QLabel*>("StatusLine")->isVisible());
    EXPECT_FALSE(form->findChild<QProgressBar*>("LoadProgress")->isVisible());
    EXPECT_NE(Text(form, "DataPath").find(">Data"), std::string::npos);
    EXPECT_TRUE(Item(form, "CloseFile_menu")->isEnabled());
    QTest::mouseClick(form->findChild<QPushButton*>("HideStatusLine"), Qt::LeftButton);
    Run(kTick);
    EXPECT_FALSE(form->findChild<QLabel*>("StatusLine")->isVisible());
    Trigger(form, "CloseFile_menu");
    EXPECT_EQ(form->windowTitle(), "No connection - Marisonde");
    EXPECT_EQ(form->Window().Plot.PlotIndex(), 1);
}

TEST_F(FileCommandsTest, NoTemperatureIsMadeUpForFilesWithoutOne) {
    MainForm* const fathom = Empty();
    Drop(fathom, {Dat("one.dat", 3)});
    EXPECT_EQ(Text(fathom, "TemperaturePanel"), "20.00 C");
    MainForm* const tidal = Empty();
    TestFolder::Write(
        folder / "n.dat",
        "[Header]\r\nFileType=dat\r\nDeviceType=n-Tidal\r\n[Data]\r\n40001,7,0.01,0.02,0.5\r\n");
    Drop(tidal, {(folder / "n.dat").string()});
    EXPECT_EQ(Text(tidal, "DepthPanel"), "7.00 m");
    EXPECT_EQ(Text(tidal, "TemperaturePanel"), "---");
}

TEST_F(FileCommandsTest, DroppedFilesOpenEachInItsWindow) {
    MainForm* const form = Empty();
    Drop(form, {Dat("one.dat", 3), Dat("two.dat", 4)});
    EXPECT_EQ(form->windowTitle(), "one.dat - Marisonde");
    ASSERT_NE(Second(), nullptr);
    Run(4 * kTick);
    EXPECT_EQ(Second()->windowTitle(), "two.dat - Marisonde");
    EXPECT_TRUE(Second()->isVisible());
    EXPECT_EQ(Second()->Window().Plot.PlotIndex(), 5);
}

TEST_F(FileCommandsTest, ADroppedCalibrationIsSelected) {
    MainForm* const form = Empty();
    const auto path = folder / "a.cal";
    TestFolder::Write(path, simulator::MakeInstrument(simulator::Model::LTidal, {})->CalText());
    Drop(form, {path.string()});
    EXPECT_EQ(form->Window().Link.CalData.InstType, InstTypeCode::LTidal);
    EXPECT_TRUE(form->Window().Link.State.CalReady);
}

TEST_F(FileCommandsTest, TheEscapeKeyStopsLoading) {
    MainForm* const form = Empty();
    form->Window().Plot.MaxGraphPoints = 100000;
    const std::string text = TestFolder::Read(Dat("big.dat", 90000));
    std::string many = text;
    const std::string lines = text.substr(text.find("40001"));
    for (int i = 0; i < 5; ++i) many += lines;
    TestFolder::Write(folder / "big.dat", many);
    form->Files().OpenGiven({(folder / "big.dat").string()});
    // The first full group asks; its answer lets the load go on.
    for (int i = 0; i < 20 && Open(form, "YesNoCancelForm") == nullptr; ++i) Run(kTick);
    EXPECT_NE(Message(form).find("this group of 100000 points"), std::string::npos);
    form->Files().Update();
    EXPECT_EQ(Text(form, "StatusLine"), "Loading Data");
    EXPECT_TRUE(form->findChild<QProgressBar*>("LoadProgress")->isVisible());
    EXPECT_GT(form->findChild<QProgressBar*>("LoadProgress")->value(), 0);
    auto* const stop = form->findChild<QPushButton*>("StopLoading");
    EXPECT_TRUE(stop->isVisible());
    EXPECT_EQ(stop->shortcut(), QKeySequence(Qt::Key_Escape));
    QTest::mouseClick(stop, Qt::LeftButton);
    Run(3 * kTick);
    EXPECT_EQ(Text(form, "StatusLine").substr(0, 31), "big.dat: loading was stopped.  ");
    EXPECT_EQ(form->Window().Chart.ChartGroups(1).LastPoint(), 100000);
    EXPECT_FALSE(stop->isVisible());
}

#ifdef __linux__
TEST_F(FileCommandsTest, ADroppedFileMayHaveAnyName) {
    const std::string names[] = {"caf\xE9 au lait.dat", "caf\xC3\xA9 au lait.dat", "100 %F6.dat"};
    const QByteArray encoded[] = {"caf%E9%20au%20lait.dat", "caf%C3%A9%20au%20lait.dat", "100%20%25F6.dat"};
    for (std::size_t i = 0; i < 3; ++i) {
        Dat(names[i], 3);
        QMimeData data;
        data.setData("text/uri-list", "file://" + QByteArray::fromStdString(folder.Path().string()) + "/" +
                                          encoded[i] + "\r\n");
        MainForm* const form = Empty();
        Drop(form, data);
        EXPECT_EQ(form->Window().Stored.path, folder / names[i]);
    }
}
#endif

TEST_F(FileCommandsTest, ALongSaveShowsHowFarItIsAndCanBeStopped) {
    MainForm* const form = Sampling();
    DataWindow& window = form->Window();
    for (int i = 0; i < 60; ++i) window.Files.WriteRaw(std::string(1 << 20, 'x'), clock.Steady());
    Run(2 * kTick);
    Trigger(form, "SaveAsItem");
    auto* const dialog = form->findChild<QFileDialog*>();
    ASSERT_NE(dialog, nullptr);
    dialog->findChild<QLineEdit*>("fileNameEdit")
        ->setText(QString::fromStdString((folder / "long").string()));
    QMetaObject::invokeMethod(dialog, "accept");
    for (int i = 0; i < 6 && !window.SaveProgress; ++i) Run(kTick);
    ASSERT_TRUE(window.SaveProgress);
    form->Files().Update();
    auto* const stop = form->findChild<QPushButton*>("StopLoading");
    EXPECT_EQ(Text(form, "StatusLine"), "Saving Raw Data");
    EXPECT_TRUE(form->findChild<QProgressBar*>("LoadProgress")->isVisible());
    EXPECT_TRUE(stop->isVisible());
    const auto samples = window.Link.State.Counted.samples;
    QTest::mouseClick(stop, Qt::LeftButton);
    Run(std::chrono::seconds(3));
    EXPECT_EQ(Text(form, "StatusLine"), "Saving was stopped.");
    EXPECT_FALSE(std::filesystem::exists(folder / "long.raw"));
    EXPECT_FALSE(stop->isVisible());
    EXPECT_EQ(form->cursor().shape(), Qt::ArrowCursor);
    EXPECT_GT(window.Link.State.Counted.samples, samples);
}

TEST_F(FileCommandsTest, RecentFilesOpenAgain) {
    const std::string path = Dat("a & b.dat", 3);
    MainForm* const form = Empty();
    Drop(form, {path});
    EXPECT_EQ(RecentFiles(settings), std::vector<std::string>{path});
    auto* const recent = form->findChild<QMenu*>("Recent_menu");
    emit recent->aboutToShow();
    ASSERT_EQ(recent->actions().size(), 1);
    EXPECT_EQ(recent->actions().first()->text(),
              QString("&1  %1").arg(QString::fromStdString(path).replace("&", "&&")));
    recent->actions().first()->trigger();
    Run(6 * kTick);
    ASSERT_NE(Second(), nullptr);
    EXPECT_EQ(Second()->windowTitle(), "a & b.dat - Marisonde");
}

TEST_F(FileCommandsTest, StartAsksForANameWhenTheUserWantsIt) {
    app.prefs.NameFilesOnOpen = true;
    MainForm* const form = Sampling();
    Run(2 * kTick);
    Choose(form, (folder / "deep").string());
    EXPECT_EQ(form->Window().Files.State().rawFinal, folder / "deep.raw");
    Run(std::chrono::seconds(3));
    Trigger(form, "SaveFileItem");
    EXPECT_TRUE(std::filesystem::exists(folder / "deep.raw"));
    EXPECT_TRUE(std::filesystem::exists(folder / "deep.dat"));
    EXPECT_EQ(Open(form, "YesNoCancelForm"), nullptr);
}

TEST_F(FileCommandsTest, SaveAsWithoutDataIsANotice) {
    MainForm* const form = Empty();
    EXPECT_FALSE(Item(form, "SaveAsItem")->isEnabled());
    EXPECT_FALSE(Item(form, "SaveFileItem")->isEnabled());
    Item(form, "SaveAsItem")->setEnabled(true);
    Item(form, "SaveAsItem")->trigger();
    EXPECT_EQ(Message(form), "No data loaded.  Cannot save any files.");
}

}  // namespace
}  // namespace marisonde
