#include "decode/DecimalFields.h"
#include "decode/RecordDecoders.h"

namespace marisonde::detail {

namespace {

/// The fields that the short and the full record share; the instrument sends degrees in hundredths.
void DecodeCommonFields(DecimalFields& fields, RawSample& sample) {
    sample.Time = fields.Next();
    sample.Hundredths = 0;
    sample.Sig[0] = FitWhole<std::int32_t>(fields.Next());
    sample.Sig[1] = FitWhole<std::int32_t>(fields.Next());
    sample.Ref[0] = FitWhole<std::int32_t>(fields.Next());
    sample.Ref[1] = FitWhole<std::int32_t>(fields.Next());
    sample.Pressure = static_cast<float>(fields.Next());
    sample.Temp = static_cast<float>(fields.Next() / 100);
    sample.Temp2 = static_cast<float>(fields.Next() / 100);
    sample.Temp3 = static_cast<float>(fields.Next() / 100);
}

constexpr double kHighestSupply = 75;  // volts; a reading above it was sent in a unit ten times smaller

}  // namespace

void DecodeDelph(std::string_view record, RawSample& sample) {
    DecimalFields fields(record);
    DecodeCommonFields(fields, sample);
}

void DecodeDelphFull(std::string_view record, RawSample& sample) {
    DecimalFields fields(record);
    DecodeCommonFields(fields, sample);
    double volts = fields.Next() / 100;
    if (volts > kHighestSupply) volts /= 10;
    sample.Voltage = static_cast<float>(volts);
}

}  // namespace marisonde::detail
