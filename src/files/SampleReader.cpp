#include "files/SampleReader.h"

#include <array>
#include <string_view>

namespace marisonde {

namespace {

struct Reason {
    std::uint64_t LineCounts::*count;
    std::string_view name;
};
constexpr std::array kReasons{Reason{&LineCounts::badChecksum, "bad checksum"},
                              Reason{&LineCounts::noDecoder, "no decoder"},
                              Reason{&LineCounts::text, "text"}};

}  // namespace

std::string PassedOverText(const LineCounts& counts) {
    const std::uint64_t all = counts.PassedOver();
    if (all == 0) return "";
    std::string text = std::to_string(all) + (all == 1 ? " line passed over" : " lines passed over");
    std::string_view separator = ": ";
    for (const Reason& reason : kReasons) {
        const std::uint64_t count = counts.*reason.count;
        if (count == 0) continue;
        text.append(separator).append(std::to_string(count)).append(" ").append(reason.name);
        separator = ", ";
    }
    return text;
}

}  // namespace marisonde
