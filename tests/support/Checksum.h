#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace marisonde {

/// A hexadecimal line with its two checksum digits: the sum of what stands behind the "*", or of the "*" too.
inline std::string WithChecksum(std::string_view body, bool countStar = false) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    unsigned sum = 0;
    for (std::size_t i = countStar ? 0 : 1; i < body.size(); ++i) sum += static_cast<unsigned char>(body[i]);
    std::string line(body);
    line += kDigits[sum / 16 % 16];
    line += kDigits[sum % 16];
    return line;
}

}  // namespace marisonde
