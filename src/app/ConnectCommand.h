#pragma once

#include <QCoroTask>
#include <string>

namespace marisonde {

class DataWindow;
class Operation;

/// Where the user wants a connection.
enum class ConnectIn { ThisWindow, NewWindow, Nowhere };

/// Asks when the window has a connection already; without one it is this window.
QCoro::Task<ConnectIn> AskWhereToConnect(Operation& operation, DataWindow& window);
/// What the user is told when there is no room for another window.
std::string WindowLimitText();

}  // namespace marisonde
