#include "files/DataFileQuestions.h"

namespace marisonde {

namespace {

std::string Quoted(const std::filesystem::path& path) {
    return std::string("\"").append(path.string()).append("\"");
}

}  // namespace

Question UnsavedDataQuestion(std::string_view model, std::string_view source) {
    std::string message = "The graph contains unsaved data from ";
    message.append(model).append(" ").append(source);
    message += ".  Save the data before proceeding?";
    return {std::move(message), "Yes", "No", "Cancel"};
}

bool AsksBeforeClosingFiles(InstStateCode state) {
    return state == InstStateCode::Starting || state == InstStateCode::Sampling;
}

Question ReceivingDataQuestion(std::string_view model) {
    std::string message = "You are receiving data from the ";
    message.append(model);
    message += ". Is it OK to close the files now?";
    return {std::move(message), "Yes", "Cancel", ""};
}

std::string SaveFileErrorText(const std::filesystem::path& name, const std::filesystem::path& temporaryName,
                              const FileError& error) {
    return "Saving to " + Quoted(name) + " failed because of error (" + std::to_string(error.code) + ")\n" +
           error.text + ")." + "The data have been saved in the file " + Quoted(temporaryName) +
           " in the temporary folder.  " +
           "Either us \"Save As...\" to save the file to a different destination, or click on Open Temporary "
           "Folder and copy or rename the file there.  " +
           "The temporary file will be deleted the next time Marisonde starts or you use the \"New File\" "
           "command.";
}

}  // namespace marisonde
