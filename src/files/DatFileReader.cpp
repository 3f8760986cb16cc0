#include "files/DatFileReader.h"

#include <cmath>
#include <limits>

#include "calibration/CalLine.h"
#include "common/ConversionUtils.h"
#include "common/Numbers.h"
#include "decode/DecimalFields.h"
#include "decode/LineKind.h"

namespace marisonde {

namespace {

constexpr int kTimeAndDepth = 2;

/// Numbers of a line; the comma behind the last one begins no further number.
int FieldCount(std::string_view line) {
    return CommaCount(line) + (line.empty() || line.back() == ',' ? 0 : 1);
}

int ColumnsOf(std::span<const DatRun> runs) {
    int columns = 0;
    for (const DatRun& run : runs) columns += run.count;
    return columns;
}

bool FitsSingle(double value) {
    return std::abs(value) <= static_cast<double>(std::numeric_limits<float>::max());
}

float Single(double value) {
    return FitsSingle(value) ? static_cast<float>(value) : kSentinelF;
}

void Store(double value, float& to) {
    to = Single(value);
}

void Store(double value, double& to) {
    to = FitsSingle(value) ? static_cast<double>(Single(value)) : kSentinel;
}

void ReadRun(detail::DecimalFields& fields, const DatRun& run, CalibratedSample& sample) {
    const auto fill = [&](auto* values) {
        for (int i = 0; i < run.count; ++i) Store(fields.Next(), values[i]);
    };
    switch (run.field) {
        case DatField::bb:
            return fill(sample.bb.data());
        case DatField::bbUncorr:
            return fill(sample.bbUncorr.data());
        case DatField::beta:
            return fill(sample.beta.data());
        case DatField::betaUncorr:
            return fill(sample.betaUncorr.data());
        case DatField::k:
            return fill(sample.k.data());
        case DatField::K:
            return fill(&sample.K);
        case DatField::a:
            return fill(&sample.a);
        case DatField::Temp:
            return fill(&sample.Temp);
    }
}

/// A channel without valid values was written as zeros; the l-Tidal's K stands for its attenuation too.
void RestoreFlags(InstTypeCode type, CalibratedSample& sample) {
    if (type == InstTypeCode::LTidal) sample.k[0] = sample.K;
    if (IsTidalFamily(type)) sample.Valid[0] = sample.k[0] != 0;
    if (!IsCorvaneFamily(type)) return;
    for (std::size_t i = 0; i < kChannelSlots; ++i)
        sample.Valid[i] = sample.bb[i] != 0 || sample.bbUncorr[i] != 0;
}

bool LineHasBeta(const DatLayout& layout, int fields) {
    const int betas = ColumnsOf(layout.betaColumns);
    return betas > 0 && fields >= kTimeAndDepth + ColumnsOf(layout.columns) + betas;
}

}  // namespace

int ReadDatLine(std::string_view line, InstTypeCode type, CalibratedSample& sample) {
    const int count = FieldCount(line);
    if (count < kTimeAndDepth) return count;
    const DatLayout& layout = DatLayoutOf(type);
    detail::DecimalFields fields(line);
    sample = {};
    sample.Time = fields.Next();
    Store(fields.Next(), sample.Depth);
    for (const DatRun& run : layout.columns) ReadRun(fields, run, sample);
    if (LineHasBeta(layout, count))
        for (const DatRun& run : layout.betaColumns) ReadRun(fields, run, sample);
    RestoreFlags(type, sample);
    return count;
}

FileError DatFileReader::Open(const std::filesystem::path& path) {
    raw_ = {};
    sample_ = {};
    counts_ = {};
    hasSample_ = hasBeta_ = dataSection_ = false;
    columns_ = 0;
    type_ = assumed_;
    channels_.clear();
    if (FileError error = lines_.Open(path)) return error;
    ReadHead();
    return {};
}

void DatFileReader::ReadHead() {
    const std::string_view head = lines_.Ahead();
    std::string_view rest = head;
    std::string section;
    while (!rest.empty() && !dataSection_) {
        const std::string_view line = TakeCalLine(rest);
        if (line.starts_with('[')) {
            section = LowerCase(Trim(line));
            dataSection_ = section == "[data]";
        } else {
            TakeHeadLine(line, section);
        }
    }
    if (dataSection_) lines_.Skip(head.size() - rest.size());
}

void DatFileReader::TakeHeadLine(std::string_view line, std::string_view section) {
    if (section == "[channels]" && line.starts_with('"')) {
        const std::string_view name = line.substr(1);
        channels_.emplace_back(name.substr(0, name.rfind('"')));
    }
    constexpr std::string_view kModelKey = "DeviceType=";
    if (section != "[header]" || !line.starts_with(kModelKey)) return;
    const InstTypeCode named = InstTypeFromName(Trim(line.substr(kModelKey.size())));
    if (named < InstTypeCode::Unknown) type_ = named;
}

bool DatFileReader::NextLine() {
    std::string_view line;
    hasSample_ = false;
    while (true) {
        if (!lines_.Next(line)) return false;
        if (line.empty()) continue;
        // Without [Data] nothing but the numbers themselves tells where the header ends.
        if (dataSection_ || counts_.samples > 0 || HasNumberChars(line)) break;
    }
    ++counts_.lines;
    hasSample_ = !lines_.LineWasCut() && TakeData(line);
    ++(hasSample_ ? counts_.samples : counts_.text);
    return true;
}

bool DatFileReader::TakeData(std::string_view line) {
    if (!HasNumberChars(line)) return false;
    const int count = FieldCount(line);
    // A recording that was cut off leaves a last line whose missing values would show as zeros.
    if (count < columns_ || ReadDatLine(line, type_, sample_) < kTimeAndDepth) return false;
    if (columns_ == 0) {
        columns_ = count;
        hasBeta_ = LineHasBeta(DatLayoutOf(type_), count);
    }
    return true;
}

}  // namespace marisonde
