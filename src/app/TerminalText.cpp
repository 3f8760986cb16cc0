#include "app/TerminalText.h"

#include <array>
#include <filesystem>
#include <system_error>
#include <utility>

#include "app/FileDialogs.h"
#include "common/ReplacedFile.h"
#include "platform/Operations.h"

namespace marisonde {

namespace {

constexpr std::array kTextFilters{
    FileFilter{"Text File (*.txt)", "*.txt", "txt"},
    FileFilter{"All Files (*.*)", "*.*", ""},
};

}  // namespace

QCoro::Task<> SaveTerminalText(Operation& operation, Dialogs& dialogs, std::string text,
                               std::string proposed) {
    while (!operation.Cancelled()) {
        const FileRequest request{FileRequest::Purpose::Save, "Save Terminal Text", proposed, kTextFilters,
                                  0};
        const FileChoice choice = co_await dialogs.ChooseFile(operation, request);
        if (operation.Cancelled() || choice.path.empty()) co_return;
        const auto filter = static_cast<std::size_t>(choice.filter);
        proposed = WithExtension(choice.path, kTextFilters.at(filter));
        std::error_code passedOver;
        if (std::filesystem::exists(proposed, passedOver)) {
            const Question question = ReplaceQuestion({proposed});
            const Choice replace = co_await dialogs.ShowChoiceDialog(operation, question);
            if (replace != Choice::First) continue;
        }
        if (const FileError error = SaveWhole(proposed, text))
            dialogs.ShowError("The text could not be saved as " + proposed + ": " + error.text + ".");
        co_return;
    }
}

}  // namespace marisonde
