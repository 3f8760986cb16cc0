#include "app/forms/StatusItems.h"

#include <QAction>
#include <QWidget>

namespace marisonde {

void StatusItems::Show(const StatusFacts& facts, bool connecting) {
    const Shown now{facts, connecting};
    if (shown_ == now) return;
    shown_ = now;
    for (const ItemRule& rule : ItemRules()) {
        const auto name = QLatin1StringView(rule.item.data(), static_cast<qsizetype>(rule.item.size()));
        const bool enabled = ItemEnabled(rule, facts) && !(connecting && rule.needsPort);
        for (QAction* item : form_.findChildren<QAction*>(QString(name))) item->setEnabled(enabled);
    }
}

}  // namespace marisonde
