#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace marisonde {

/// Appends to a text that an instrument could make grow without end: past `most` characters the oldest are
/// given up.
inline void AppendBounded(std::string& text, std::string_view added, std::size_t most) {
    text.append(added);
    if (text.size() > most) text.erase(0, text.size() - most);
}

}  // namespace marisonde
