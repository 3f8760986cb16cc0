#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QLineEdit>
#include <QRadioButton>
#include <array>

#include "app/forms/TerminalBoxView.h"
#include "app/forms/TermulatorForm.h"

namespace marisonde {

namespace {

constexpr char kInterrupt = 3;
constexpr char kEscape = 0x1B;

/// What a key types, or 0. Keys held with Alt are the menus'; with both Ctrl and Alt they are characters of
/// some keyboards.
char Typed(const QKeyEvent& event) {
    switch (event.key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            return '\r';
        case Qt::Key_Backspace:
            return TypedLine::kBackspace;
        case Qt::Key_Escape:
            return kEscape;
        default:
            break;
    }
    const bool ctrl = event.modifiers().testFlag(Qt::ControlModifier);
    const bool alt = event.modifiers().testFlag(Qt::AltModifier);
    if (ctrl != alt || event.modifiers().testFlag(Qt::MetaModifier) || event.text().size() != 1) return 0;
    const char16_t code = event.text().front().unicode();
    return code >= 0x20 && code != 0x7F && code <= 0xFF ? static_cast<char>(code) : '\0';
}

}  // namespace

/// Wherever in the form a key is pressed it counts as typed, but for what works a control.
bool TermulatorForm::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress) return QMainWindow::eventFilter(watched, event);
    const auto& key = static_cast<const QKeyEvent&>(*event);
    const bool button = watched == ascii_ || watched == numerical_;
    const bool worksButton =
        key.key() == Qt::Key_Space || key.key() == Qt::Key_Up || key.key() == Qt::Key_Down;
    if (button && worksButton) return false;
    return HandleKey(key);
}

void TermulatorForm::keyPressEvent(QKeyEvent* event) {
    if (!HandleKey(*event)) QMainWindow::keyPressEvent(event);
}

bool TermulatorForm::HandleKey(const QKeyEvent& event) {
    if (HandleShortcut(event)) return true;
    const char key = Typed(event);
    if (key == 0) return false;
    TypeKey(key, event.isAutoRepeat());
    return true;
}

bool TermulatorForm::HandleShortcut(const QKeyEvent& event) {
    if (event.matches(QKeySequence::Copy)) {
        if (!CopySelection()) TypeKey(kInterrupt, event.isAutoRepeat());
        return true;
    }
    if (event.matches(QKeySequence::Paste)) {
        PasteText();
        return true;
    }
    const bool up = event.key() == Qt::Key_Up;
    if ((!up && event.key() != Qt::Key_Down) || event.modifiers().testFlag(Qt::ShiftModifier)) return false;
    if (up)
        window_.Terminal.OlderLine();
    else
        window_.Terminal.NewerLine();
    ShowTyped();
    return true;
}

/// A key that is held down tells only once that it has nowhere to go.
void TermulatorForm::TypeKey(char key, bool repeated) {
    if (!window_.Terminal.KeyPress(key) && !repeated)
        dialogs_.ShowError(std::string(Termulator::kNotConnected));
    ShowTyped();
}

/// The box that the user is in comes first; null when none has a selection.
TerminalBoxView* TermulatorForm::SelectedBox() const {
    for (TerminalBoxView* box :
         data_->hasFocus() ? std::array{data_, response_} : std::array{response_, data_})
        if (box->textCursor().hasSelection()) return box;
    return nullptr;
}

bool TermulatorForm::HasSelection() const {
    return SelectedBox() != nullptr || command_->hasSelectedText();
}

bool TermulatorForm::CopySelection() {
    if (TerminalBoxView* const box = SelectedBox()) {
        box->copy();
        return true;
    }
    command_->copy();
    return command_->hasSelectedText();
}

void TermulatorForm::PasteText() {
    const QByteArray text = QApplication::clipboard()->text().toLatin1();
    if (!window_.Terminal.Paste({text.data(), static_cast<std::size_t>(text.size())}))
        dialogs_.ShowError(std::string(Termulator::kNotConnected));
    ShowTyped();
}

}  // namespace marisonde
