#include "operations/TypedLine.h"

#include <algorithm>

namespace marisonde {

namespace {

constexpr char kInterrupt = 3;  ///< Ctrl+C: instruments drop the line

bool IsSeen(char c) {
    const auto code = static_cast<unsigned char>(c);
    return code >= 0x20 && (code < 0x7F || code > 0x9F);
}

}  // namespace

/// Brings the instrument's line to what is shown.
std::string TypedLine::CatchUp() {
    const auto [differs, same] = std::mismatch(sent_.begin(), sent_.end(), text_.begin(), text_.end());
    std::string out(static_cast<std::size_t>(sent_.end() - differs), kBackspace);
    out.append(same, text_.end());
    sent_ = text_;
    return out;
}

std::string TypedLine::Type(char key) {
    if (key == kInterrupt) {
        Forget();
        return {key};
    }
    std::string out = CatchUp();
    out += key;
    if (key == kBackspace && !text_.empty()) text_.pop_back();
    if (IsSeen(key)) text_ += key;
    sent_ = text_;
    place_ = history_.size();
    return out;
}

std::string TypedLine::Enter() {
    std::string out = CatchUp();
    if (!text_.empty() && (history_.empty() || history_.back() != text_)) history_.push_back(text_);
    if (history_.size() > kMaxHistory) history_.pop_front();
    Forget();
    return out;
}

void TypedLine::Older() {
    if (place_ == 0) return;
    if (place_ == history_.size()) begun_ = text_;
    text_ = history_[--place_];
}

void TypedLine::Newer() {
    if (place_ == history_.size()) return;
    ++place_;
    text_ = place_ == history_.size() ? begun_ : history_[place_];
}

void TypedLine::Paste(std::string_view text) {
    for (const char c : text.substr(0, text.find_first_of("\r\n")))
        if (IsSeen(c)) text_ += c;
}

void TypedLine::Forget() {
    text_.clear();
    sent_.clear();
    begun_.clear();
    place_ = history_.size();
}

}  // namespace marisonde
