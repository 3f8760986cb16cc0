#include "files/DecFile.h"

#include <array>
#include <cstddef>
#include <string_view>

#include "common/ConversionUtils.h"
#include "common/Numbers.h"
#include "files/FileHeader.h"

namespace marisonde {

namespace {

/// Numbers in a line, each behind the comma of the one before.
class Row {
  public:
    explicit Row(std::string& out) : out_(out) {}
    void Add(double value) {
        Separate();
        AppendNumber(out_, static_cast<float>(value));
    }
    void AddRounded(double value) { Add(RoundDecimals(value, 2)); }
    void AddTime(double days) {
        Separate();
        AppendNumber(out_, days);
    }

  private:
    void Separate() {
        if (!first_) out_ += ',';
        first_ = false;
    }
    std::string& out_;
    bool first_ = true;
};

bool IsVerbose(LineKind kind) {
    return kind == LineKind::CorvaneVerboseHex || kind == LineKind::CorvaneVerbose ||
           kind == LineKind::CorvaneVerboseTimed;
}

/// The instrument's own normalised signal, or the one of a record that has signal and reference instead.
double Snorm(const RawSample& sample, std::size_t ch, LineKind kind) {
    if (!IsVerbose(kind)) return sample.Snorm[ch];
    const double reference = static_cast<double>(sample.Ref[ch]) - sample.RefOff[ch];
    if (reference == 0) return 0;
    return (static_cast<double>(sample.Sig[ch]) - sample.SigOff[ch]) / reference;
}

void AppendCorvaneHeading(std::string& out, int slots, bool houseCheck) {
    const auto numbered = [&out](std::string_view name, int channel) {
        out.append(name).append(std::to_string(channel)).append(",");
    };
    out += "Pressure,";
    for (int ch = 1; ch <= slots; ++ch) {
        numbered("Snorm", ch);
        if (!houseCheck) continue;
        for (const std::string_view name : {"SigOff", "Ref", "RefOff"}) numbered(name, ch);
    }
    for (int ch = 1; ch <= slots; ++ch)
        for (const std::string_view name : {"Gain", "Bgnd"}) numbered(name, ch);
    out += houseCheck ? "Temp,VSupA,VSubB,VBack,VAux,Error" : "Temp,Error";
}

void AddCorvane(Row& row, const RawSample& sample, LineKind kind, std::size_t slots, bool houseCheck) {
    row.AddRounded(sample.Pressure);
    for (std::size_t ch = 0; ch < slots; ++ch) {
        row.Add(Snorm(sample, ch, kind));
        if (!houseCheck) continue;
        row.Add(sample.SigOff[ch]);
        row.Add(sample.Ref[ch]);
        row.Add(sample.RefOff[ch]);
    }
    for (std::size_t ch = 0; ch < slots; ++ch) {
        row.Add(sample.Gain[ch]);
        row.Add(sample.Bgnd[ch]);
    }
    row.AddRounded(sample.Temp);
    // No record tells the fourth of the supplies.
    constexpr double kVAux = 0;
    if (houseCheck)
        for (const double supply :
             {double{sample.Voltage}, double{sample.VSubB}, double{sample.VBack}, kVAux})
            row.Add(supply);
    row.Add(sample.Error);
}

void AddTidal(Row& row, const RawSample& sample, bool houseCheck) {
    row.Add(sample.Sig[0]);
    row.Add(sample.Gain[0]);
    row.Add(sample.Trans);
    row.AddRounded(sample.Pressure);
    row.AddRounded(sample.Temp);
    if (!houseCheck) return;
    row.Add(sample.Voltage);
    row.Add(sample.LEDDrive);
    row.Add(sample.Bgnd[0]);
    row.Add(sample.TBgnd);
    row.AddRounded(sample.Temp2);
    row.AddRounded(sample.Temp3);
}

}  // namespace

double SampleDays(const RawSample& sample, InstTypeCode type) {
    if (IsCorvaneFamily(type) && sample.Time == 0) return sample.DayFraction;
    return (sample.Time + sample.Hundredths / 100.0) * kDaysPerSecond +
           (IsTidalFamily(type) ? kDay1980 : kDay1970);
}

void WriteDecHeader(std::string& out, InstTypeCode type, bool houseCheck) {
    out += "Time,";
    if (IsCorvaneFamily(type)) AppendCorvaneHeading(out, ChannelSlots(type), houseCheck);
    if (IsTidalFamily(type)) {
        out += "Beta,Gain,Trans,Pressure,Temp";
        if (houseCheck) out += ",Voltage,LEDDrive,BBgnd,TBgnd,Temp2,Temp3";
    }
    out += kLineEnd;
}

void WriteDecLine(std::string& out, const RawSample& sample, LineKind kind, InstTypeCode type,
                  bool houseCheck) {
    Row row(out);
    row.AddTime(SampleDays(sample, type));
    if (IsCorvaneFamily(type))
        AddCorvane(row, sample, kind, static_cast<std::size_t>(ChannelSlots(type)), houseCheck);
    else if (IsTidalFamily(type))
        AddTidal(row, sample, houseCheck);
    else
        out += ',';
    out += kLineEnd;
}

}  // namespace marisonde
