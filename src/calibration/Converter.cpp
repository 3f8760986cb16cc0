#include "calibration/Converter.h"

#include "common/ConversionUtils.h"
#include "decode/Decoders.h"

namespace marisonde {

bool Converter::Apply(RawSample& raw, CalibratedSample& out) const {
    if (family_ == Family::None) return false;
    out.SampleNo = raw.Format;
    out.Aux = raw.ElapsedCount;
    out.Temp = raw.Temp;
    ApplyClock(raw, out);
    if (family_ == Family::Corvane) ApplyCorvane(raw, out);
    if (family_ == Family::Tidal) ApplyTidal(raw, out);
    if (family_ == Family::Delph) ApplyDelph(raw, out);
    return true;
}

void Converter::ApplyClock(const RawSample& raw, CalibratedSample& out) const {
    if (family_ == Family::Corvane && raw.Time == 0) {
        out.Time = 0;
        out.Elapsed = raw.DayFraction;
        return;
    }
    out.Time = (raw.Time + raw.Hundredths / 100.0) * kDaysPerSecond + epoch_;
}

bool ApplyCalibration(RawSample& raw, const CalibrationDataClass& cal, const SigmaParams& sigma,
                      const PureWaterParams& water, CalibratedSample& out) {
    return Converter(cal, sigma, water).Apply(raw, out);
}

bool ParseAndConvert(std::string_view line, InstTypeCode instType, const Converter& converter, RawSample& raw,
                     CalibratedSample& out) {
    return ParseRawLine(line, instType, raw) && converter.Apply(raw, out);
}

}  // namespace marisonde
