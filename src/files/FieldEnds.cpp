#include "files/FieldEnds.h"

namespace marisonde {

void FieldEnds::Mark(std::string_view line, std::size_t readable) {
    constexpr std::size_t kLongest = std::size_t{64} * 1024;
    const std::string_view text = line.substr(0, kLongest);
    Clear(readable);
    std::size_t base = 0;
    for (; base < text.size() && readable - base >= kTextBlock; base += kTextBlock) {
        const std::size_t rest = text.size() - base;
        const std::uint64_t within = rest < kTextBlock ? (std::uint64_t{1} << rest) - 1 : ~std::uint64_t{0};
        Add(TextBlock(text.data() + base).Equal(',') & within, base);
    }
    for (; base < text.size(); ++base)
        if (text[base] == ',') Add(1, base);
}

}  // namespace marisonde
