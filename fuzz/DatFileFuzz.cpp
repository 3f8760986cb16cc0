// Calibrated files of any bytes through the reader. Properties: every line is counted once; what was read,
// written and read again is the same; damage never changes the samples that stand before it.
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

#include "files/DatFile.h"
#include "files/DatFileReader.h"

using namespace marisonde;

namespace {

/// In memory where the system has such a place: thousands of files a second would only wear out a disk.
std::filesystem::path Scratch() {
    static const std::filesystem::path path = [] {
        const std::filesystem::path memory = "/dev/shm";
        const std::string name = "dat-fuzz-" + std::to_string(getpid());
        std::error_code passedOver;
        const bool there = std::filesystem::is_directory(memory, passedOver);
        return (there ? memory : std::filesystem::temp_directory_path()) / name;
    }();
    return path;
}

void Require(bool holds) {
    if (!holds) std::abort();
}

struct Read {
    InstTypeCode type = InstTypeCode::Unknown;
    std::vector<std::string> lines;  ///< the samples, written again
};

Read ReadAll(std::string_view bytes, InstTypeCode assumed) {
    std::ofstream(Scratch(), std::ios::binary)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    DatFileReader reader(assumed);
    Require(!reader.Open(Scratch()));
    Read read;
    read.type = reader.Type();
    while (reader.NextLine()) {
        if (!reader.HasSample()) continue;
        std::string line;
        WriteDatLine(line, reader.Sample(), read.type, true);
        CalibratedSample back;
        ReadDatLine(std::string_view(line).substr(0, line.size() - 2), read.type, back);
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

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const auto assumed = static_cast<InstTypeCode>(data[0] % kInstTypeCount);
    const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
    const Read whole = ReadAll(bytes, assumed);
    // A recording that goes on as words, behind a line end, gains nothing and loses nothing.
    const std::size_t sections = bytes.find('[');
    if (sections != std::string_view::npos && bytes.find("[Data]") == std::string_view::npos) return 0;
    const Read extended = ReadAll(std::string(bytes) + "\r\nwords\r\n", assumed);
    Require(extended.type == whole.type && extended.lines == whole.lines);
    return 0;
}
