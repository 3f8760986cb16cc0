#pragma once

#include <string_view>

#include "common/InstTypes.h"
#include "decode/LineKind.h"
#include "decode/RawSample.h"

namespace marisonde {

/// Decodes one data line into the stream's sample. False: no data in it, the sample is not to be used.
/// Allocates nothing. `instType` is the model in use; it decides only about numeric lines of no known kind.
bool ParseRawLine(std::string_view line, InstTypeCode instType, RawSample& sample);
/// The same for a line whose kind the caller already knows from ClassifyLine, which has tested its checksum.
bool ParseRawLine(std::string_view line, LineKind kind, InstTypeCode instType, RawSample& sample);

/// "*D", "*T", "*V" and the decimal verbose record. False for any other kind.
bool DecodeCorvaneHex(std::string_view line, RawSample& sample);
/// "*H". False when the line is another or its checksum is bad.
bool DecodeHousekeeping(std::string_view line, HousekeepingBlock& block);
/// The supply voltage of "*H": the larger of its two bytes / 10, into `sample.Voltage`. False as above.
bool DecodeVoltageOnly(std::string_view line, RawSample& sample);

}  // namespace marisonde
