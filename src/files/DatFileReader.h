#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "files/DatColumns.h"
#include "files/SampleReader.h"

namespace marisonde {

/// Reads a calibrated file back. Of the header it needs the model and the channel names; a file without
/// [Data] has its samples in the lines of numbers. Raw stays empty, but for a gain step where light that was
/// scattered back was measured.
class DatFileReader final : public SampleReader {
  public:
    /// `type` is the model of a file that names none.
    explicit DatFileReader(InstTypeCode type = InstTypeCode::Unknown) : type_(type), assumed_(type) {}

    [[nodiscard]] FileError Open(const std::filesystem::path& path) override;
    bool NextLine() override;

    [[nodiscard]] InstTypeCode Type() const { return type_; }
    /// Channel names in the order of the file.
    [[nodiscard]] const std::vector<std::string>& Channels() const { return channels_; }
    /// The samples hold beta values. Known with the first sample.
    [[nodiscard]] bool HasBetaColumns() const { return hasBeta_; }

  private:
    void ReadHead();
    void TakeHeadLine(std::string_view line, std::string_view section);
    [[nodiscard]] bool TakeData(std::string_view line);

    InstTypeCode type_;
    InstTypeCode assumed_;
    std::vector<std::string> channels_;
    int columns_ = 0;  ///< of the first sample; a line with fewer was cut off
    bool hasBeta_ = false;
    bool dataSection_ = false;  ///< the file has a [Data] section, so that every line behind it counts
};

/// Reads one line of numbers, time and depth first, into `sample` by the layout of `type`: what WriteDatLine
/// writes comes back the same. Returns the number of values; below 2, and below `fewest`, it is no sample and
/// nothing is changed. Columns beyond the line's end become 0, columns beyond the layout are passed over.
int ReadDatLine(std::string_view line, InstTypeCode type, CalibratedSample& sample, int fewest = 0);

}  // namespace marisonde
