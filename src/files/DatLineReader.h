#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string_view>

#include "calibration/CalibratedSample.h"
#include "files/DatColumns.h"
#include "files/FieldEnds.h"

namespace marisonde {

/// Which backscattering of a Corvane's lines is read. A graph shows one form at a time, and reading numbers
/// is most of the work of a load. Other models have few columns, and all are read.
enum class DatScattering {
    All,          ///< bb and bbUncorr, and beta and betaUncorr where the line has them
    Corrected,    ///< bb alone
    Uncorrected,  ///< bbUncorr alone
};

/// Reads lines of numbers, time and depth first, by the layout of a model.
class DatLineReader {
  public:
    explicit DatLineReader(InstTypeCode type, DatScattering scattering = DatScattering::All);

    /// What WriteDatLine writes comes back the same. Returns the number of values; below 2, and below
    /// `fewest`, it is no sample and nothing is changed. Columns beyond the line's end become 0, columns
    /// beyond the layout are passed over. Of the sample only what is read, and Valid of the model's channels,
    /// is set. `ends` are those of `line`, the first Columns of them remembered.
    int Read(std::string_view line, const FieldEnds& ends, CalibratedSample& sample, int fewest = 0) const;
    /// The same of a line whose ends are not known.
    int Read(std::string_view line, CalibratedSample& sample, int fewest = 0) const;

    /// Columns from the first to the last one that is read.
    [[nodiscard]] std::size_t Columns() const { return lastRead_; }
    /// Columns of the model's lines without beta values.
    [[nodiscard]] int WithoutBeta() const { return static_cast<int>(withoutBeta_); }
    /// Whether a line with so many values has beta values.
    [[nodiscard]] bool HasBeta(int values) const;

  private:
    /// The neighbouring columns of one quantity.
    struct Part {
        DatField field;
        std::size_t from;
        std::size_t count;
        bool isRead;
    };

    void AddParts(std::span<const DatRun> runs, DatScattering scattering);
    /// A channel without valid values was written as zeros in both forms, also in the one that is not read.
    void RestoreChannels(std::string_view line, std::size_t readable, CalibratedSample& sample) const;
    [[nodiscard]] std::span<const Part> Parts() const { return {parts_.data(), partCount_}; }

    InstTypeCode type_;
    bool isCorvane_;
    bool isTidal_;
    std::array<Part, kMostDatRuns> parts_{};
    std::size_t partCount_ = 0;
    std::size_t end_ = kTimeAndDepth;  ///< behind the last column of the layout
    std::size_t withoutBeta_ = 0;      ///< behind the last column before those of beta
    std::size_t lastRead_ = kTimeAndDepth;
};

}  // namespace marisonde
