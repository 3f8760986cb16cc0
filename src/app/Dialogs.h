#pragma once

#include <QCoroTask>
#include <string>

#include "common/Question.h"

namespace marisonde {

/// Which button of a question was pressed; the numbers are the answers 1, 0 and -1.
enum class Choice { First = 1, Second = 0, Third = -1 };

class Operation;

/// The questions and notices of one window. Each is window-modal: it never holds up another window's
/// instrument. A question of a cancelled operation closes and answers like the last button that it shows, as
/// does closing it.
class Dialogs {
  public:
    virtual ~Dialogs() = default;
    virtual QCoro::Task<Choice> ShowChoiceDialog(Operation& operation, Question question) = 0;
    virtual QCoro::Task<void> ShowMessage(Operation& operation, std::string text) = 0;
    /// The base path for the data files of a window, proposed as `path`; empty when cancelled.
    virtual QCoro::Task<std::string> AskSaveBase(Operation& operation, std::string path) = 0;
    /// A notice that nobody waits for.
    virtual void ShowError(std::string text) = 0;
    /// A message from the instrument: beeps, and shows the text unless it already stands there.
    virtual void ShowInstrumentMessage(std::string text) = 0;
};

}  // namespace marisonde
