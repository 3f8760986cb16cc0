#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "app/AppContext.h"

namespace marisonde {

/// A further window of a data window, such as its terminal. It registers itself with its data window and is
/// listed in the menu of windows while it is open.
struct ChildWindow {
    std::string tag;                       ///< "Cal", "Spec" or "Term"; the order in the menu
    std::function<std::string()> caption;  ///< as its title bar has it, or just its name
    std::function<bool()> isOpen;
    std::function<void()> show;  ///< brings it to the front
};

/// One line of the menu of windows.
struct WindowMenuEntry {
    std::string text;
    std::string tag;  ///< of a child; empty for a data window itself
    int window = 0;   ///< slot of the data window
    bool checked = false;
    bool operator==(const WindowMenuEntry&) const = default;
};

/// Entries beyond this many are not made.
inline constexpr int kMaxWindowMenuEntries = 100;

/// The list of all windows as it stands in the menu of the data window in slot `standsIn`.
std::vector<WindowMenuEntry> BuildWindowMenu(const AppContext& app, int standsIn);
/// Brings what the entry names to the front; nothing when that has closed in the meantime.
void SelectWindowFromWindowsMenu(const AppContext& app, const WindowMenuEntry& entry);

}  // namespace marisonde
