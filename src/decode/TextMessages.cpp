#include "decode/TextMessages.h"

#include "common/ConversionUtils.h"
#include "common/Numbers.h"
#include "decode/LineKind.h"

namespace marisonde {

namespace {

struct WordRule {
    std::string_view words;  ///< lower case
    InstStateCode state;
};

/// In the order in which they are tried; the first that is found decides.
constexpr WordRule kLineRules[] = {
    {"starting in", InstStateCode::Starting},
    {"starts in", InstStateCode::Starting},
    {"sleeping", InstStateCode::Sleeping},
    {"stopped", InstStateCode::Stopped},
    {"abort", InstStateCode::Stopped},
    {"woke", InstStateCode::Stopped},
    {"ready", InstStateCode::Stopped},
    {"turning on", InstStateCode::Waking},
    {"..done", InstStateCode::Stopped},
    {"opening shutter", InstStateCode::OpeningShutter},
    {"closing shutter", InstStateCode::ClosingShutter},
};

/// The messages that the firmware sends without a line end.
constexpr WordRule kPartialRules[] = {
    {"opening shutter", InstStateCode::OpeningShutter},
    {"closing shutter", InstStateCode::ClosingShutter},
    {"..done", InstStateCode::Stopped},
};

constexpr int kDataLineCommas = 5;

template <std::size_t Rows>
std::optional<InstStateCode> FirstMatch(const WordRule (&rules)[Rows], std::string_view text) {
    for (const WordRule& rule : rules)
        if (HoldsIgnoringCase(text, rule.words)) return rule.state;
    return std::nullopt;
}

InstStateCode DataState(bool transferActive) {
    return transferActive ? InstStateCode::Downloading : InstStateCode::Sampling;
}

}  // namespace

TextMessage ReadTextLine(std::string_view line, bool transferActive) {
    TextMessage message;
    if (line.empty()) return message;
    if (line.front() == '*') {
        message.state = DataState(transferActive);
        return message;
    }
    message.state = FirstMatch(kLineRules, line);
    if (message.state == InstStateCode::Starting) message.startsInSeconds = ToInt16(Val(NumericTail(line)));
    if (!message.state && IsDigitChar(line) && CommaCount(line) >= kDataLineCommas)
        message.state = DataState(transferActive);
    return message;
}

std::optional<InstStateCode> ReadPartialText(std::string_view partial) {
    return FirstMatch(kPartialRules, partial);
}

bool IsMessageForUser(std::string_view line, std::string_view currentCommand, std::string_view lastMessage) {
    if (line.empty() || line.front() != '!') return false;
    if (HoldsIgnoringCase(line, "yes to erase") && currentCommand == "CLEARLOGCOMMAND") return false;
    return !HoldsIgnoringCase(line, "transfer complete") &&
           !HoldsIgnoringCase(lastMessage, "transfer complete");
}

}  // namespace marisonde
