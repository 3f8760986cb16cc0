#include "link/InputBuffer.h"

namespace marisonde {

void InputBuffer::Append(std::string_view chunk) {
    text_.append(chunk);
}

bool InputBuffer::NextLine(std::string& line) {
    if (!empty()) {
        if (mayDropLineFeed_ && text_[begin_] == '\n') ++begin_;
        mayDropLineFeed_ = false;
    }
    if (scanned_ < begin_) scanned_ = begin_;
    const std::size_t end = text_.find('\r', scanned_);
    if (end == std::string::npos) {
        text_.erase(0, begin_);
        begin_ = 0;
        if (text_.size() > kMaxPartial) text_.erase(0, text_.size() - kMaxPartial);
        scanned_ = text_.size();
        return false;
    }
    line.assign(text_, begin_, end - begin_);
    begin_ = end + 1;
    scanned_ = begin_;
    mayDropLineFeed_ = true;
    return true;
}

void InputBuffer::Clear() {
    text_.clear();
    mayDropLineFeed_ = true;
    begin_ = 0;
    scanned_ = 0;
}

}  // namespace marisonde
