#pragma once

#include <QCoroTask>
#include <string>

namespace marisonde {

/// Which button of a question was pressed; the numbers are the answers 1, 0 and -1.
enum class Choice { First = 1, Second = 0, Third = -1 };

/// A question with up to three buttons; an empty caption hides its button. Closing the question is the last
/// button that is shown.
struct Question {
    std::string message;
    std::string first;
    std::string second;
    std::string third;
};

/// The questions and notices of one window. Each is window-modal: it never holds up another window's instrument.
class Dialogs {
  public:
    virtual ~Dialogs() = default;
    virtual QCoro::Task<Choice> ShowChoiceDialog(Question question) = 0;
    virtual QCoro::Task<void> ShowMessage(std::string text) = 0;
    /// The base path for the data files of a window, proposed as `path`; empty when cancelled.
    virtual QCoro::Task<std::string> AskSaveBase(std::string path) = 0;
    /// A notice that nobody waits for.
    virtual void ShowError(std::string text) = 0;
    /// A message from the instrument: beeps, and shows the text unless it already stands there.
    virtual void ShowInstrumentMessage(std::string text) = 0;
};

}  // namespace marisonde
