#pragma once

#include <optional>

#include "app/StatusDisplay.h"

class QWidget;

namespace marisonde {

/// Enables the menu items of a window, and of the windows that belong to it, by the rules of the status
/// display. An item is known by its object name; one that is made later is found at the next change.
class StatusItems {
  public:
    explicit StatusItems(QWidget& form) : form_(form) {}
    /// Cheap while the facts stay the same. While the window connects nothing that needs its port may be
    /// used.
    void Show(const StatusFacts& facts, bool connecting);
    /// Items have been added: the next Show looks at all of them.
    void Forget() { shown_.reset(); }

  private:
    struct Shown {
        StatusFacts facts;
        bool connecting;
        bool operator==(const Shown&) const = default;
    };
    QWidget& form_;
    std::optional<Shown> shown_;
};

}  // namespace marisonde
