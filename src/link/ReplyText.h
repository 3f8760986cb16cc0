#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "link/DataWindowState.h"

/// What reply parsers share: looking for words, and reading what stands behind them.
namespace marisonde {

/// The lines collected for the current command.
inline std::span<std::string> ReplyLines(DataWindowState& state) {
    return {state.ResponseLines.data(), static_cast<std::size_t>(state.ResponseLineCount)};
}
inline bool Holds(std::string_view text, std::string_view word) {
    return text.find(word) != std::string_view::npos;
}
/// Trimmed text behind the first `mark`; empty when the mark does not stand in the line.
std::string_view TextBehind(std::string_view line, std::string_view mark);
/// Value of NumericTail.
double TailValue(std::string_view line);
/// "MM/DD/YY" with an optional " hh:mm[:ss]" from the first digit on, in days since 30 December 1899. Years
/// below 70 are of this century, those below 199 of the last. nullopt: no such date.
std::optional<double> WrittenDate(std::string_view text);

}  // namespace marisonde
