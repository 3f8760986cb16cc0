#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QFileSystemModel>
#include <QLineEdit>
#include <QListView>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QVBoxLayout>
#include <gtest/gtest.h>

#include "app/forms/FormHelpers.h"

namespace marisonde {
namespace {

const QList<QRect> kTwoScreens{QRect(0, 0, 1280, 900), QRect(1280, 0, 1000, 600)};
constexpr int kTitle = 20;

TEST(BroughtOntoScreen, LeavesAFormThatIsThere) {
    const QRect there(1300, 30, 400, 300);
    EXPECT_EQ(BroughtOntoScreen(there, kTwoScreens, kTitle), there);
}

TEST(BroughtOntoScreen, MovesAFormToTheNearestScreen) {
    // Far right: the second screen ends at x = 2280, so the left edge is 2280 - 400.
    EXPECT_EQ(BroughtOntoScreen(QRect(9000, 100, 400, 300), kTwoScreens, kTitle), QRect(1880, 100, 400, 300));
    EXPECT_EQ(BroughtOntoScreen(QRect(-700, 100, 400, 300), kTwoScreens, kTitle), QRect(0, 100, 400, 300));
    // Below the second screen, which ends at y = 600, nearer than the first is to the side.
    EXPECT_EQ(BroughtOntoScreen(QRect(1800, 650, 400, 300), kTwoScreens, kTitle), QRect(1800, 300, 400, 300));
}

TEST(BroughtOntoScreen, KeepsTheTitleBarInSight) {
    EXPECT_EQ(BroughtOntoScreen(QRect(100, -50, 400, 300), kTwoScreens, kTitle),
              QRect(100, kTitle, 400, 300));
}

TEST(BroughtOntoScreen, CutsAFormThatIsLargerThanItsScreen) {
    EXPECT_EQ(BroughtOntoScreen(QRect(0, 0, 5000, 5000), {QRect(0, 0, 1280, 900)}, kTitle),
              QRect(0, kTitle, 1280, 900 - kTitle));
}

TEST(BroughtOntoScreen, LeavesAFormWhereThereIsNoScreen) {
    EXPECT_EQ(BroughtOntoScreen(QRect(7, 8, 9, 10), {}, kTitle), QRect(7, 8, 9, 10));
}

TEST(FormGeometry, IsKeptInASectionNamedAfterTheForm) {
    MapSettings settings;
    QDialog form;
    form.setObjectName("ProbeForm");
    form.setGeometry(120, 90, 330, 210);
    SaveFormGeometry(settings, form);
    EXPECT_EQ(settings.GetSetting("ProbeForm", "Top", "-"), "90");
    EXPECT_EQ(settings.GetSetting("ProbeForm", "Left", "-"), "120");
    EXPECT_EQ(settings.GetSetting("ProbeForm", "Width", "-"), "330");
    EXPECT_EQ(settings.GetSetting("ProbeForm", "Height", "-"), "210");
    form.setGeometry(10, 40, 50, 60);
    RestoreFormGeometry(settings, form);
    EXPECT_EQ(form.geometry(), QRect(120, 90, 330, 210));
}

TEST(FormGeometry, OfAFixedFormHasNoSize) {
    MapSettings settings;
    QDialog form;
    form.setObjectName("FixedForm");
    form.setFixedSize(200, 100);
    form.move(60, 70);
    ASSERT_FALSE(IsSizable(form));
    SaveFormGeometry(settings, form);
    EXPECT_EQ(settings.GetSetting("FixedForm", "Width", "-"), "-");
    EXPECT_EQ(settings.GetSetting("FixedForm", "Height", "-"), "-");
    settings.SaveSetting("FixedForm", "Width", "500");
    RestoreFormGeometry(settings, form);
    EXPECT_EQ(form.size(), QSize(200, 100));
}

TEST(FormGeometry, MissingAndUselessValuesLeaveTheDesign) {
    MapSettings settings;
    QDialog form;
    form.setObjectName("ProbeForm");
    form.setGeometry(120, 90, 330, 210);
    settings.SaveSetting("ProbeForm", "Left", "140");
    settings.SaveSetting("ProbeForm", "Width", "-5");
    settings.SaveSetting("ProbeForm", "Height", "");
    RestoreFormGeometry(settings, form);
    EXPECT_EQ(form.geometry(), QRect(140, 90, 330, 210));
    settings.SaveSetting("ProbeForm", "Left", "99999999999");
    settings.SaveSetting("ProbeForm", "Top", "-2147483648");
    RestoreFormGeometry(settings, form);
    EXPECT_TRUE(form.screen()->availableGeometry().contains(form.geometry()));
}

TEST(FormGeometry, AFormOfWhichNothingIsKeptOpensInTheMiddleOfItsWindow) {
    const MapSettings settings;
    QWidget window;
    window.setGeometry(100, 100, 600, 400);
    window.show();
    QDialog form(&window);
    form.setObjectName("NewForm");
    form.resize(200, 100);
    RestoreControlValues(settings, form);
    form.show();
    EXPECT_NEAR(form.geometry().center().x(), window.geometry().center().x(), 2);
    EXPECT_NEAR(form.geometry().center().y(), window.geometry().center().y(), 2);
}

/// A form with one control of each kind whose value is kept.
struct ControlForm : QDialog {
    ControlForm() {
        setObjectName("ControlForm");
        name->setObjectName("NameBox");
        notes->setObjectName("NotesBox");
        rate->setObjectName("RateBox");
        rate->addItems({"4800", "9600"});
        check->setObjectName("Channel_Check(3)");
        option->setObjectName("ConnectOption(1)");
        folders->setObjectName("FolderList");
        folders->setModel(folderModel);
        folderModel->setFilter(QDir::Dirs);
        files->setObjectName("FileList");
        files->setModel(fileModel);
        auto* count = new QSpinBox(this);
        count->setObjectName("CountBox");
    }
    QLineEdit* name = new QLineEdit(this);
    QPlainTextEdit* notes = new QPlainTextEdit(this);
    QComboBox* rate = new QComboBox(this);
    QCheckBox* check = new QCheckBox("Channel", this);
    QRadioButton* option = new QRadioButton("Search", this);
    QListView* folders = new QListView(this);
    QFileSystemModel* folderModel = new QFileSystemModel(this);
    QListView* files = new QListView(this);
    QFileSystemModel* fileModel = new QFileSystemModel(this);
};

TEST(ControlValues, ComeBackByKindOfControl) {
    MapSettings settings;
    {
        ControlForm form;
        form.name->setText("Tern");
        form.notes->setPlainText("one\ntwo");
        form.rate->setCurrentIndex(1);
        form.check->setChecked(true);
        form.option->setChecked(true);
        form.folderModel->setRootPath("/usr");
        form.fileModel->setRootPath("/usr/bin");
        form.fileModel->setNameFilters({"*.raw", "*.dat"});
        SaveControlValues(settings, form);
    }
    EXPECT_EQ(settings.GetSetting("ControlForm", "NameBox", "-"), "Tern");
    EXPECT_EQ(settings.GetSetting("ControlForm", "RateBox", "-"), "9600");
    EXPECT_EQ(settings.GetSetting("ControlForm", "Channel_Check3", "-"), "1");
    EXPECT_EQ(settings.GetSetting("ControlForm", "ConnectOption1", "-"), "1");
    EXPECT_EQ(settings.GetSetting("ControlForm", "PathFolderList", "-"), "/usr");
    EXPECT_EQ(settings.GetSetting("ControlForm", "PatternFolderList", "-"), "-");
    EXPECT_EQ(settings.GetSetting("ControlForm", "PathFileList", "-"), "/usr/bin");
    EXPECT_EQ(settings.GetSetting("ControlForm", "PatternFileList", "-"), "*.raw;*.dat");
    EXPECT_EQ(settings.GetSetting("ControlForm", "qt_spinbox_lineedit", "-"), "-");
    ControlForm form;
    RestoreControlValues(settings, form);
    EXPECT_EQ(form.name->text(), "Tern");
    EXPECT_EQ(form.notes->toPlainText(), "one\ntwo");
    EXPECT_EQ(form.rate->currentText(), "9600");
    EXPECT_TRUE(form.check->isChecked());
    EXPECT_TRUE(form.option->isChecked());
    EXPECT_EQ(form.folderModel->rootPath(), "/usr");
    EXPECT_EQ(form.fileModel->rootPath(), "/usr/bin");
    EXPECT_EQ(form.fileModel->nameFilters(), (QStringList{"*.raw", "*.dat"}));
}

TEST(ControlValues, MissingOnesLeaveTheControlAndEmptyOnesDoNot) {
    MapSettings settings;
    settings.SaveSetting("ControlForm", "NotesBox", "");
    settings.SaveSetting("ControlForm", "RateBox", "no such rate");
    settings.SaveSetting("ControlForm", "Channel_Check3", "0");
    ControlForm form;
    form.name->setText("design");
    form.notes->setPlainText("design");
    form.check->setChecked(true);
    RestoreControlValues(settings, form);
    EXPECT_EQ(form.name->text(), "design");
    EXPECT_EQ(form.notes->toPlainText(), "");
    EXPECT_EQ(form.rate->currentText(), "4800");
    EXPECT_FALSE(form.check->isChecked());
}

TEST(Accelerators, GiveEachControlALetterOfItsOwn) {
    QWidget form;
    const QPushButton close("&Close File", &form);
    const QPushButton cancel("&Cancel", &form);
    const QCheckBox loadCal("Load calibration", &form);
    const QRadioButton clear("Clear && close", &form);
    const QPushButton noLetter("...", &form);
    FixControlAccelerators(form);
    EXPECT_EQ(close.text(), "&Close File");
    // "C" is taken; of the other letters "a" comes first.
    EXPECT_EQ(cancel.text(), "C&ancel");
    EXPECT_EQ(loadCal.text(), "&Load calibration");
    // Words begin with "C", which is taken; then come l, taken too, and e.
    EXPECT_EQ(clear.text(), "Cl&ear && close");
    EXPECT_EQ(noLetter.text(), "...");
}

TEST(Accelerators, StayWhereTheyAreGood) {
    QWidget form;
    const QPushButton exit("E&xit", &form);
    const QPushButton help("&Help", &form);
    FixControlAccelerators(form);
    FixControlAccelerators(form);
    EXPECT_EQ(exit.text(), "E&xit");
    EXPECT_EQ(help.text(), "&Help");
}

}  // namespace
}  // namespace marisonde
