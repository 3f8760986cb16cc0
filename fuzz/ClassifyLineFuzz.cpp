// One line of any bytes through classification, every decoder and the text rules. The first byte chooses the
// model in use and whether a hexadecimal line gets a right checksum, without which its decoders would hardly
// ever be reached.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "Property.h"
#include "decode/Decoders.h"
#include "decode/TextMessages.h"

namespace {

using namespace marisonde;

/// What the sum of a "*" line says, worked out here once more and in another way than in the program.
bool ChecksumHolds(const std::string& line) {
    if (line.size() < 2) return false;
    unsigned sum = 0;
    for (const char c : line) sum += static_cast<unsigned char>(c);
    for (std::size_t i = line.size() - 2; i < line.size(); ++i)
        if (i != 0) sum -= static_cast<unsigned char>(line[i]);
    std::string digits = line.substr(line.size() - 2);
    digits.resize(std::min(digits.find_first_not_of("0123456789ABCDEFabcdef"), digits.size()));
    const unsigned long sent = digits.empty() ? 0 : std::strtoul(digits.c_str(), nullptr, 16);
    return sent == sum % 256 || sent == (sum - '*') % 256;
}

void SetChecksum(std::string& line) {
    if (line.size() < 4 || line[0] != '*') return;
    unsigned sum = 0;
    for (std::size_t i = 1; i + 2 < line.size(); ++i) sum += static_cast<unsigned char>(line[i]);
    constexpr char kDigits[] = "0123456789ABCDEF";
    line[line.size() - 2] = kDigits[sum / 16 % 16];
    line[line.size() - 1] = kDigits[sum % 16];
}

void CheckDecoders(const std::string& line, InstTypeCode model) {
    RawSample before;
    before.Temp = 12.5F;
    before.Sig.fill(7);
    RawSample first = before;
    RawSample second = before;
    const LineKind kind = ClassifyLine(line);
    const bool decoded = ParseRawLine(line, model, first);
    Require(decoded == ParseRawLine(line, kind, model, second) && first == second);
    if (!line.empty() && line[0] == '*' && !ChecksumHolds(line)) {
        Require(kind == LineKind::Other && !decoded);
        HousekeepingBlock block;
        Require(!DecodeHousekeeping(line, block) && block == HousekeepingBlock{});
    }
    if (!decoded && kind != LineKind::TidalExtraHex) Require(first == before);
    Require(std::isfinite(first.Time) && std::isfinite(first.DayFraction));
    const InstTypeCode told = InstTypeFromLine(line);
    Require(told >= InstTypeCode::Corvane6 && told <= InstTypeCode::Unknown);
    Require(DecodeVoltageOnly(line, second) == (kind == LineKind::CorvaneHousekeeping));
}

void CheckTextRules(const std::string& line) {
    const TextMessage message = ReadTextLine(line, false);
    Require(message.startsInSeconds.has_value() == (message.state == InstStateCode::Starting));
    const TextMessage transfer = ReadTextLine(line, true);
    if (message.state != transfer.state)
        Require(message.state == InstStateCode::Sampling && transfer.state == InstStateCode::Downloading);
    if (IsMessageForUser(line, "", "")) Require(!line.empty() && line[0] == '!');
    if (const auto partial = ReadPartialText(line)) Require(*partial != InstStateCode::Unknown);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    std::string line(reinterpret_cast<const char*>(data) + 1, size - 1);
    if (data[0] & 0x10) SetChecksum(line);
    const auto model = static_cast<InstTypeCode>((data[0] & 0xF) % (kInstTypeCount + 1));
    CheckDecoders(line, model);
    CheckTextRules(line);
    return 0;
}
