#include <cmath>

#include "decode/DecimalFields.h"
#include "decode/HexFields.h"
#include "decode/RecordDecoders.h"

namespace marisonde::detail {

namespace {

/// "*A" and "*C".
struct TidalLayout {
    HexField time{3, 8};
    HexField hundredths{11, 2};
    HexField beta{13, 4};
    HexField gain{17, 1};
    HexField trans{18, 6};
    HexField pressure{24, 4};
    HexField temp{28, 3};
    std::size_t length = 32;
};

/// "*I".
struct ExtraLayout {
    HexField voltage{3, 2};
    HexField ledDrive{5, 4};
    HexField bBgnd{9, 2};
    HexField tBgnd{11, 2};
    HexField temp2{13, 4};
    HexField temp3{17, 4};
    std::size_t length = 22;
};

constexpr TidalLayout kTidal{};
constexpr ExtraLayout kExtra{};

constexpr double kExtraScale = 0.00382;  // volts of the drive, or degrees, per count

/// 24 bits in two's complement.
std::int32_t Signed24(std::uint32_t value) {
    const auto counts = static_cast<std::int32_t>(value);
    return counts >= 0x800000 ? counts - 0x1000000 : counts;
}

void DecodeTidal(std::string_view line, InstTypeCode model, RawSample& sample) {
    const HexLine<kTidal.length> hex(line);
    const auto beta = static_cast<std::int32_t>(hex.Value<kTidal.beta>());
    sample.Format = static_cast<std::int32_t>(model);
    sample.Time = hex.Value<kTidal.time>();
    sample.Hundredths = static_cast<std::uint8_t>(hex.Value<kTidal.hundredths>());
    sample.Sig[0] = beta;
    sample.SnormF[0] = static_cast<float>(beta);
    sample.SigOff[0] = 0;
    sample.Gain[0] = static_cast<std::int16_t>(hex.Value<kTidal.gain>());
    sample.Trans = Signed24(hex.Value<kTidal.trans>());
    // The counter goes up to 65535: hexadecimal 8000 is 32768 here, not a negative depth.
    sample.Pressure = static_cast<float>(hex.Value<kTidal.pressure>());
    sample.Temp = static_cast<float>(static_cast<double>(hex.Value<kTidal.temp>()) / 10 - 10);
}

void SetTime(double seconds, RawSample& sample) {
    sample.Time = std::floor(seconds);
    sample.Hundredths = static_cast<std::uint8_t>(RoundHalfEven((seconds - sample.Time) * 100));
}

void SetBeta(double counts, RawSample& sample) {
    sample.SnormF[0] = static_cast<float>(counts);
    sample.Sig[0] = FitWhole<std::int32_t>(static_cast<double>(sample.SnormF[0]));
    sample.SigOff[0] = 0;
    sample.Ref[0] = 1;
    sample.RefOff[0] = 0;
}

void SetGain(double digit, RawSample& sample) {
    sample.Gain[0] = FitWhole<std::int16_t>(digit);
}
void SetTrans(double counts, RawSample& sample) {
    sample.Trans = FitWhole<std::int32_t>(counts);
}
void SetBBgnd(double counts, RawSample& sample) {
    sample.Bgnd[0] = FitWhole<std::int16_t>(counts);
}
void SetTBgnd(double counts, RawSample& sample) {
    sample.TBgnd = FitWhole<std::int16_t>(counts);
}

template <float RawSample::*Field>
void SetFloat(double value, RawSample& sample) {
    sample.*Field = static_cast<float>(value);
}

using FieldSetter = void (*)(double, RawSample&);
constexpr FieldSetter kDecimalFields[] = {
    SetTime,
    SetBeta,
    SetGain,
    SetTrans,
    SetFloat<&RawSample::Pressure>,
    SetFloat<&RawSample::Temp>,
    SetFloat<&RawSample::Voltage>,
    SetFloat<&RawSample::LEDDrive>,
    SetBBgnd,
    SetTBgnd,
    SetFloat<&RawSample::Temp2>,
    SetFloat<&RawSample::Temp3>,
};

}  // namespace

void DecodeLTidal(std::string_view line, RawSample& sample) {
    DecodeTidal(line, InstTypeCode::LTidal, sample);
}

void DecodeNTidal(std::string_view line, RawSample& sample) {
    DecodeTidal(line, InstTypeCode::NTidal, sample);
}

void DecodeTidalExtra(std::string_view line, RawSample& sample) {
    const HexLine<kExtra.length> hex(line);
    sample.Voltage = static_cast<float>(hex.Value<kExtra.voltage>() / 10.0);
    sample.LEDDrive = static_cast<float>(hex.Value<kExtra.ledDrive>() * kExtraScale);
    sample.Bgnd[0] = static_cast<std::int16_t>(hex.Value<kExtra.bBgnd>());
    sample.TBgnd = static_cast<std::int16_t>(hex.Value<kExtra.tBgnd>());
    sample.Temp2 = static_cast<float>(hex.Value<kExtra.temp2>() * kExtraScale - 50);
    sample.Temp3 = static_cast<float>(hex.Value<kExtra.temp3>() * kExtraScale - 50);
}

void DecodeTidalDecimal(std::string_view record, RawSample& sample) {
    DecimalFields fields(record);
    for (const FieldSetter set : kDecimalFields) {
        if (!fields.More()) return;
        set(fields.Next(), sample);
    }
}

}  // namespace marisonde::detail
