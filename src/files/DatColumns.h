#pragma once

#include <cstddef>
#include <span>
#include <string_view>

#include "common/InstTypes.h"

namespace marisonde {

/// Which quantity of a CalibratedSample a run of columns holds.
enum class DatField { bb, bbUncorr, beta, betaUncorr, k, K, a, Temp };

/// Neighbouring columns of one quantity, channels 0 to count - 1. The heading of column i is
/// "," prefix name(firstName + i) suffix, without a name when firstName is kNoName.
struct DatRun {
    DatField field;
    int count;
    int firstName;
    std::string_view prefix;
    std::string_view suffix;
};
inline constexpr int kNoName = -1;

/// The columns of a calibrated file behind time and depth. One table serves headings and lines.
struct DatLayout {
    InstTypeCode type;
    int channelNames;  ///< how many names stand in [Channels]
    std::span<const DatRun> columns;
    std::span<const DatRun> betaColumns;  ///< written only when the user wants beta columns
    bool headingBreaksBeforeBeta;         ///< the beta headings stand on a line of their own
    bool lineEndsInComma;                 ///< every value has its comma, also the last
};

/// The layout of a model; of time and depth alone for models without columns and for unknown ones.
const DatLayout& DatLayoutOf(InstTypeCode type);
/// Whether the calibrated files of a model tell the temperature.
bool DatTellsTemperature(InstTypeCode type);

/// Time and depth, which every line begins with.
inline constexpr std::size_t kTimeAndDepth = 2;
/// Most runs that any model has, those of beta values among them.
inline constexpr std::size_t kMostDatRuns = 6;
/// Most columns of one run.
inline constexpr std::size_t kMostInDatRun = 8;
/// Most columns that any model's line has, time and depth among them.
inline constexpr std::size_t kMaxDatColumns = kTimeAndDepth + 4 * kMostInDatRun;

}  // namespace marisonde
