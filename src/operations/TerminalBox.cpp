#include "operations/TerminalBox.h"

#include <algorithm>
#include <utility>

namespace marisonde {

namespace {

std::size_t ShownLength(std::string_view text) {
    return text.size() - static_cast<std::size_t>(std::count(text.begin(), text.end(), '\r'));
}

}  // namespace

void TerminalBox::CutFront(std::size_t count) {
    count = std::min(count, text_.size());
    const std::size_t seen = std::min(count, shown_);
    pending_.fromFront += ShownLength(std::string_view(text_).substr(0, seen));
    shown_ -= seen;
    text_.erase(0, count);
}

void TerminalBox::CutBack(std::size_t length) {
    if (length >= text_.size()) return;
    if (length < shown_) {
        pending_.fromEnd += ShownLength(std::string_view(text_).substr(length, shown_ - length));
        shown_ = length;
    }
    text_.resize(length);
}

TerminalBox::Changes TerminalBox::TakeChanges() {
    pending_.added.assign(text_, shown_);
    std::erase(pending_.added, '\r');
    shown_ = text_.size();
    return std::exchange(pending_, {});
}

}  // namespace marisonde
