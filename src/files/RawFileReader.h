#pragma once

#include <string_view>

#include "calibration/Converter.h"
#include "common/InstTypes.h"
#include "decode/LineKind.h"
#include "files/SampleReader.h"

namespace marisonde {

/// Reads what an instrument sent: passes over the header and decodes line by line. What a line does not carry
/// stays as the lines before had it.
class RawFileReader final : public SampleReader {
  public:
    /// Decodes as lines of `type`, and does not convert: Sample stays empty.
    explicit RawFileReader(InstTypeCode type) : type_(type) {}
    /// Decodes as lines of `type` and converts. `converter` outlives the reader.
    RawFileReader(InstTypeCode type, const Converter& converter) : type_(type), converter_(&converter) {}

    [[nodiscard]] FileError Open(const std::filesystem::path& path) override;
    bool NextLine() override;
    /// What the line of the last NextLine was.
    [[nodiscard]] LineKind Kind() const { return kind_; }

  private:
    [[nodiscard]] bool Take(std::string_view line);
    void CountWithoutSample(std::string_view line);

    InstTypeCode type_;
    const Converter* converter_ = nullptr;
    LineKind kind_ = LineKind::Other;
};

}  // namespace marisonde
