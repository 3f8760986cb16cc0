#include "files/DatFileReader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "calibration/CalLine.h"
#include "common/ConversionUtils.h"
#include "common/Numbers.h"

namespace marisonde {

namespace {

constexpr int kTimeAndDepth = 2;

/// The numbers of a line, as far as there are columns for them.
struct Fields {
    std::array<double, kMaxDatColumns> values;
    std::size_t count = 0;  ///< all of the line; the comma behind the last one begins no further number
};

void ReadFields(std::string_view line, Fields& fields) {
    const char* p = line.data();
    const char* const last = p + line.size();
    fields.count = 0;
    while (p != last) {
        if (fields.count < kMaxDatColumns) {
            const LeadingNumber number = ReadNumber(p, last);
            fields.values[fields.count] = number.value;
            p = number.end;
        }
        ++fields.count;
        if (p != last && *p != ',') p = std::find(p, last, ',');
        if (p != last) ++p;
    }
    const std::size_t read = std::min(fields.count, kMaxDatColumns);
    std::fill(fields.values.begin() + static_cast<std::ptrdiff_t>(read), fields.values.end(), 0.0);
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

/// Stores the columns of one quantity and returns what follows them.
const double* StoreRun(const double* values, const DatRun& run, CalibratedSample& sample) {
    const auto fill = [&](auto* to) {
        for (int i = 0; i < run.count; ++i) Store(values[i], to[i]);
    };
    switch (run.field) {
        case DatField::bb:
            fill(sample.bb.data());
            break;
        case DatField::bbUncorr:
            fill(sample.bbUncorr.data());
            break;
        case DatField::beta:
            fill(sample.beta.data());
            break;
        case DatField::betaUncorr:
            fill(sample.betaUncorr.data());
            break;
        case DatField::k:
            fill(sample.k.data());
            break;
        case DatField::K:
            fill(&sample.K);
            break;
        case DatField::a:
            fill(&sample.a);
            break;
        case DatField::Temp:
            fill(&sample.Temp);
            break;
    }
    return values + run.count;
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

int ReadDatLine(std::string_view line, InstTypeCode type, CalibratedSample& sample, int fewest) {
    Fields fields;
    ReadFields(line, fields);
    const int count = static_cast<int>(fields.count);
    if (count < std::max(fewest, kTimeAndDepth)) return count;
    const DatLayout& layout = DatLayoutOf(type);
    sample = {};
    sample.Time = fields.values[0];
    Store(fields.values[1], sample.Depth);
    const double* next = fields.values.data() + kTimeAndDepth;
    for (const DatRun& run : layout.columns) next = StoreRun(next, run, sample);
    if (LineHasBeta(layout, count))
        for (const DatRun& run : layout.betaColumns) next = StoreRun(next, run, sample);
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
    if (FileError error = lines_.Open(path, most_)) return error;
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
    // A recording that was cut off leaves a last line whose missing values would show as zeros.
    const int fewest = std::max(columns_, kTimeAndDepth);
    const int count = ReadDatLine(line, type_, sample_, fewest);
    if (count < fewest) return false;
    if (columns_ == 0) {
        columns_ = count;
        hasBeta_ = LineHasBeta(DatLayoutOf(type_), count);
    }
    // A calibrated file does not tell the gain step, but it has zeros where no step was usable.
    raw_.Gain[0] = sample_.bb[0] != 0 || sample_.bbUncorr[0] != 0 ? 1 : 0;
    return true;
}

}  // namespace marisonde
