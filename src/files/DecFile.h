#pragma once

#include <string>

#include "common/InstTypes.h"
#include "decode/LineKind.h"
#include "decode/RawSample.h"

namespace marisonde {

/// Appends the heading line of a table of raw numbers (".dec"). `houseCheck` adds the housekeeping columns. A
/// model without columns has its time alone.
void WriteDecHeader(std::string& out, InstTypeCode type, bool houseCheck);
/// Appends one sample in the order of the heading, lines in CR LF: time in days since 30 December 1899, all
/// other numbers as 32-bit values, pressure counts and temperatures rounded to 2 decimals. `kind` is that of
/// the sample's line: the normalised signal of a verbose record is computed, not sent.
void WriteDecLine(std::string& out, const RawSample& sample, LineKind kind, InstTypeCode type,
                  bool houseCheck);
/// Time of a sample in days since 30 December 1899; of a Corvane record without a clock its elapsed days.
double SampleDays(const RawSample& sample, InstTypeCode type);

}  // namespace marisonde
