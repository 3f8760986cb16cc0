#include "app/CheckDataFile.h"

#include <filesystem>

#include "app/DataWindow.h"
#include "app/FileDialogs.h"
#include "files/FileHeaderInfo.h"
#include "platform/Operations.h"

namespace marisonde {

namespace {

Question NothingRecognizable() {
    return {"The selected file contains no recognizable data, or could not be opened.", "", "", "Cancel"};
}

std::string ContainsRaw(const StoredFile& file) {
    return "The data file you selected contains raw " + std::string(InstTypeName(file.type)) + " data, ";
}

Question NotWhileConnected(const StoredFile& file, InstTypeCode connected) {
    const std::string model(InstTypeName(connected));
    return {ContainsRaw(file) + "and requires a calibration file that cannot be loaded while the " + model +
                " is connected. Either disconnect the " + model + " or open a new window.",
            "", "", "Cancel"};
}

Question OtherCalType(const StoredFile& file, InstTypeCode cal) {
    return {ContainsRaw(file) + "but the calibration file type is " + std::string(InstTypeName(cal)) +
                ".  Would you like to select a matching calibration?",
            "Select Cal", "", "Cancel"};
}

Question OtherCalSerial(const StoredFile& file, const std::string& cal) {
    return {"The serial number of the data file (" + file.serial + ") and the current calibration file (" +
                cal + ") do not match.  Would you like to select a different calibration?",
            "Select Cal", "Use Current", "Cancel"};
}

CalFileType CalOfWindow(const DataWindow& window) {
    if (!window.Link.State.CalReady) return {};
    return {window.Link.CalData.InstType, window.Link.CalData.Serial, ""};
}

/// A file whose lines tell no model is taken for one of the calibration's.
bool Fits(const StoredFile& file, InstTypeCode cal) {
    return TypesAreCompatible(file.type, cal) ||
           (file.type == InstTypeCode::Unknown && cal != InstTypeCode::Unknown);
}

enum class Answer { UseThis, SelectOther, Cancel };

QCoro::Task<Answer> AskAboutCal(Operation& operation, DataWindow& window, const StoredFile& file,
                                const CalFileType& cal) {
    const bool fits = Fits(file, cal.type);
    if (fits && SerialMatches(file.serial, cal.serial)) co_return Answer::UseThis;
    if (!fits && window.Link.State.Connected) {
        const Question question = NotWhileConnected(file, window.Link.State.InstType);
        co_await window.Ask().ShowChoiceDialog(operation, question);
        co_return Answer::Cancel;
    }
    const Question question = fits ? OtherCalSerial(file, cal.serial) : OtherCalType(file, cal.type);
    const Choice choice = co_await window.Ask().ShowChoiceDialog(operation, question);
    if (choice == Choice::First) co_return Answer::SelectOther;
    co_return choice == Choice::Second ? Answer::UseThis : Answer::Cancel;
}

StoredFile Recognized(const std::string& path) {
    StoredFile file;
    file.type = GetDataFileType(path, file.fileType, file.serial);
    if (file.fileType == "dat" || file.fileType == "rmu" || file.fileType == "raw") file.path = path;
    return file;
}

}  // namespace

QCoro::Task<std::string> ChooseCalFile(Operation& operation, DataWindow& window) {
    Preferences& prefs = window.App().prefs;
    const std::string folder = prefs.OpenCalPath;
    const std::string name = co_await OpenCalDialog(operation, window.Ask(), folder);
    if (name.empty() || operation.Cancelled()) co_return std::string();
    prefs.OpenCalPath = std::filesystem::path(name).parent_path().string() + "/";
    std::error_code passedOver;
    if (std::filesystem::exists(name, passedOver)) co_return name;
    const std::string text = "Could not find '" + name + "'";
    co_await window.Ask().ShowMessage(operation, text);
    co_return std::string();
}

QCoro::Task<std::optional<DataChoice>> CheckDataFile(Operation& operation, DataWindow& window,
                                                     std::string path) {
    DataChoice choice;
    choice.file = Recognized(path);
    if (!choice.file.IsShown()) {
        const Question question = NothingRecognizable();
        co_await window.Ask().ShowChoiceDialog(operation, question);
        co_return std::nullopt;
    }
    if (choice.file.IsCalibrated()) co_return choice;
    CalFileType cal = CalOfWindow(window);
    while (!operation.Cancelled()) {
        const Answer answer = co_await AskAboutCal(operation, window, choice.file, cal);
        if (answer == Answer::UseThis) co_return choice;
        if (answer == Answer::Cancel) break;
        choice.calFile = co_await ChooseCalFile(operation, window);
        if (choice.calFile.empty()) break;
        cal = GetCalFileType(choice.calFile);
    }
    co_return std::nullopt;
}

}  // namespace marisonde
