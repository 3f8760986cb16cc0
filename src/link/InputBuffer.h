#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace marisonde {

/// Text from an instrument that is not yet cut into lines. Lines end in a carriage return; one line feed is
/// dropped at the front of what follows, however the text comes in pieces. Text without a line end is
/// bounded: past kMaxPartial the oldest is given up.
class InputBuffer {
  public:
    static constexpr std::size_t kMaxPartial = 64 * 1024;

    void Append(std::string_view chunk);
    /// Puts the next complete line, without its carriage return, into `line`. False: no complete line is
    /// left.
    bool NextLine(std::string& line);
    /// Everything not yet taken as lines.
    [[nodiscard]] std::string_view Text() const { return std::string_view(text_).substr(begin_); }
    [[nodiscard]] bool empty() const { return begin_ == text_.size(); }
    void Clear();

  private:
    std::string text_;
    std::size_t begin_ = 0;  ///< first character not yet taken
    bool mayDropLineFeed_ = true;
    std::size_t scanned_ = 0;  ///< no carriage return stands between begin_ and here
};

}  // namespace marisonde
