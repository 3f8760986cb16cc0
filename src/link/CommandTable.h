#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "common/InstTypes.h"

namespace marisonde {

class InstrumentLink;

/// How the text of a command goes out.
enum class CommandWay {
    None,     ///< nothing goes out
    Queue,    ///< behind what waits already, at the pace of the instrument
    Replace,  ///< instead of what waits
    Direct,   ///< at once, past the pacing: only while the instrument is surely awake
};

/// Instrument families as bits.
namespace Models {
inline constexpr std::uint8_t Corvane = 1;
inline constexpr std::uint8_t Tidal = 2;
inline constexpr std::uint8_t Delph = 4;
inline constexpr std::uint8_t Unknown = 8;
inline constexpr std::uint8_t All = 15;
inline constexpr std::uint8_t NotCorvane = All & ~Corvane;
inline constexpr std::uint8_t NotTidal = All & ~Tidal;
}  // namespace Models
std::uint8_t ModelBit(InstTypeCode type);

/// What is done before a command goes out. May tidy the argument; false: nothing goes out.
using CommandPreparation = bool (*)(InstrumentLink& window, std::string& argument);

/// One row of the command set.
struct CommandRow {
    std::string_view name;  ///< upper case
    std::uint8_t models;
    /// Wire text; {name} is the name as the caller wrote it, {arg} the argument, {fl1} and {fl2} the names of
    /// the fluorescence channels.
    std::string_view wire;
    CommandWay way;
    CommandPreparation prepare = nullptr;
    bool onlyAsleep = false;  ///< the row holds for a sleeping instrument only
};

std::span<const CommandRow> CommandTable();
/// The row of a command (name in upper case) for a model. A name of the table without a row for the model
/// sends nothing; names that are not in the table go out as they are, with their argument.
const CommandRow& FindCommand(std::string_view name, InstTypeCode type, bool asleep);

}  // namespace marisonde
