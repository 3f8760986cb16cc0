#pragma once

#include <algorithm>
#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "app/Dialogs.h"
#include "platform/Operations.h"

namespace marisonde {

/// Answers the questions of a window from a script and keeps every text that the user would have seen.
class ScriptedDialogs final : public Dialogs {
  public:
    std::deque<Choice> answers;     ///< for the next questions; with none left a question waits for ever
    std::string saveBase;           ///< answer of every file dialog
    int chosenFilter = 0;           ///< and the type chosen there
    std::deque<FileChoice> chosen;  ///< answers of the next file dialogs, before `saveBase`
    std::vector<FileRequest> filesAsked;
    int reminderDays = 0;  ///< answer of the age reminder; below 0 it waits for ever
    std::vector<std::string> reminders;
    std::vector<Question> asked;
    std::vector<std::string> notices;
    std::vector<std::string> errors;
    std::vector<std::string> fromInstrument;
    std::vector<std::string> proposedBases;

    QCoro::Task<Choice> ShowChoiceDialog(Operation& operation, Question question) override {
        asked.push_back(std::move(question));
        co_await operation.Until([this] { return !answers.empty(); }, std::chrono::hours(1000));
        if (operation.Cancelled() || answers.empty()) co_return Choice::Third;
        const Choice answer = answers.front();
        answers.pop_front();
        co_return answer;
    }
    QCoro::Task<void> ShowMessage(Operation&, std::string text) override {
        notices.push_back(std::move(text));
        co_return;
    }
    QCoro::Task<FileChoice> ChooseFile(Operation&, FileRequest request) override {
        proposedBases.push_back(request.path);
        filesAsked.push_back(std::move(request));
        FileChoice choice{saveBase, chosenFilter};
        if (!chosen.empty()) {
            choice = chosen.front();
            chosen.pop_front();
        }
        co_return choice;
    }
    QCoro::Task<int> ShowCalReminder(Operation& operation, std::string serial, std::string text) override {
        reminders.push_back(serial + ": " + text);
        co_await operation.Until([this] { return reminderDays >= 0; }, std::chrono::hours(1000));
        co_return std::max(0, reminderDays);
    }
    void ShowError(std::string text) override { errors.push_back(std::move(text)); }
    void ShowInstrumentMessage(std::string text) override { fromInstrument.push_back(std::move(text)); }
};

}  // namespace marisonde
