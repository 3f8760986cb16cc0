#pragma once

#include <string>
#include <string_view>

#include "calibration/CalibratedSample.h"
#include "calibration/CalibrationDataClass.h"
#include "common/InstTypes.h"
#include "decode/LineKind.h"
#include "decode/RawSample.h"

namespace marisonde {

/// How a window shows the values of its samples.
struct TerminalView {
    bool sigmaCorrected = true;  ///< which backscattering the window shows
    bool metres = true;          ///< depths in m, otherwise in feet
};

/// Pads with blanks to the width; longer text unchanged.
std::string PadRight(std::string_view text, std::size_t width);

/// One sample as a line of the terminal, without line end. Corvane models: time, counts, gains, then
/// backscattering, depth and temperature. Tidal models: values with their names. Empty for other models.
/// `sample.Time` is a date: the caller stamps what had none.
std::string TerminalLine(LineKind kind, InstTypeCode model, const RawSample& raw,
                         const CalibratedSample& sample, const TerminalView& view);

/// What stands over the columns of such lines, in two lines: what groups of columns hold, and each column.
/// Empty for models whose lines name their values.
std::string TerminalHeadings(LineKind kind, InstTypeCode model, const CalibrationDataClass& cal,
                             const TerminalView& view);

}  // namespace marisonde
