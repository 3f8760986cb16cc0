#include <gtest/gtest.h>

#include "files/DataFileQuestions.h"

namespace marisonde {
namespace {

TEST(DataFileQuestionsTest, UnsavedData) {
    const Question question = UnsavedDataQuestion("Corvane-6", "COM3");
    EXPECT_EQ(question.message,
              "The graph contains unsaved data from Corvane-6 COM3.  Save the data before proceeding?");
    EXPECT_EQ(question.first, "Yes");
    EXPECT_EQ(question.second, "No");
    EXPECT_EQ(question.third, "Cancel");
}

TEST(DataFileQuestionsTest, ReceivingData) {
    const Question question = ReceivingDataQuestion("Delph-4");
    EXPECT_EQ(question.message, "You are receiving data from the Delph-4. Is it OK to close the files now?");
    EXPECT_EQ(question.first, "Yes");
    EXPECT_EQ(question.second, "Cancel");
    EXPECT_EQ(question.third, "");
}

TEST(DataFileQuestionsTest, OnlyStatesTwoAndThreeAskBeforeClosing) {
    for (int code = 0; code <= 14; ++code)
        EXPECT_EQ(AsksBeforeClosingFiles(static_cast<InstStateCode>(code)), code == 2 || code == 3) << code;
}

TEST(DataFileQuestionsTest, FailedSave) {
    EXPECT_EQ(
        SaveFileErrorText("/home/cast.raw", "/t/0.raw", {28, "No space left on device"}),
        "Saving to \"/home/cast.raw\" failed because of error (28)\nNo space left on device)."
        "The data have been saved in the file \"/t/0.raw\" in the temporary folder.  "
        "Either us \"Save As...\" to save the file to a different destination, or click on Open Temporary "
        "Folder and copy or rename the file there.  The temporary file will be deleted the next time "
        "Marisonde starts or you use the \"New File\" command.");
}

}  // namespace
}  // namespace marisonde
