#include "files/DatFileReader.h"

#include <algorithm>

#include "calibration/CalLine.h"
#include "common/ConversionUtils.h"

namespace marisonde {

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
    line_ = DatLineReader(type_, scattering_);
    ends_ = FieldEnds(line_.Columns());
    return {};
}

void DatFileReader::ReadHead() {
    const std::string_view head = lines_.Ahead();
    std::string_view rest = head;
    std::string section;
    while (!rest.empty() && !dataSection_) {
        const std::string_view line = TakeCalLine(rest);
        if (section == "[userheader]") {
            // The one line behind is the user's own, whatever it looks like.
            section.clear();
        } else if (line.starts_with('[')) {
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
        if (!lines_.Next(line, ends_)) return false;
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
    if (!IsDigit(line.front()) && !HasNumberChars(line)) return false;
    // A recording that was cut off leaves a last line whose missing values would show as zeros.
    // The first line tells how many there are, unless it has run into another and has too many.
    const bool isSecond = counts_.samples == 1;
    const int usual = isSecond ? std::min(columns_, line_.WithoutBeta()) : columns_;
    const int fewest = std::max(usual, static_cast<int>(kTimeAndDepth));
    const int count = line_.Read(line, ends_, sample_, fewest);
    if (count < fewest) return false;
    if (columns_ == 0 || (isSecond && count < columns_)) {
        columns_ = count;
        hasBeta_ = line_.HasBeta(count);
    }
    // A calibrated file does not tell the gain step, but it has zeros where no step was usable.
    raw_.Gain[0] = sample_.bb[0] != 0 || sample_.bbUncorr[0] != 0 ? 1 : 0;
    return true;
}

}  // namespace marisonde
