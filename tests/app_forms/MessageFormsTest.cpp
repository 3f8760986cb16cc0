#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QTest>
#include <QUrl>
#include <gtest/gtest.h>

#include "app/forms/ErrorForm.h"
#include "app/forms/YesNoCancelForm.h"
#include "app_forms/Browser.h"

namespace marisonde {
namespace {

const Question kSave{"Save the data before proceeding?", "Yes", "No", "Cancel"};

QString MessageOf(const QDialog& form) {
    return form.findChild<QLabel*>("Message")->text();
}

void ShowActive(QDialog& form) {
    form.show();
    form.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
}

TEST(YesNoCancelForm, AnswersByButton) {
    const std::vector<std::pair<const char*, Choice>> buttons{
        {"YesButton", Choice::First}, {"NoButton", Choice::Second}, {"Cancel_Button", Choice::Third}};
    for (const auto& [name, choice] : buttons) {
        YesNoCancelForm form(kSave, nullptr);
        form.show();
        EXPECT_EQ(MessageOf(form), "Save the data before proceeding?");
        QTest::mouseClick(form.findChild<QPushButton*>(name), Qt::LeftButton);
        EXPECT_FALSE(form.isVisible());
        EXPECT_EQ(form.Answer(), choice) << name;
    }
}

TEST(YesNoCancelForm, AnEmptyCaptionHidesItsButton) {
    const YesNoCancelForm two({"Replace it?", "Yes", "No", ""}, nullptr);
    EXPECT_NE(two.findChild<QPushButton*>("YesButton"), nullptr);
    EXPECT_NE(two.findChild<QPushButton*>("NoButton"), nullptr);
    EXPECT_EQ(two.findChild<QPushButton*>("Cancel_Button"), nullptr);
    const YesNoCancelForm one({"Could not find 'a.cal'", "OK", "", ""}, nullptr);
    EXPECT_EQ(one.findChildren<QPushButton*>().size(), 1);
}

TEST(YesNoCancelForm, EscapeAnswersLikeTheLastButtonShown) {
    const std::vector<std::pair<Question, Choice>> cases{
        {kSave, Choice::Third},
        {{"Replace it?", "Yes", "No", ""}, Choice::Second},
        {{"Close the files?", "Yes", "", "Cancel"}, Choice::Third},
        {{"Told", "OK", "", ""}, Choice::First}};
    for (const auto& [question, choice] : cases) {
        YesNoCancelForm form(question, nullptr);
        ShowActive(form);
        QTest::keyClick(&form, Qt::Key_Escape);
        EXPECT_FALSE(form.isVisible());
        EXPECT_EQ(form.Answer(), choice) << question.message;
    }
}

TEST(YesNoCancelForm, EnterPressesTheFirstButton) {
    YesNoCancelForm form(kSave, nullptr);
    ShowActive(form);
    QTest::keyClick(form.focusWidget(), Qt::Key_Return);
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(form.Answer(), Choice::First);
}

TEST(YesNoCancelForm, TabGoesThroughTheButtonsInOrder) {
    YesNoCancelForm form(kSave, nullptr);
    ShowActive(form);
    for (const char* name : {"YesButton", "NoButton", "Cancel_Button", "YesButton"}) {
        EXPECT_EQ(form.focusWidget()->objectName(), name);
        QTest::keyClick(form.focusWidget(), Qt::Key_Tab);
    }
}

TEST(YesNoCancelForm, LettersPressTheirButtons) {
    YesNoCancelForm form({"Close?", "Close File", "", "Cancel"}, nullptr);
    ShowActive(form);
    // "C" belongs to the first button, so the other has "a".
    QTest::keyClick(&form, Qt::Key_A, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !form.isVisible(); }));
    EXPECT_EQ(form.Answer(), Choice::Third);
    EXPECT_EQ(form.findChild<QPushButton*>("Cancel_Button")->accessibleName(), "Cancel");
}

TEST(YesNoCancelForm, GrowsWithItsMessageUpToACeiling) {
    YesNoCancelForm small({"Short.", "OK", "", ""}, nullptr);
    std::string longText;
    for (int i = 0; i < 12; ++i)
        longText += "The serial number of the file does not match that of the instrument.  ";
    YesNoCancelForm large({longText, "OK", "", ""}, nullptr);
    std::string endless;
    for (int i = 0; i < 300; ++i) endless += "line " + std::to_string(i) + "\n";
    YesNoCancelForm huge({endless, "OK", "", ""}, nullptr);
    for (QDialog* form : {&small, &large, &huge}) form->show();
    EXPECT_LT(small.width(), large.width());
    EXPECT_LT(small.height(), large.height());
    const auto* const largeText = large.findChild<QLabel*>("Message");
    EXPECT_EQ(largeText->visibleRegion().boundingRect().size(), largeText->size())
        << "all of it is to be seen";
    // 8000 twips of 1/1440 inch.
    EXPECT_LE(huge.height(), 8000 * huge.logicalDpiY() / 1440);
    EXPECT_GT(huge.findChild<QLabel*>("Message")->height(), huge.height()) << "the rest scrolls";
    EXPECT_EQ(huge.findChild<QScrollArea*>()->focusPolicy(), Qt::StrongFocus) << "also by keyboard";
    EXPECT_EQ(large.findChild<QScrollArea*>()->focusPolicy(), Qt::NoFocus);
}

TEST(YesNoCancelForm, ShowsMarkupAndAmpersandsAsTheyAre) {
    const YesNoCancelForm form({"<b>a</b> & b", "OK", "", ""}, nullptr);
    EXPECT_EQ(form.findChild<QLabel*>("Message")->textFormat(), Qt::PlainText);
    EXPECT_EQ(MessageOf(form), "<b>a</b> & b");
}

TEST(FromText, TakesBytesThatAreNotUtf8ForLatin1) {
    EXPECT_EQ(FromText("18 \xB0"
                       "C"),
              QString::fromUtf8("18 °C"));
    EXPECT_EQ(FromText("18 \xC2\xB0"
                       "C"),
              QString::fromUtf8("18 °C"));
}

TEST(ErrorForm, AddsANoticeToTheOneThatStandsThere) {
    QWidget window;
    ErrorForm form(&window);
    form.ShowText("first");
    form.ShowText("second");
    form.ShowText("first");
    EXPECT_EQ(MessageOf(form), "first\n\nsecond");
    EXPECT_EQ(form.windowModality(), Qt::WindowModal);
    QTest::mouseClick(form.findChild<QPushButton*>("OKButton"), Qt::LeftButton);
    EXPECT_FALSE(form.isVisible());
    form.ShowText("third");
    EXPECT_EQ(MessageOf(form), "third");
}

TEST(ErrorForm, KeepsTheNewestOfVeryManyNotices) {
    QWidget window;
    ErrorForm form(&window);
    for (int i = 1; i <= 500; ++i) form.ShowText(QString("notice %1.").arg(i));
    EXPECT_TRUE(MessageOf(form).startsWith("notice 481."));
    EXPECT_TRUE(MessageOf(form).endsWith("notice 500."));
    EXPECT_LE(form.height(), 8000 * form.logicalDpiY() / 1440);
}

TEST(ErrorForm, ClosesWithEnterAndWithEscape) {
    QWidget window;
    for (const auto key : {Qt::Key_Return, Qt::Key_Escape}) {
        ErrorForm form(&window);
        form.ShowText("told");
        form.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
        QTest::keyClick(&form, key);
        EXPECT_FALSE(form.isVisible());
    }
}

TEST(OKCancelForm, MayBeRefused) {
    OKCancelForm agreed("Go on?", nullptr);
    agreed.show();
    QTest::mouseClick(agreed.findChild<QPushButton*>("OKButton"), Qt::LeftButton);
    EXPECT_EQ(agreed.result(), QDialog::Accepted);
    OKCancelForm refused("Go on?", nullptr);
    refused.show();
    QTest::mouseClick(refused.findChild<QPushButton*>("Cancel_Button"), Qt::LeftButton);
    EXPECT_EQ(refused.result(), QDialog::Rejected);
    EXPECT_FALSE(refused.isVisible());
    EXPECT_EQ(MessageOf(refused), "Go on?");
}

TEST(SaveErrorAlert, OpensTheFolderWhereTheDataAre) {
    Browser browser;
    QWidget window;
    SaveErrorAlert form(&window);
    form.ShowText("Saving failed.", "/tmp/Marisonde-1/1");
    EXPECT_EQ(MessageOf(form), "Saving failed.");
    EXPECT_EQ(form.findChild<QPushButton*>("OpenDirButton")->text().remove('&'), "Open Temporary Folder");
    QTest::mouseClick(form.findChild<QPushButton*>("OpenDirButton"), Qt::LeftButton);
    EXPECT_EQ(browser.shown, QList<QUrl>{QUrl("file:///tmp/Marisonde-1/1")});
    EXPECT_TRUE(form.isVisible());
    QTest::mouseClick(form.findChild<QPushButton*>("OKButton"), Qt::LeftButton);
    EXPECT_FALSE(form.isVisible());
}

}  // namespace
}  // namespace marisonde
