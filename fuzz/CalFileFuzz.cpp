// The calibration reader on any bytes. Property: what was loaded, saved and loaded again is what a further
// round leaves as it is, in every field of its layout; and an image of 128 bytes reads without a fault.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "calibration/CalImage.h"
#include "calibration/CalibrationDataClass.h"

using namespace marisonde;

namespace {

SigmaParams FixedModel() {
    SigmaParams params;
    params.aStarValue = 0.05;
    return params;
}

CalibrationDataClass Load(std::string_view text) {
    CalibrationDataClass cal;
    if (!cal.LoadText(text, FixedModel(), {}).ok) std::abort();
    return cal;
}

bool SameAttenuation(const AttenuationCal& a, const AttenuationCal& b) {
    for (int i = 0; i <= NormalizedPolynomial::kUpperBound; ++i) {
        if (a.KkT[i] != b.KkT[i] || a.KkTauP[i] != b.KkTauP[i]) return false;
    }
    return static_cast<const AttenuationPlain&>(a) == b && a.KCalTemp == b.KCalTemp &&
           a.KTempCoeff == b.KTempCoeff && a.KTPW == b.KTPW && a.KP(1) == b.KP(1) && a.KP(2) == b.KP(2);
}

/// Dates are written with two digits of the year, so they hold from 1970 to 2069 only.
bool SameDate(double a, double b) {
    constexpr double k1970 = 25569;
    constexpr double k2070 = 62093;
    constexpr double kHalfSecond = 0.5 / 86400;
    return a < k1970 || a >= k2070 - 1 || std::abs(a - b) <= kHalfSecond + 1e-9;
}

bool SameFields(const CalibrationDataClass& a, const CalibrationDataClass& b) {
    if (a.Serial != b.Serial || a.Label != b.Label || a.Config != b.Config || a.MaxDepth != b.MaxDepth)
        return false;
    if (!SameDate(a.CalTime, b.CalTime) || !SameDate(a.ModificationTime, b.ModificationTime)) return false;
    for (int ch = 0; ch < kChannelSlots; ++ch) {
        if (!(a.Channel(ch) == b.Channel(ch)) || !SameAttenuation(a.Attenuation(ch), b.Attenuation(ch)))
            return false;
    }
    return a.Comment == b.Comment && a.DepthCal == b.DepthCal && a.DepthOff == b.DepthOff &&
           a.CalTemp == b.CalTemp && a.kp1 == b.kp1 && a.kp2 == b.kp2 && a.P0 == b.P0 && a.TP0 == b.TP0 &&
           a.kD1 == b.kD1 && a.kD2 == b.kD2;
}

CalibrationDataClass Reloaded(const CalibrationDataClass& cal) {
    return Load(cal.CalText({}));
}

void CheckText(std::string_view bytes) {
    const CalibrationDataClass first = Load(bytes);
    CalibrationDataClass held = Reloaded(first);
    if (held.InstType == first.InstType && held.ChannelCount() >= 0 &&
        (held.Serial != first.Serial || held.Label != first.Label)) {
        std::abort();
    }
    // A serial number may name another model than the file's device line did; its layout holds from the next
    // save on.
    if (held.InstType != first.InstType) held = Reloaded(held);
    const CalibrationDataClass again = Reloaded(held);
    if (again.InstType != held.InstType || !SameFields(held, again)) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    if (bytes.size() >= kCalImageSize) {
        CalibrationDataClass image;
        if (!ReadCalImageBytes(bytes.substr(0, kCalImageSize), image)) std::abort();
        (void)image.CheckAndUpdateAll(FixedModel(), {});
    }
    CheckText(bytes);
    return 0;
}
