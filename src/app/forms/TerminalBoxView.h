#pragma once

#include <QPlainTextEdit>

#include "operations/TerminalBox.h"

namespace marisonde {

/// One box of the terminal. It follows its text by what has changed, so that a tick costs the same however
/// much the box holds. It stays at the end unless the user has scrolled away.
class TerminalBoxView final : public QPlainTextEdit {
  public:
    explicit TerminalBoxView(QWidget* parent);

    void Follow(TerminalBox& box);

  private:
    void KeepToTheEnd();
    void Remove(int from, int count);

    bool follows_ = true;    ///< the end is shown, and stays so; not while the user reads further up
    bool changing_ = false;  ///< the text changes: where the bar stands meanwhile tells nothing
};

}  // namespace marisonde
