#include "app/forms/TerminalBoxView.h"

#include <QFontDatabase>
#include <QScrollBar>
#include <QTextBlock>
#include <algorithm>

namespace marisonde {

namespace {

constexpr char kNoGlyph = '\xB7';  ///< a middle dot: noise of a wrong baud rate has no glyphs

QString Visible(std::string text) {
    std::replace_if(
        text.begin(), text.end(),
        [](char c) {
            const auto code = static_cast<unsigned char>(c);
            return (code < 0x20 && c != '\n' && c != '\t') || (code >= 0x7F && code < 0xA0);
        },
        kNoGlyph);
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

TerminalBoxView::TerminalBoxView(QWidget* parent) : QPlainTextEdit(parent) {
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setTabChangesFocus(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    KeepToTheEnd();
}

/// The range of the bar is known only once the text is laid out, which may be after the form is shown.
void TerminalBoxView::KeepToTheEnd() {
    QScrollBar* const bar = verticalScrollBar();
    connect(bar, &QScrollBar::rangeChanged, this, [this, bar] {
        if (follows_) bar->setValue(bar->maximum());
    });
    connect(bar, &QScrollBar::valueChanged, this, [this, bar](int value) {
        if (!changing_) follows_ = value >= bar->maximum();
    });
}

void TerminalBoxView::Remove(int from, int count) {
    QTextCursor cursor(document());
    cursor.setPosition(from);
    cursor.setPosition(from + count, QTextCursor::KeepAnchor);
    cursor.removeSelectedText();
}

void TerminalBoxView::Follow(TerminalBox& box) {
    TerminalBox::Changes changes = box.TakeChanges();
    if (changes.fromEnd == 0 && changes.fromFront == 0 && changes.added.empty()) return;
    changing_ = true;
    QTextCursor edit(document());
    edit.beginEditBlock();
    const int length = document()->characterCount() - 1;
    const int fromEnd = std::min(static_cast<int>(changes.fromEnd), length);
    if (fromEnd > 0) Remove(length - fromEnd, fromEnd);
    const int fromFront = std::min(static_cast<int>(changes.fromFront), length - fromEnd);
    if (fromFront > 0) Remove(0, fromFront);
    edit.movePosition(QTextCursor::End);
    edit.insertText(Visible(std::move(changes.added)));
    edit.endEditBlock();
    changing_ = false;
    if (follows_) verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

}  // namespace marisonde
