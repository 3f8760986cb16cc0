#pragma once

#include <string>
#include <string_view>

namespace marisonde {

/// Key and value of one line of calibration text; both empty for a line that has none.
struct CalLine {
    std::string_view key;    ///< before the first "=", not trimmed
    std::string_view value;  ///< trimmed; ends before a control character, "//" or a comma
};

/// Splits a line without its line end. A line with "[" changes `section` instead.
CalLine SplitCalLine(std::string_view line, std::string& section);

/// Takes the next line, without CR LF, LF or CR, off the front of `text`.
std::string_view TakeCalLine(std::string_view& text);

}  // namespace marisonde
