#include <algorithm>

#include "common/ConversionUtils.h"
#include "decode/DecimalFields.h"
#include "decode/HexFields.h"
#include "decode/RecordDecoders.h"

namespace marisonde::detail {

namespace {

constexpr int kSlotCount = 8;
constexpr std::size_t kSlots = kSlotCount;

/// "*D", and "*T" with two more characters for the hundredths behind the time.
struct SampleLayout {
    HexField time{3, 8};
    HexField hundredths{11, 2};
    SlotField snorm;
    SlotField gain;
    HexField pressure;
    HexField temp;
    HexField error;
    std::size_t length;
};

constexpr SampleLayout LayoutBehindTime(int shift) {
    return {.snorm = {11 + shift, 4, 4},
            .gain = {43 + shift, 1, 1},
            .pressure = {51 + shift, 4},
            .temp = {55 + shift, 2},
            .error = {57 + shift, 2},
            .length = static_cast<std::size_t>(60 + shift)};
}

constexpr SampleLayout kSample = LayoutBehindTime(0);
constexpr SampleLayout kSampleHundredths = LayoutBehindTime(2);

struct VerboseLayout {
    HexField time{3, 8};
    SlotField sig{11, 4, 18};
    SlotField sigOff{15, 4, 18};
    SlotField ref{19, 4, 18};
    SlotField refOff{23, 4, 18};
    SlotField bgnd{27, 2, 18};
    SlotField gain{155, 1, 1};
    HexField pressure{163, 4};
    HexField temp{167, 2};
    HexField vSupA{169, 2};
    HexField vSubB{171, 2};
    HexField vBack{173, 2};
    std::size_t length = 176;
};

constexpr VerboseLayout kVerbose{};

float Degrees(double count) {
    return static_cast<float>(count / 5 - 10);
}

void ClearRawChannels(RawSample& sample) {
    sample.Sig.fill(0);
    sample.SigOff.fill(0);
    sample.Ref.fill(0);
    sample.RefOff.fill(0);
}

template <const SampleLayout& Layout>
void DecodeSample(std::string_view line, RawSample& sample) {
    const HexLine<Layout.length> hex(line);
    sample.Time = hex.template Value<Layout.time>();
    for (std::size_t slot = 0; slot < kSlots; ++slot) {
        sample.Snorm[slot] = static_cast<std::int32_t>(hex.template Value<Layout.snorm>(slot));
        sample.Gain[slot] = static_cast<std::int16_t>(hex.template Value<Layout.gain>(slot));
    }
    sample.Pressure = static_cast<float>(hex.template Value<Layout.pressure>());
    sample.Temp = Degrees(hex.template Value<Layout.temp>());
    sample.Error = static_cast<std::int16_t>(hex.template Value<Layout.error>());
    ClearRawChannels(sample);
}

/// One slot more than the line has: the converter's arrays are walked together with it.
void NormaliseSlots(RawSample& sample) {
    for (std::size_t slot = 0; slot <= kSlots; ++slot) {
        const std::int32_t ref = sample.Ref[slot] - sample.RefOff[slot];
        const double signal = static_cast<double>(sample.Sig[slot]) - sample.SigOff[slot];
        sample.SnormF[slot] = ref == 0 ? 0.0F : static_cast<float>(signal / ref);
    }
}

}  // namespace

void DecodeCorvaneSample(std::string_view line, RawSample& sample) {
    DecodeSample<kSample>(line, sample);
    sample.Hundredths = 0;
}

void DecodeCorvaneHundredths(std::string_view line, RawSample& sample) {
    DecodeSample<kSampleHundredths>(line, sample);
    const HexLine<kSampleHundredths.length> hex(line);
    sample.Hundredths = static_cast<std::uint8_t>(hex.Value<kSampleHundredths.hundredths>());
}

void DecodeCorvaneVerbose(std::string_view line, RawSample& sample) {
    const HexLine<kVerbose.length> hex(line);
    sample.Time = hex.Value<kVerbose.time>();
    sample.Hundredths = 0;
    sample.Snorm.fill(0);
    for (std::size_t slot = 0; slot < kSlots; ++slot) {
        sample.Sig[slot] = static_cast<std::int32_t>(hex.Value<kVerbose.sig>(slot));
        sample.SigOff[slot] = Fit16(hex.Value<kVerbose.sigOff>(slot));
        sample.Ref[slot] = static_cast<std::int32_t>(hex.Value<kVerbose.ref>(slot));
        sample.RefOff[slot] = Fit16(hex.Value<kVerbose.refOff>(slot));
        sample.Bgnd[slot] = static_cast<std::int16_t>(hex.Value<kVerbose.bgnd>(slot));
        sample.Gain[slot] = static_cast<std::int16_t>(hex.Value<kVerbose.gain>(slot));
    }
    sample.Pressure = static_cast<float>(hex.Value<kVerbose.pressure>());
    sample.Temp = static_cast<float>(hex.Value<kVerbose.temp>());
    sample.Voltage = static_cast<float>(hex.Value<kVerbose.vSupA>());
    sample.VSubB = static_cast<float>(hex.Value<kVerbose.vSubB>());
    sample.VBack = static_cast<float>(hex.Value<kVerbose.vBack>());
    NormaliseSlots(sample);
}

void DecodeCorvaneVerboseDecimal(std::string_view record, RawSample& sample) {
    DecimalFields fields(record);
    sample.Time = 0;
    sample.Hundredths = 0;
    sample.ElapsedCount = FitWhole<std::int32_t>(fields.Next());
    sample.DayFraction = sample.ElapsedCount * kDaysPerSecond / 100;
    sample.Snorm.fill(0);
    for (std::size_t slot = 0; slot < kSlots; ++slot) {
        sample.Sig[slot] = FitWhole<std::int32_t>(fields.Next());
        sample.SigOff[slot] = FitWhole<std::int16_t>(fields.Next());
        sample.Ref[slot] = FitWhole<std::int32_t>(fields.Next());
        sample.RefOff[slot] = FitWhole<std::int16_t>(fields.Next());
    }
    fields.Skip(kSlotCount);
    for (std::size_t slot = 0; slot < kSlots; ++slot)
        sample.Gain[slot] = FitWhole<std::int16_t>(fields.Next());
    // A record that ends before the temperature leaves 0, not the -10 degrees of a count of 0.
    sample.Temp = fields.More() ? Degrees(fields.Next()) : 0.0F;
    sample.Pressure = static_cast<float>(fields.Next());
    const double supplyA = fields.Next() / 10;
    const double supplyB = fields.Next() / 10;
    sample.Voltage = static_cast<float>(std::max(supplyA, supplyB));
}

}  // namespace marisonde::detail
