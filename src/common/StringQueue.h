#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace marisonde {

/// Bounded ring of texts that loses its oldest entry when full. A capacity of n holds n - 1 entries.
/// Entries keep their memory when they leave, so a ring in steady use allocates nothing.
class StringQueue {
  public:
    explicit StringQueue(int capacity = 10) { MaxSize(capacity); }

    void Add(std::string_view text);
    [[nodiscard]] int size() const;
    /// The oldest entry, or the empty text. The reference form below avoids the copy.
    std::string GetNext();
    /// Puts the oldest entry into `out` (swapping buffers); false and an empty `out` when there is none.
    bool GetNext(std::string& out);
    /// Re-dimensions the ring (at least 2) and empties it.
    void MaxSize(int capacity);
    void Clear();

  private:
    std::vector<std::string> ring_;
    std::size_t firstIndex_ = 0;
    std::size_t nextIndex_ = 0;
};

}  // namespace marisonde
