#pragma once

#include <cstdint>
#include <string_view>

namespace marisonde {

/// What kind of instrument the program talks to. The numbers stand in files and tables; keep them.
enum class InstTypeCode : std::int32_t {
    Corvane6 = 0,
    Corvane4 = 1,
    Corvane2 = 2,
    LTidal = 3,
    NTidal = 4,
    XTidal = 5,
    Fathom2 = 6,
    Delph2 = 7,
    Delph4 = 8,
    Delph6 = 9,
    Unknown = 10,
    NoSuchName = 11,  ///< answer of InstTypeFromName for a text that names no model
};

inline constexpr int kInstTypeCount = 11;  ///< codes 0 to 10

/// Channel arrays of samples and calibrations have this many entries.
inline constexpr int kChannelSlots = 13;

/// "Corvane-6" and so on; "unknown" for Unknown and for any value outside the table.
std::string_view InstTypeName(InstTypeCode code);
/// Case-insensitive inverse of InstTypeName; NoSuchName when nothing is equal.
InstTypeCode InstTypeFromName(std::string_view text);

bool IsCorvaneFamily(InstTypeCode code);
bool IsTidalFamily(InstTypeCode code);
bool IsDelphFamily(InstTypeCode code);

/// Whether data of one can be read with a calibration of the other: the same, or one of them is what decimal
/// lines of its family are taken for, x-Tidal or Fathom-2. Unknown goes with nothing.
bool TypesAreCompatible(InstTypeCode a, InstTypeCode b);

/// Channels that carry sample values: 8, 4, 3 for the Corvane models, 1 Tidal, 0 Delph, -1 unknown.
int ChannelSlots(InstTypeCode code);
/// Backscatter channels shown: 6, 4, 2 Corvane, 1 Tidal; optical channels 2, 2, 4, 6 for Fathom and Delph.
int ChannelsShown(InstTypeCode code);
/// Optical channels of the Delph family (2, 2, 4, 6), 1 for the Tidal family, 0 otherwise.
int DelphChannels(InstTypeCode code);
/// Reference constant of the factory workbench: 4.81, 3.64, 4.81, 4.83 (Tidal), -1 otherwise.
double ReferenceConstant(InstTypeCode code);

/// Identification of one instrument as its ID reply gives it; what the rules below need of a window.
struct InstIdentity {
    InstTypeCode type = InstTypeCode::Unknown;
    std::string_view config;           ///< letters: "F" fluorescence channels, "T" (but not "T0") shutter
    std::string_view firmwareVersion;  ///< number as text, "0" until known
    bool sleeping = false;
};

bool HasFluorChannels(const InstIdentity& inst);
bool HasShutter(const InstIdentity& inst);
/// Characters sent per tick: 10 Corvane; Delph 20 above firmware 1.01, else 1; others 1; 1 while sleeping.
int OutputChunkSize(const InstIdentity& inst);
/// True when either text is empty or "unknown", or both have the same two letters (any case) and the same
/// number.
bool SerialMatches(std::string_view a, std::string_view b);
/// Tidal instruments with a serial below 7 characters are of the first series, whose firmware keeps no
/// calibration.
bool StoresCalibration(InstTypeCode type, std::string_view serial);

}  // namespace marisonde
