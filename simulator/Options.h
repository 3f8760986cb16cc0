#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "simulator/Models.h"

namespace marisonde::simulator {

using Millis = std::chrono::milliseconds;

/// How a sample is put into a line. Which forms a model has is told by OffersForm.
enum class LineForm {
    Natural,            ///< what the model sends from the factory: "*T", "*A", "*C", full decimal
    Hex,                ///< "*D" of a Corvane, "*A" or "*C" of a Tidal
    HexHundredths,      ///< "*T"
    HexVerbose,         ///< "*V"
    Decimal,            ///< Corvane 53 commas, Tidal 11, Delph and Fathom 15
    DecimalTimed,       ///< the same behind a leading time: Corvane 54 commas, Tidal 13
    DecimalShort,       ///< Tidal 5 commas, Delph and Fathom 8
    DecimalShortTimed,  ///< Tidal 6 commas
};
/// "hex", "hundredths", "verbose", "decimal", "decimal-timed", "short", "short-timed" or "natural".
std::optional<LineForm> LineFormFromText(std::string_view text);
bool OffersForm(Model model, LineForm form);

/// Firmware differs in whether the "*" of a hexadecimal line is summed too.
enum class ChecksumStyle { WithoutStar, WithStar };

/// How a Corvane gives its calibration away. The others have one way only.
enum class CalStore {
    Both,      ///< as a file, and channel by channel
    Channels,  ///< older firmware: "gcf" and "ccl" only
    File,      ///< "sendcal" and "MAKEINI" only
};

enum class PowerOn { Sampling, Stopped, Sleeping };

/// What is wrong with the cable and the instrument. All off by default; a rate of 0 is never.
struct FaultOptions {
    unsigned flipOneIn = 0;    ///< one bit of one byte in n, on average
    unsigned dropOneIn = 0;    ///< one byte in n is lost
    unsigned babbleOneIn = 0;  ///< before one byte in n come 1 to 40 random bytes
    bool splitWrites = false;  ///< bytes are held back and come in uneven pieces, later ones merged
    Millis stallEvery{0};  ///< nothing comes for stallFor, once in this time; what waited comes at once then
    Millis stallFor{0};
    std::optional<Millis> vanishAt{};  ///< from here on nothing is sent or heard
};

/// How an instrument answers otherwise than it should. All off by default.
struct ReplyOptions {
    Millis delay{0};            ///< from the end of a command to its answer
    bool mute = false;          ///< nothing is ever said, not even an echo
    std::string silentTo{};     ///< the command of this name, upper case, is heard but not answered
    int cutAfterLines = -1;     ///< the answer to a command ends after so many lines; -1 never
    bool doubledLines = false;  ///< each line of an answer comes twice
};

struct Options {
    LineForm form = LineForm::Natural;
    double samplesPerSecond = 0;  ///< 0: what is usual for the model. The line may hold less than is asked
    ChecksumStyle checksum = ChecksumStyle::WithoutStar;
    int extraEvery =
        -1;  ///< one "*H" or "*I" line before each n-th sample; 0 none, -1 as usual for the model
    int baud = 19200;
    bool lineFeed = true;    ///< lines end in CR LF, else in CR alone
    std::uint64_t seed = 1;  ///< noise and faults; the same seed gives the same bytes
    std::chrono::sys_seconds startDate{std::chrono::seconds{1309770922}};  ///< 4 July 2011 09:15:22
    PowerOn powerOn = PowerOn::Sampling;
    int startCountdown = 5;         ///< s from START to the first sample
    std::optional<bool> shutter{};  ///< unset: as the model has it. Only Corvanes have shutters
    double bottomM = 100;           ///< the profile goes from the surface to here and back, 0 to 400 m
    std::string firmware = "1.85";  ///< a number as text
    bool shortId = false;           ///< Tidal: identifies itself with its serial alone, as old firmware does
    std::string serial{};           ///< empty: as usual for the model; old units have the style of "CV6-123"
    std::string calSerial{};        ///< what the calibration says of it; empty: the same
    std::string config{};           ///< configuration text; empty: as usual for the model
    int calAgeDays = 45;            ///< days from the calibration to startDate
    CalStore calStore = CalStore::Both;
    bool dumpAsText = false;  ///< l-Tidal, n-Tidal: "DUMPCFG" gives the calibration file, not the image
    ReplyOptions replies{};
    FaultOptions faults{};
};

}  // namespace marisonde::simulator
