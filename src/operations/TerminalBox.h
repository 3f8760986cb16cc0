#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace marisonde {

/// The text of one box of the terminal, and what has changed in it since it was last shown: a view follows in
/// small steps, whatever the box holds. Bytes are Latin-1; lines end in CR LF.
class TerminalBox {
  public:
    /// What a view does to follow, in this order. Counts are of shown characters: a carriage return is not
    /// shown, the line feed behind it breaks the line.
    struct Changes {
        std::size_t fromEnd = 0;    ///< characters to take away at the end
        std::size_t fromFront = 0;  ///< and at the front
        std::string added;          ///< to put at the end, without carriage returns
    };

    [[nodiscard]] const std::string& Text() const { return text_; }
    void Append(std::string_view text) { text_ += text; }
    /// Takes away the first `count` characters; all when there are fewer.
    void CutFront(std::size_t count);
    /// Keeps the first `length` characters.
    void CutBack(std::size_t length);
    /// Since the last call.
    Changes TakeChanges();

  private:
    std::string text_;
    std::size_t shown_ = 0;  ///< characters of text_, from the front, that the view has
    Changes pending_;
};

}  // namespace marisonde
