// Calibrated files of any bytes through the reader. Properties: every line is counted once; what was read,
// written and read again is the same; damage never changes the samples that stand before it; one form of
// backscattering alone comes from the same lines as both.
#include <array>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "Property.h"
#include "files/DatFile.h"
#include "files/DatFileReader.h"

using namespace marisonde;

namespace {

const ScratchFile kScratch("dat-fuzz");

struct Read {
    InstTypeCode type = InstTypeCode::Unknown;
    std::vector<std::string> lines;  ///< the samples, written again
};

Read ReadAll(std::string_view bytes, InstTypeCode assumed) {
    std::ofstream(kScratch.Path(), std::ios::binary)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    DatFileReader reader(assumed);
    Require(!reader.Open(kScratch.Path()));
    Read read;
    read.type = reader.Type();
    while (reader.NextLine()) {
        if (!reader.HasSample()) continue;
        std::string line;
        WriteDatLine(line, reader.Sample(), read.type, true);
        CalibratedSample back;
        DatLineReader(read.type).Read(std::string_view(line).substr(0, line.size() - 2), back);
        std::string again;
        WriteDatLine(again, back, read.type, true);
        Require(again == line);
        read.lines.push_back(std::move(line));
    }
    const LineCounts& n = reader.Counts();
    Require(n.lines == n.samples + n.text && n.samples == read.lines.size());
    Require(reader.Progress().done == bytes.size());
    return read;
}

/// The samples of the file that was read last, with one form of backscattering, beside those with both.
void CompareForm(DatScattering form, InstTypeCode assumed) {
    DatFileReader both(assumed);
    DatFileReader one(assumed);
    one.Read(form);
    Require(!both.Open(kScratch.Path()) && !one.Open(kScratch.Path()));
    while (both.NextLine()) {
        Require(one.NextLine() && one.HasSample() == both.HasSample());
        if (!both.HasSample()) continue;
        CalibratedSample expected = both.Sample();
        if (IsCorvaneFamily(both.Type())) {
            (form == DatScattering::Corrected ? expected.bbUncorr : expected.bb) = {};
            expected.beta = expected.betaUncorr = {};
        }
        std::string lines;
        WriteDatLine(lines, expected, both.Type(), true);
        const std::size_t length = lines.size();
        WriteDatLine(lines, one.Sample(), both.Type(), true);
        Require(lines.substr(0, length) == lines.substr(length) && one.Sample().Valid == expected.Valid);
    }
    Require(!one.NextLine() && one.Counts() == both.Counts());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const auto assumed = static_cast<InstTypeCode>(data[0] % kInstTypeCount);
    const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
    const Read whole = ReadAll(bytes, assumed);
    CompareForm(DatScattering::Corrected, assumed);
    CompareForm(DatScattering::Uncorrected, assumed);
    // A recording that goes on as words, behind a line end, gains nothing and loses nothing.
    const std::size_t sections = bytes.find('[');
    if (sections != std::string_view::npos && bytes.find("[Data]") == std::string_view::npos) return 0;
    const Read extended = ReadAll(std::string(bytes) + "\r\nwords\r\n", assumed);
    Require(extended.type == whole.type && extended.lines == whole.lines);
    return 0;
}
