// Raw files of any bytes through the reader, with a calibration of any model. Properties: every line is
// counted once and every byte read; line ends do not matter; every calibrated line that is written reads back
// to what was written; the look at the head of a file names a model that exists.
#include <array>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string>
#include <string_view>

#include "Property.h"
#include "calibration/CalLine.h"
#include "calibration/CalibrationDataClass.h"
#include "files/DatFile.h"
#include "files/DatFileReader.h"
#include "files/FileHeaderInfo.h"
#include "files/RawFileReader.h"

using namespace marisonde;

namespace {

const ScratchFile kScratch("raw-fuzz");

SigmaParams FixedModel() {
    SigmaParams sigma;
    sigma.aStarValue = 0.05;
    return sigma;
}

const Converter& ConverterOf(InstTypeCode type) {
    static const auto converters = [] {
        std::array<Converter, kInstTypeCount> made;
        for (int code = 0; code < kInstTypeCount; ++code) {
            CalibrationDataClass cal;
            cal.InstType = static_cast<InstTypeCode>(code);
            for (int ch = 0; ch < kChannelSlots; ++ch) cal.EditChannel(ch).lambda = 525;
            (void)cal.CheckAndUpdateAll(FixedModel(), DefaultPureWaterParams());
            made.at(static_cast<std::size_t>(code)) = {cal, FixedModel(), DefaultPureWaterParams()};
        }
        return made;
    }();
    return converters.at(static_cast<std::size_t>(type));
}

struct Outcome {
    LineCounts counts;
    std::string dat;
    bool operator==(const Outcome&) const = default;
};

void CheckReadsBack(std::string_view line, InstTypeCode type) {
    CalibratedSample once;
    DatLineReader(type).Read(line.substr(0, line.size() - 2), once);
    std::string again;
    WriteDatLine(again, once, type, true);
    Require(again == line);
}

Outcome Convert(std::string_view bytes, InstTypeCode type) {
    std::ofstream(kScratch.Path(), std::ios::binary)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    RawFileReader reader(type, ConverterOf(type));
    Require(!reader.Open(kScratch.Path()));
    Outcome outcome;
    while (reader.NextLine()) {
        if (!reader.HasSample()) continue;
        const std::size_t begin = outcome.dat.size();
        WriteDatLine(outcome.dat, reader.Sample(), type, true);
        CheckReadsBack(std::string_view(outcome.dat).substr(begin), type);
    }
    outcome.counts = reader.Counts();
    const LineCounts& n = outcome.counts;
    Require(n.lines == n.samples + n.housekeeping + n.PassedOver());
    Require(reader.Progress().done == bytes.size());
    return outcome;
}

/// The same lines with other ends; empty ones fall away.
std::string WithEnds(std::string_view bytes, std::string_view end) {
    std::string text;
    while (!bytes.empty()) {
        const std::string_view line = TakeCalLine(bytes);
        if (!line.empty()) text.append(line).append(end);
    }
    return text;
}

void CheckHeader(std::string_view bytes) {
    const std::size_t length = HeaderLength(bytes);
    Require(length <= bytes.size());
    Require(length == 0 || bytes.substr(0, length).find('[') != std::string_view::npos);
    std::string fileType;
    std::string serial;
    const InstTypeCode model = GetDataFileTypeOfText(bytes, fileType, serial);
    Require(model >= InstTypeCode::Corvane6 && model <= InstTypeCode::Unknown);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const auto type = static_cast<InstTypeCode>(data[0] % kInstTypeCount);
    const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
    CheckHeader(bytes);
    const Outcome outcome = Convert(bytes, type);
    const char* const ends[] = {"\r\n", "\n", "\r"};
    Require(Convert(WithEnds(bytes, ends[data[0] / kInstTypeCount % 3]), type) == outcome);
    return 0;
}
