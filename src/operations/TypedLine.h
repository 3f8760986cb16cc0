#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>

namespace marisonde {

/// The line that the user types to the instrument, and those typed before. The instrument gets each character
/// as it is typed; a line that was recalled or pasted gets there when the user goes on with it.
class TypedLine {
  public:
    static constexpr std::size_t kMaxHistory = 100;
    static constexpr char kBackspace = '\b';

    /// What Command_Box shows.
    [[nodiscard]] const std::string& Text() const { return text_; }

    // Each answers what must go to the instrument.

    /// A character: those that can be seen join the text, a backspace takes the last one away, others only go
    /// out. An interrupt (Ctrl+C) drops the line.
    std::string Type(char key);
    /// The end of the line, without its carriage return. The line is kept for recall, Text becomes empty.
    std::string Enter();

    // These send nothing.

    /// Recalls the line typed before, or after, the one that is shown. At the newest end the line begun comes
    /// back.
    void Older();
    void Newer();
    /// Adds text up to its first line end; what cannot be seen is left out.
    void Paste(std::string_view text);

  private:
    void Forget();
    std::string CatchUp();

    std::string text_;
    std::string sent_;  ///< what the instrument has of the line
    std::string begun_;
    std::deque<std::string> history_;
    std::size_t place_ = 0;  ///< in the history; its size: the line begun
};

}  // namespace marisonde
