#pragma once

#include <cstdint>
#include <string_view>

#include "common/InstTypes.h"

namespace marisonde {

/// What a received line is. There is no kind 17.
enum class LineKind : std::int32_t {
    Other = 0,                 ///< text, messages, lines with a bad checksum
    CorvaneHex = 1,            ///< "*D"
    CorvaneHexHundredths = 2,  ///< "*T"
    CorvaneHousekeeping = 3,   ///< "*H"
    CorvaneVerboseHex = 4,     ///< "*V"
    LTidalHex = 5,             ///< "*A"
    NTidalHex = 6,             ///< "*C"
    TidalExtraHex = 7,         ///< "*I"
    TidalShort = 8,            ///< 5 commas
    TidalFull = 9,             ///< 11 or 12 commas
    TidalTimed = 10,           ///< 6 or 13 commas
    CorvaneVerbose = 11,       ///< 53 commas
    CorvaneVerboseTimed = 12,  ///< 54 commas
    DelphFull = 13,            ///< 15 commas
    Commas19 = 14,             ///< no decoder
    Commas21 = 15,             ///< no decoder
    Delph = 16,                ///< 8 commas
    Commas16 = 18,             ///< no decoder
};

/// The kind of a line without its line end. Any bytes are allowed.
LineKind ClassifyLine(std::string_view line);
/// Last two characters in hexadecimal against the sum modulo 256, without or with the first character.
bool LineChecksumOk(std::string_view line);
int CommaCount(std::string_view line);
/// The model told from one data line of a raw file without header; Unknown when it tells nothing.
InstTypeCode InstTypeFromLine(std::string_view line);

}  // namespace marisonde
