#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "files/DatLineReader.h"
#include "files/SampleReader.h"

namespace marisonde {

/// Reads a calibrated file back. Of the header it needs the model and the channel names; a file without
/// [Data] has its samples in the lines of numbers. Raw stays empty, but for a gain step where light that was
/// scattered back was measured.
class DatFileReader final : public SampleReader {
  public:
    /// `type` is the model of a file that names none.
    explicit DatFileReader(InstTypeCode type = InstTypeCode::Unknown) : type_(type), assumed_(type) {}

    /// The next Open reads this backscattering of a Corvane. What is not read is 0 in the samples.
    void Read(DatScattering scattering) { scattering_ = scattering; }

    [[nodiscard]] FileError Open(const std::filesystem::path& path) override;
    bool NextLine() override;

    [[nodiscard]] InstTypeCode Type() const { return type_; }
    /// Channel names in the order of the file.
    [[nodiscard]] const std::vector<std::string>& Channels() const { return channels_; }
    /// The samples hold beta values. Known with the second sample.
    [[nodiscard]] bool HasBetaColumns() const { return hasBeta_; }

  private:
    void ReadHead();
    void TakeHeadLine(std::string_view line, std::string_view section);
    [[nodiscard]] bool TakeData(std::string_view line);

    InstTypeCode type_;
    InstTypeCode assumed_;
    std::vector<std::string> channels_;
    DatScattering scattering_ = DatScattering::All;
    DatLineReader line_{InstTypeCode::Unknown};
    FieldEnds ends_;
    int columns_ = 0;  ///< of the samples; a line with fewer was cut off
    bool hasBeta_ = false;
    bool dataSection_ = false;  ///< the file has a [Data] section, so that every line behind it counts
};

}  // namespace marisonde
