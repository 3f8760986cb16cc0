#include "app/ConnectCommand.h"

#include "app/CommandLine.h"
#include "app/DataWindow.h"
#include "platform/Operations.h"

namespace marisonde {

QCoro::Task<ConnectIn> AskWhereToConnect(Operation& operation, DataWindow& window) {
    if (!window.Link.State.Connected) co_return ConnectIn::ThisWindow;
    const Question question{
        "There is already an active connection in this window.  Do you wish to replace the current "
        "connection in this window, or keep this connection and open a new window?",
        "This Window", "New Window", "Cancel"};
    const Choice choice = co_await window.Ask().ShowChoiceDialog(operation, question);
    if (operation.Cancelled() || choice == Choice::Third) co_return ConnectIn::Nowhere;
    co_return choice == Choice::First ? ConnectIn::ThisWindow : ConnectIn::NewWindow;
}

std::string WindowLimitText() {
    return "Cannot open more than " + std::to_string(kMaxWindows) + " windows.";
}

}  // namespace marisonde
