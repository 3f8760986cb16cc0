#pragma once

#include "calibration/CalibratedSample.h"
#include "calibration/CalibrationDataClass.h"
#include "decode/RawSample.h"

namespace marisonde {

/// The conversion written down step by step from the formulas, with nothing prepared: what Converter must
/// equal bit for bit.
bool PlainConvert(RawSample& raw, const CalibrationDataClass& cal, const SigmaParams& sigma,
                  const PureWaterParams& water, CalibratedSample& out);

}  // namespace marisonde
