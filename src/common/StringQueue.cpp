#include "common/StringQueue.h"

#include <algorithm>
#include <utility>

namespace marisonde {

void StringQueue::Add(std::string_view text) {
    ring_[nextIndex_].assign(text);
    nextIndex_ = (nextIndex_ + 1) % ring_.size();
    if (nextIndex_ == firstIndex_) firstIndex_ = (firstIndex_ + 1) % ring_.size();
}

int StringQueue::size() const {
    return static_cast<int>((nextIndex_ + ring_.size() - firstIndex_) % ring_.size());
}

std::string StringQueue::GetNext() {
    std::string out;
    GetNext(out);
    return out;
}

bool StringQueue::GetNext(std::string& out) {
    out.clear();
    if (firstIndex_ == nextIndex_) return false;
    std::swap(out, ring_[firstIndex_]);
    firstIndex_ = (firstIndex_ + 1) % ring_.size();
    return true;
}

void StringQueue::MaxSize(int capacity) {
    ring_.assign(static_cast<std::size_t>(std::max(capacity, 2)), std::string());
    firstIndex_ = nextIndex_ = 0;
}

void StringQueue::Clear() {
    for (std::string& text : ring_) text.clear();
    firstIndex_ = nextIndex_ = 0;
}

}  // namespace marisonde
