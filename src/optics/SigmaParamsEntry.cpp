#include "optics/SigmaParamsEntry.h"

#include <algorithm>
#include <cmath>

#include "optics/EnforceLimits.h"

namespace marisonde {

namespace {

constexpr std::string_view kNothing = "-----";

struct BoxRow {
    SigmaBox box;
    BoxLimits limits;
    double SigmaParams::*number = nullptr;  ///< of boxes that take only a number
};
constexpr std::array kBoxes{
    BoxRow{SigmaBox::bTilde, {"backscatter probability", true, 0.005, 0.04}},
    BoxRow{SigmaBox::aw, {"pure-water absorption", true, 0.005, 10}},
    BoxRow{SigmaBox::aStar, {"chlorophyll-specific absorption", true, 0.005, 1}},
    BoxRow{SigmaBox::c, {"chlorophyll concentration", false, 0, 1000000}, &SigmaParams::C},
    BoxRow{SigmaBox::ad400, {"detritus absorption at 400 nm", false, 0, 1000}, &SigmaParams::ad400},
    BoxRow{SigmaBox::gammad, {"detritus slope", false, 0, 1}, &SigmaParams::gammad},
    BoxRow{SigmaBox::gammaY, {"yellow substance slope", false, 0, 1}, &SigmaParams::gammay},
    BoxRow{SigmaBox::p, {"share of the attenuation", false, 0, 10}, &SigmaParams::p},
};
static_assert(kBoxes.size() == kSigmaBoxes);

/// The older form alone has a box for water, and beside the model the share p is idle.
bool IsInUse(const SigmaParamsEntry& entry, SigmaBox box) {
    if (box == SigmaBox::aw) return entry.older;
    return box != SigmaBox::p || !entry.cUseCV;
}

bool IsRight(const SigmaParamsEntry& entry, const BoxRow& row) {
    return !EnforceLimits(entry[row.box], row.limits);
}

/// The model takes every number but the share p, which stands in its place.
bool NumbersOfModelAreRight(const SigmaParamsEntry& entry) {
    return std::all_of(kBoxes.begin(), kBoxes.end(), [&entry](const BoxRow& row) {
        return row.number == nullptr || row.box == SigmaBox::p || IsRight(entry, row);
    });
}

/// A box that holds a number or the file of a table.
void ReadNumberOrFile(const std::string& text, double& value, std::string& file) {
    const auto number = StrictNumber(text);
    value = number.value_or(kSentinel);
    file = number ? "" : text;
}

/// Absorption of water, 1/m, by its box; none when a table has no value.
std::optional<double> WaterAt(const std::string& text, double lambda) {
    if (const auto number = StrictNumber(text)) return number;
    const float value = TableLookup(text, lambda);
    if (std::isinf(value)) return std::nullopt;
    return static_cast<double>(value);
}

template <class Value>
std::string Shown(const std::optional<Value>& value, int decimals) {
    const bool finite = value && std::isfinite(*value);
    return " " + (finite ? FixedText(static_cast<double>(*value), decimals) : std::string(kNothing));
}

}  // namespace

SigmaParamsEntry EntryOf(const SigmaParams& params, const SigmaTablePaths& tables) {
    SigmaParamsEntry entry;
    entry.older = params.includePurewater;
    entry.cUseCV = params.cUseCV;
    entry[SigmaBox::bTilde] = NumberOrFile(params.bbTildeValue, params.bbTildeFile);
    entry[SigmaBox::aStar] = NumberOrFile(params.aStarValue, params.aStarFile);
    if (entry.older) entry[SigmaBox::aw] = tables.aw;
    for (const BoxRow& row : kBoxes)
        if (row.number != nullptr) entry[row.box] = NumberText(params.*row.number);
    return entry;
}

void EnterDefaults(SigmaParamsEntry& entry, SigmaPage page, const SigmaTablePaths& tables) {
    SigmaParams defaults = DefaultSigmaParams(tables.aStar);
    defaults.includePurewater = entry.older;
    SigmaParamsEntry fresh = EntryOf(defaults, tables);
    if (page == SigmaPage::NTidal) {
        entry[SigmaBox::p] = fresh[SigmaBox::p];
        entry.cUseCV = fresh.cUseCV;
        return;
    }
    fresh[SigmaBox::p] = entry[SigmaBox::p];
    entry.boxes = fresh.boxes;
}

std::optional<SigmaBoxError> ValidateParams(const SigmaParamsEntry& entry) {
    for (const BoxRow& row : kBoxes) {
        if (!IsInUse(entry, row.box)) continue;
        if (auto message = EnforceLimits(entry[row.box], row.limits))
            return SigmaBoxError{row.box, std::move(*message)};
    }
    return std::nullopt;
}

SigmaParams ParamsOf(const SigmaParamsEntry& entry, const SigmaParams& before) {
    SigmaParams params = before;
    ReadNumberOrFile(entry[SigmaBox::aStar], params.aStarValue, params.aStarFile);
    ReadNumberOrFile(entry[SigmaBox::bTilde], params.bbTildeValue, params.bbTildeFile);
    for (const BoxRow& row : kBoxes)
        if (row.number != nullptr && IsRight(entry, row)) params.*row.number = SafeVal(entry[row.box]);
    params.cUseCV = entry.cUseCV;
    LoadSigmaTables(params);
    return params;
}

SigmaModelTexts CalculateSigmaModel(const SigmaParamsEntry& entry, std::string_view wavelength) {
    const int decimals = entry.older ? 4 : 3;
    const double lambda = SafeVal(wavelength);
    std::optional<float> a;
    std::optional<double> bbTilde;
    if (lambda > 0) {
        const SigmaParams params = ParamsOf(entry, SigmaParams());
        const auto water = entry.older ? WaterAt(entry[SigmaBox::aw], lambda) : 0;
        if (water && NumbersOfModelAreRight(entry)) a = SigmaAInWater(params, lambda, *water);
        bbTilde = SigmaBbTilde(params, lambda);
    }
    return {Shown(a, decimals), Shown(bbTilde, decimals)};
}

}  // namespace marisonde
