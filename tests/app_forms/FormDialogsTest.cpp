#include <QFileDialog>
#include <QMainWindow>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>
#include <optional>

#include "app/FileDialogs.h"
#include "app/forms/FormDialogs.h"
#include "platform/Operations.h"
#include "platform/Paths.h"
#include "support/TestFolder.h"

namespace marisonde {
namespace {

class FormDialogsTest : public testing::Test {
  protected:
    FormDialogsTest()
        : pump(clock), operations(pump, [](const std::string&, const std::string& why) { FAIL() << why; }) {
        QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        window.show();
    }
    /// Lets the askers go on.
    void Turn() {
        QCoreApplication::processEvents();
        pump.ResumeReady();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    template <class Dialog>
    Dialog* Shown(const char* name) {
        auto* const dialog = window.findChild<Dialog*>(name);
        return dialog != nullptr && dialog->isVisible() ? dialog : nullptr;
    }
    void Ask(std::optional<Choice>& answer) {
        operations.Start("Ask", [this, &answer](Operation& operation) -> QCoro::Task<> {
            const Question question{"Go on?", "Yes", "No", "Cancel"};
            const Choice choice = co_await dialogs.ShowChoiceDialog(operation, question);
            answer = choice;
        });
    }
    void AskForFile(const FileRequest& request, std::optional<FileChoice>& answer) {
        operations.Start("File", [this, request, &answer](Operation& operation) -> QCoro::Task<> {
            const FileChoice choice = co_await dialogs.ChooseFile(operation, request);
            answer = choice;
        });
    }

    TestFolder folder;
    VirtualClock clock{40735};
    Pump pump;
    QMainWindow window;
    FormDialogs dialogs{&window};
    Operations operations;
};

TEST_F(FormDialogsTest, AQuestionWaitsWithoutHoldingUpAnything) {
    std::optional<Choice> answer;
    Ask(answer);
    for (int turn = 0; turn < 5; ++turn) Turn();
    auto* const form = Shown<QDialog>("YesNoCancelForm");
    ASSERT_NE(form, nullptr);
    EXPECT_EQ(form->windowModality(), Qt::WindowModal);
    EXPECT_FALSE(answer);
    QTest::mouseClick(form->findChild<QPushButton*>("NoButton"), Qt::LeftButton);
    Turn();
    EXPECT_EQ(answer, Choice::Second);
    EXPECT_EQ(window.findChild<QDialog*>("YesNoCancelForm"), nullptr) << "nothing is left of it";
}

TEST_F(FormDialogsTest, DialogsOfAWindowDoNotCoverEachOther) {
    std::optional<Choice> first;
    dialogs.ShowError("a notice of the start");
    Ask(first);
    const QRect notice = Shown<QDialog>("ErrorForm")->geometry();
    const QRect question = Shown<QDialog>("YesNoCancelForm")->geometry();
    EXPECT_FALSE(notice.intersects(question));
    EXPECT_TRUE(window.screen()->availableGeometry().contains(question));
    operations.CancelAll();
    Turn();  // the answer must not outlive the test
    EXPECT_EQ(first, Choice::Third);
}

TEST_F(FormDialogsTest, CancellingTheOperationClosesItsQuestion) {
    std::optional<Choice> answer;
    Ask(answer);
    operations.CancelAll();
    Turn();
    EXPECT_EQ(answer, Choice::Third);
    Turn();
    EXPECT_EQ(window.findChild<QDialog*>("YesNoCancelForm"), nullptr);
}

TEST_F(FormDialogsTest, AQuestionWhoseWindowDiesAnswersLikeItsLastButton) {
    auto dying = std::make_unique<QMainWindow>();
    FormDialogs asked(dying.get());
    std::optional<Choice> answer;
    operations.Start("Ask", [&](Operation& operation) -> QCoro::Task<> {
        const Question question{"Go on?", "Yes", "No", ""};
        const Choice choice = co_await asked.ShowChoiceDialog(operation, question);
        answer = choice;
    });
    dying.reset();
    Turn();
    EXPECT_EQ(answer, Choice::Second);
}

TEST_F(FormDialogsTest, ANoticeMayBeRefusedOrNot) {
    for (const auto& [button, agreed] : {std::pair{"OKButton", true}, std::pair{"Cancel_Button", false}}) {
        std::optional<bool> answer;
        operations.Start("Ask", [&](Operation& operation) -> QCoro::Task<> {
            std::string text = "Told.";
            const bool result = co_await dialogs.ShowOkCancel(operation, text);
            answer = result;
        });
        QTest::mouseClick(Shown<QDialog>("OKCancelForm")->findChild<QPushButton*>(button), Qt::LeftButton);
        Turn();
        EXPECT_EQ(answer, agreed) << button;
    }
}

TEST_F(FormDialogsTest, TheSaveDialogGivesNameAndType) {
    std::optional<FileChoice> answer;
    AskForFile({FileRequest::Purpose::Save, "Save As", (folder / "cast").string(),
                SaveFilters(SaveSource::RawData), 1},
               answer);
    auto* const form = Shown<QFileDialog>("SaveFileDialog");
    ASSERT_NE(form, nullptr);
    EXPECT_EQ(form->windowTitle(), "Save As");
    EXPECT_EQ(form->acceptMode(), QFileDialog::AcceptSave);
    EXPECT_EQ(form->nameFilters(),
              (QStringList{"Raw and Calibrated Data (*.raw, *.dat) (*.raw *.dat)",
                           "Raw Data Only (*.raw) (*.raw)", "Calibrated Data Only (*.dat) (*.dat)"}));
    EXPECT_EQ(form->selectedNameFilter(), "Raw Data Only (*.raw)") << "as the user reads it";
    EXPECT_EQ(form->selectedFiles(), QStringList{TextFromPath(folder / "cast")});
    form->selectNameFilter(form->nameFilters()[2]);
    static_cast<QDialog*>(form)->accept();
    Turn();
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->path, (folder / "cast").string());
    EXPECT_EQ(answer->filter, 2);
}

TEST_F(FormDialogsTest, ACancelledFileDialogGivesNoPath) {
    std::optional<FileChoice> answer;
    AskForFile({FileRequest::Purpose::Open, "Select File", folder.Path().string(), AllFilters(), 2}, answer);
    auto* const form = Shown<QFileDialog>("OpenFileDialog");
    ASSERT_NE(form, nullptr);
    EXPECT_EQ(form->fileMode(), QFileDialog::ExistingFile);
    EXPECT_EQ(form->directory().path(), TextFromPath(folder.Path()));
    EXPECT_EQ(form->selectedNameFilter(), "All Files (*.*)");
    form->reject();
    Turn();
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->path, "");
}

TEST_F(FormDialogsTest, NoticesOfEachKindHaveTheirForm) {
    dialogs.ShowError("a");
    dialogs.ShowSaveError("b", "/tmp");
    dialogs.ShowInstrumentMessage("c");
    dialogs.ShowInstrumentMessage("c");
    dialogs.ShowInstrumentMessage("d");
    EXPECT_NE(Shown<QDialog>("ErrorForm"), nullptr);
    EXPECT_NE(Shown<QDialog>("SaveErrorAlert"), nullptr);
    auto* const fromInstrument = Shown<QDialog>("InstErrorForm");
    ASSERT_NE(fromInstrument, nullptr);
    EXPECT_EQ(fromInstrument->windowTitle(), "Message from Instrument");
    EXPECT_EQ(fromInstrument->findChild<QPlainTextEdit*>("Message")->toPlainText(), "c\nd");
    EXPECT_TRUE(fromInstrument->testAttribute(Qt::WA_ShowWithoutActivating)) << "typing goes on where it was";
    EXPECT_FALSE(fromInstrument->isModal());
}

TEST_F(FormDialogsTest, MessageOfTheInstrumentBeginsAnewOnceItWasClosed) {
    dialogs.ShowInstrumentMessage("c");
    auto* const fromInstrument = Shown<QDialog>("InstErrorForm");
    ASSERT_NE(fromInstrument, nullptr);
    fromInstrument->accept();
    dialogs.ShowInstrumentMessage("d");
    EXPECT_TRUE(fromInstrument->isVisible());
    EXPECT_EQ(fromInstrument->findChild<QPlainTextEdit*>("Message")->toPlainText(), "d");
}

}  // namespace
}  // namespace marisonde
