#pragma once

#include <QCoroTask>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "common/Question.h"

namespace marisonde {

/// Which button of a question was pressed; the numbers are the answers 1, 0 and -1.
enum class Choice { First = 1, Second = 0, Third = -1 };

class Operation;

/// One type of file in the list of a file dialog.
struct FileFilter {
    std::string_view name;       ///< as the user reads it, such as "Raw Data Only (*.raw)"
    std::string_view pattern;    ///< "*.raw;*.dat"
    std::string_view extension;  ///< for names typed without one, without a dot; may be empty
};

/// What a file dialog shows.
struct FileRequest {
    enum class Purpose { Open, Save };
    Purpose purpose = Purpose::Open;
    std::string title;
    std::string path;  ///< proposed file, or the folder to begin in
    std::span<const FileFilter> filters;
    int filter = 0;  ///< index of the type that is chosen at first
};

/// The user's answer to a file dialog. An empty path: cancelled.
struct FileChoice {
    std::string path;
    int filter = 0;  ///< index of the type that was chosen
};

/// The questions and notices of one window. Each is window-modal: it never holds up another window's
/// instrument. A question of a cancelled operation closes and answers like the last button that it shows, as
/// does closing it.
class Dialogs {
  public:
    virtual ~Dialogs() = default;
    virtual QCoro::Task<Choice> ShowChoiceDialog(Operation& operation, Question question) = 0;
    virtual QCoro::Task<void> ShowMessage(Operation& operation, std::string text) = 0;
    /// A file dialog. It does not ask before an existing file is chosen for saving: SaveFileDialog does.
    virtual QCoro::Task<FileChoice> ChooseFile(Operation& operation, FileRequest request) = 0;
    /// The age reminder of the instrument `serial`. Days for which the user wants to hear no more of it; 0:
    /// remind at the next connection.
    virtual QCoro::Task<int> ShowCalReminder(Operation& operation, std::string serial, std::string text) = 0;
    /// A notice that nobody waits for.
    virtual void ShowError(std::string text) = 0;
    /// A notice that nobody waits for, about data that could not be saved and lie in `folder`.
    virtual void ShowSaveError(std::string text, std::string folder) {
        (void)folder;
        ShowError(std::move(text));
    }
    /// A message from the instrument: beeps, and shows the text unless it already stands there.
    virtual void ShowInstrumentMessage(std::string text) = 0;
};

}  // namespace marisonde
