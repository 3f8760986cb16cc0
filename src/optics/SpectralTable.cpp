#include "optics/SpectralTable.h"

#include <limits>
#include <optional>
#include <string>

#include "common/ConversionUtils.h"
#include "common/FileBytes.h"
#include "common/Numbers.h"

namespace marisonde {

namespace {

constexpr float kNoValue = std::numeric_limits<float>::infinity();

std::optional<double> CellNumber(std::string_view cell) {
    cell = Trim(cell);
    if (!HasNumberChars(cell)) return std::nullopt;
    return Val(cell);
}

std::string_view TakeLine(std::string_view& text) {
    const std::size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    return line;
}

}  // namespace

SpectralTable SpectralTable::Parse(std::string_view text) {
    SpectralTable table;
    while (!text.empty()) {
        const std::string_view line = TakeLine(text);
        if (Trim(line).empty()) continue;
        const std::size_t comma = line.find(',');
        if (comma == std::string_view::npos) {
            table.broken_ = true;
            break;
        }
        const auto lambda = CellNumber(line.substr(0, comma));
        const auto value = CellNumber(line.substr(comma + 1));
        if (!lambda || !value) {
            table.broken_ = true;
            break;
        }
        table.rows_.push_back({*lambda, *value});
    }
    return table;
}

SpectralTable SpectralTable::Load(const std::filesystem::path& path) {
    std::error_code error;
    return Parse(ReadFileBytes(path, error).value_or(""));
}

float SpectralTable::Lookup(double lambda) const {
    if (rows_.size() < 2) return kNoValue;
    std::size_t current = 1;
    while (current + 1 < rows_.size() && rows_[current].lambda < lambda) ++current;
    const auto [x0, y0] = rows_[current - 1];
    const auto [x1, y1] = rows_[current];
    if (lambda > x1) return broken_ ? kNoValue : static_cast<float>(y1);
    if (lambda < x0) return static_cast<float>(y0);
    if (lambda == x1) return static_cast<float>(y1);
    return static_cast<float>(y0 + (lambda - x0) / (x1 - x0) * (y1 - y0));
}

float TableLookup(const std::filesystem::path& path, double lambda) {
    return SpectralTable::Load(path).Lookup(lambda);
}

}  // namespace marisonde
