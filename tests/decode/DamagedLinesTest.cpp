#include <cstdlib>
#include <gtest/gtest.h>
#include <new>
#include <random>
#include <string>
#include <vector>

#include "CountedNew.h"
#include "Lines.h"
#include "decode/Decoders.h"
#include "decode/TextMessages.h"

namespace marisonde {
namespace {

std::vector<std::string> EveryForm() {
    return {
        WithChecksum(lines::kSample),
        WithChecksum(lines::kHundredths, true),
        WithChecksum(lines::kVerbose),
        WithChecksum(lines::kHousekeeping),
        WithChecksum(lines::kLTidal),
        WithChecksum(lines::kTidalExtra),
        lines::kVerboseDecimal,
        "Sample t=12.5," + lines::kVerboseDecimal,
        lines::kDelph,
        lines::kDelph + ",1190,7,1,2,3,4,5",
        "915148800.25,1024.5,3,-5000,8000,12.5",
        "915148800.25,1024.5,3,-5000,8000,12.5,11.9,2.5,4,5,20.1,20.2",
        "7.5,915148800.25,1024.5,3,-5000,8000,12.5",
        "Starting in 30 seconds",
        "!Shutter jammed",
    };
}

/// Everything that is done to a received line; tells whether it made a sample.
bool Handle(std::string_view line, InstTypeCode model) {
    RawSample sample;
    HousekeepingBlock block;
    const bool decoded = ParseRawLine(line, model, sample);
    DecodeHousekeeping(line, block);
    DecodeVoltageOnly(line, sample);
    InstTypeFromLine(line);
    ReadTextLine(line, false);
    IsMessageForUser(line, "CLEARLOGCOMMAND", line);
    ReadPartialText(line);
    return decoded;
}

bool MayDecode(std::string_view line) {
    return line.empty() || line[0] != '*' || LineChecksumOk(line);
}

TEST(DamagedLines, CutAnywhere) {
    for (const std::string& line : EveryForm()) {
        for (std::size_t length = 0; length <= line.size(); ++length) {
            // A copy of just that length lets the address sanitizer see a read beyond it.
            const std::string cut = line.substr(0, length);
            EXPECT_TRUE(!Handle(cut, InstTypeCode::XTidal) || MayDecode(cut)) << cut;
            if (cut.size() >= 2 && cut[0] == '*') Handle(WithChecksum(cut), InstTypeCode::XTidal);
        }
    }
}

TEST(DamagedLines, NulsAnywhere) {
    for (const std::string& line : EveryForm()) {
        for (std::size_t at = 0; at < line.size(); ++at) {
            std::string bad = line;
            bad[at] = '\0';
            EXPECT_TRUE(!Handle(bad, InstTypeCode::NTidal) || MayDecode(bad)) << at;
        }
    }
}

TEST(DamagedLines, FlippedBitsNeverMakeASampleOfAHexLine) {
    for (const std::string& line : EveryForm()) {
        for (std::size_t at = 0; at < line.size(); ++at) {
            for (int bit = 0; bit < 8; ++bit) {
                std::string bad = line;
                bad[at] = static_cast<char>(bad[at] ^ (1 << bit));
                const bool decoded = Handle(bad, InstTypeCode::XTidal);
                // Elsewhere it may only change the case of a checksum digit, which changes nothing.
                const bool summed = line[0] == '*' && at > 0 && at + 2 < line.size();
                EXPECT_FALSE(summed && decoded) << bad;
            }
        }
    }
}

TEST(DamagedLines, AFieldBeyondADamagedOneIsUnharmed) {
    RawSample whole;
    RawSample damaged;
    std::string body = lines::kSample;
    ASSERT_TRUE(ParseRawLine(WithChecksum(body), InstTypeCode::Corvane6, whole));
    body.replace(10, 4, std::string(4, '\0'));
    ASSERT_TRUE(ParseRawLine(WithChecksum(body), InstTypeCode::Corvane6, damaged));
    whole.Snorm[0] = 0;
    EXPECT_EQ(damaged, whole);
}

TEST(DamagedLines, RandomBytes) {
    std::mt19937 random(5);
    for (int i = 0; i < 20000; ++i) {
        std::string line(random() % 220, ' ');
        for (char& c : line) c = "*DTHVACI0123456789ABCDEF,,,,.+-!\xFF"[random() % 33];
        const auto model = static_cast<InstTypeCode>(random() % 12);
        EXPECT_TRUE(!Handle(line, model) || MayDecode(line)) << line;
    }
}

TEST(Decoding, AllocatesNothing) {
    const std::vector<std::string> all = EveryForm();
    const std::size_t before = AllocationCount();
    for (const std::string& line : all) Handle(line, InstTypeCode::LTidal);
    EXPECT_EQ(AllocationCount(), before);
}

}  // namespace
}  // namespace marisonde
