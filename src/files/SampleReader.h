#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "calibration/CalibratedSample.h"
#include "decode/RawSample.h"
#include "files/LineReader.h"

namespace marisonde {

/// What became of the lines of a file. Empty lines and the header are not counted.
struct LineCounts {
    std::uint64_t lines = 0;
    std::uint64_t samples = 0;
    std::uint64_t housekeeping = 0;  ///< good lines that hold no sample of their own: "*H", "*I"
    std::uint64_t badChecksum = 0;
    std::uint64_t noDecoder = 0;  ///< data lines of a kind that nothing is known of
    std::uint64_t text = 0;       ///< messages, damaged records

    [[nodiscard]] std::uint64_t PassedOver() const { return badChecksum + noDecoder + text; }
    bool operator==(const LineCounts&) const = default;
};

/// "2 lines passed over: 1 bad checksum, 1 text"; empty when there were none.
std::string PassedOverText(const LineCounts& counts);

/// Reads the samples of a stored file one after the other.
class SampleReader {
  public:
    virtual ~SampleReader() = default;

    /// Opens the file and finds where its data begin.
    [[nodiscard]] virtual FileError Open(const std::filesystem::path& path) = 0;
    /// The next Open reads no further than this: of a file that still grows, to the end of its whole lines.
    void ReadAtMost(std::uint64_t bytes) { most_ = bytes; }
    /// Reads one line. False at the end of the file and after a failure, which Error tells.
    virtual bool NextLine() = 0;
    /// The line of the last NextLine gave the sample that Raw and Sample now hold.
    [[nodiscard]] bool HasSample() const { return hasSample_; }
    [[nodiscard]] const RawSample& Raw() const { return raw_; }
    [[nodiscard]] const CalibratedSample& Sample() const { return sample_; }

    [[nodiscard]] const LineCounts& Counts() const { return counts_; }
    [[nodiscard]] ReadProgress Progress() const { return lines_.Progress(); }
    [[nodiscard]] const FileError& Error() const { return lines_.Error(); }

  protected:
    LineReader lines_;
    std::uint64_t most_ = LineReader::kWhole;
    RawSample raw_;
    CalibratedSample sample_;
    LineCounts counts_;
    bool hasSample_ = false;
};

}  // namespace marisonde
