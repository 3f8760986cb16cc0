#pragma once

#include <string>
#include <string_view>

#include "calibration/CalibratedSample.h"
#include "common/InstTypes.h"
#include "files/FileHeader.h"

namespace marisonde {

class CalibrationDataClass;
struct SigmaParams;
struct PureWaterParams;

/// Appends the header of a calibrated file, from [UserHeader] to [Data]. `dataSource` is the path of the
/// data, or empty for data of the instrument itself. Lines end in CR LF, with two exceptions that readers
/// know: without a pure-water model the next key stands on the line of PureWaterModel, and the n-Tidal
/// heading may take two lines.
void WriteDatHeader(std::string& out, const HeaderStamp& stamp, std::string_view dataSource,
                    const CalibrationDataClass& cal, const SigmaParams& sigma, const PureWaterParams& water);

/// Appends one line of numbers and its CR LF: time in days, depth in m, then the columns of
/// DatLayoutOf(type). All but the time are written as 32-bit values; a failed value is 1E+308. A sample
/// without a clock is written with its elapsed time. Allocates nothing beyond the growth of `out`.
void WriteDatLine(std::string& out, const CalibratedSample& sample, InstTypeCode type, bool writeBetaColumns);

}  // namespace marisonde
