#include "files/RawFileReader.h"

#include "decode/Decoders.h"
#include "files/FileHeaderInfo.h"

namespace marisonde {

FileError RawFileReader::Open(const std::filesystem::path& path) {
    raw_ = {};
    sample_ = {};
    counts_ = {};
    hasSample_ = false;
    if (FileError error = lines_.Open(path, most_)) return error;
    lines_.Skip(HeaderLength(lines_.Ahead()));
    return {};
}

bool RawFileReader::NextLine() {
    std::string_view line;
    hasSample_ = false;
    do {
        if (!lines_.Next(line)) return false;
    } while (line.empty());
    ++counts_.lines;
    if (lines_.LineWasCut()) {
        kind_ = LineKind::Other;
        ++counts_.text;
        return true;
    }
    hasSample_ = Take(line);
    if (hasSample_)
        ++counts_.samples;
    else
        CountWithoutSample(line);
    return true;
}

bool RawFileReader::Take(std::string_view line) {
    kind_ = ClassifyLine(line);
    if (!ParseRawLine(line, kind_, type_, raw_)) return false;
    return converter_ == nullptr || converter_->Apply(raw_, sample_);
}

void RawFileReader::CountWithoutSample(std::string_view line) {
    const bool star = line.front() == '*';
    if (kind_ == LineKind::CorvaneHousekeeping || kind_ == LineKind::TidalExtraHex)
        ++counts_.housekeeping;
    else if (kind_ == LineKind::Other && !star)
        ++counts_.text;
    else if (kind_ == LineKind::Other && !LineChecksumOk(line))
        ++counts_.badChecksum;
    else
        ++counts_.noDecoder;
}

}  // namespace marisonde
