#include "app/WindowMenu.h"

#include <array>

#include "app/DataWindow.h"
#include "app/WindowTitle.h"

namespace marisonde {

namespace {

constexpr std::array<std::string_view, 3> kTagsInOrder{"Cal", "Spec", "Term"};
constexpr const char* kIndent = "   ";

const DataWindow* WindowAt(const AppContext& app, int index) {
    return app.windows.at(static_cast<std::size_t>(index));
}

void AddChildren(std::vector<WindowMenuEntry>& entries, const DataWindow& window) {
    for (const std::string_view tag : kTagsInOrder)
        for (const ChildWindow& child : window.Children)
            if (child.tag == tag && child.isOpen())
                entries.push_back({kIndent + CutCaption(child.caption()), child.tag, window.Index(), false});
}

}  // namespace

std::vector<WindowMenuEntry> BuildWindowMenu(const AppContext& app, int standsIn) {
    std::vector<WindowMenuEntry> entries;
    for (int index = 0; index < kMaxWindows; ++index) {
        const DataWindow* const window = WindowAt(app, index);
        if (window == nullptr) continue;
        entries.push_back({CutCaption(window->Title()), "", index, index == standsIn});
        AddChildren(entries, *window);
    }
    if (entries.size() > kMaxWindowMenuEntries) entries.resize(kMaxWindowMenuEntries);
    return entries;
}

void SelectWindowFromWindowsMenu(const AppContext& app, const WindowMenuEntry& entry) {
    const DataWindow* const window = WindowAt(app, entry.window);
    if (window == nullptr) return;
    if (entry.tag.empty()) {
        if (window->OnShow) window->OnShow();
        return;
    }
    for (const ChildWindow& child : window->Children)
        if (child.tag == entry.tag && child.isOpen()) return child.show();
}

}  // namespace marisonde
