#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

namespace marisonde {

/// A spectrum from a ".csv" file: lines of wavelength in nm, comma, value, ascending. Read once, then kept.
class SpectralTable {
  public:
    SpectralTable() = default;
    /// A missing file gives a table without rows.
    static SpectralTable Load(const std::filesystem::path& path);
    static SpectralTable Parse(std::string_view text);

    /// Linear between rows, constant beyond them. +infinity when there are not two good rows at the start, or
    /// when a line that is no row stands before the wavelength is reached.
    [[nodiscard]] float Lookup(double lambda) const;

    bool operator==(const SpectralTable&) const = default;

  private:
    struct Row {
        double lambda;
        double value;
        bool operator==(const Row&) const = default;
    };
    std::vector<Row> rows_;
    bool broken_ = false;  ///< a line behind the rows could not be split
};

/// The value of the table file at `lambda`; reads the file at each call. See SpectralTable::Lookup.
float TableLookup(const std::filesystem::path& path, double lambda);

}  // namespace marisonde
