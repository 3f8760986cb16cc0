#include "optics/SigmaParams.h"

#include <array>
#include <cmath>
#include <system_error>

#include "common/ConversionUtils.h"
#include "optics/PurewaterClass.h"

namespace marisonde {

namespace {

constexpr std::string_view kSection = "Sigma";
constexpr std::string_view kAStarFileName = "aStar.csv";
/// Where installations of old put the table; settings of those users may still lack its path.
constexpr std::string_view kOldAStarPath = "c:\\program files\\marisonde\\astar.csv";

struct NumberKey {
    std::string_view key;
    std::string_view missing;
    double SigmaParams::*field;
};
constexpr std::array kNumberKeys{
    NumberKey{"ad400", "0.01", &SigmaParams::ad400},
    NumberKey{"C", "0.1", &SigmaParams::C},
    NumberKey{"gammad", "0.011", &SigmaParams::gammad},
    NumberKey{"gammay", "0.014", &SigmaParams::gammay},
    NumberKey{"p", "0.6", &SigmaParams::p},
};

struct FlagKey {
    std::string_view key;
    bool SigmaParams::*field;
};
constexpr std::array kFlagKeys{
    FlagKey{"includePurewater", &SigmaParams::includePurewater},
    FlagKey{"cUseCV", &SigmaParams::cUseCV},
};

/// A setting that holds a number or the path of a table.
struct TableSetting {
    double value = kSentinel;
    std::string file;
    bool missing = false;
};

bool FileExists(const std::filesystem::path& path) {
    std::error_code error;
    return !path.empty() && std::filesystem::is_regular_file(path, error);
}

/// The file itself, or one of that name in the data folder, or (for aStar) the old default; otherwise
/// missing.
TableSetting ReadTableSetting(const std::string& text, const std::filesystem::path& dataFolder,
                              const std::filesystem::path& oldPath) {
    if (HasNumberChars(Trim(text)) && IsNumericText(text)) return {Val(Trim(text)), "", false};
    const std::filesystem::path named(text);
    for (const auto& candidate : {named, dataFolder / named.filename(), oldPath}) {
        if (FileExists(candidate)) return {kSentinel, candidate.string(), false};
    }
    return {kSentinel, text, true};
}

/// `lambda` and file in the words that all tables share.
std::string MissingText(std::string_view purpose, double lambda, std::string_view file) {
    std::string text = "A value needed for ";
    text.append(purpose).append(" of ").append(NumberText(lambda));
    text.append(" nm backscattering values could not be loaded from ").append(file).append(".  ");
    return text.append("See 'Sigma Parameters' under the File menu to select a different file.");
}

/// A table's value, or none.
std::optional<float> FromTable(const SpectralTable& table, double lambda) {
    const float value = table.Lookup(lambda);
    if (std::isinf(value)) return std::nullopt;
    return value;
}

}  // namespace

SigmaParams DefaultSigmaParams(std::string aStarFile) {
    SigmaParams params;
    params.aStarFile = std::move(aStarFile);
    return params;
}

std::string NumberOrFile(double value, const std::string& file) {
    return value == kSentinel ? file : NumberText(value);
}

void LoadSigmaTables(SigmaParams& params) {
    const auto load = [](double value, const std::string& file) {
        return value == kSentinel && !file.empty() ? SpectralTable::Load(file) : SpectralTable();
    };
    params.aStarTable = load(params.aStarValue, params.aStarFile);
    params.bbTildeTable = load(params.bbTildeValue, params.bbTildeFile);
}

SigmaParamsLoad LoadSigmaParams(const Settings& settings, const std::filesystem::path& programFolder,
                                const std::filesystem::path& dataFolder) {
    SigmaParamsLoad load;
    SigmaParams& params = load.params;
    for (const auto& [key, missing, field] : kNumberKeys) {
        params.*field = SafeVal(settings.GetSetting(kSection, key, missing));
    }
    for (const auto& [key, field] : kFlagKeys) {
        params.*field = EqualIgnoringCase(Trim(settings.GetSetting(kSection, key, "FALSE")), "TRUE");
    }
    const std::string aStarPath = (programFolder / kAStarFileName).string();
    const auto aStar =
        ReadTableSetting(settings.GetSetting(kSection, "aStar", aStarPath), dataFolder, kOldAStarPath);
    const auto bTilde = ReadTableSetting(settings.GetSetting(kSection, "bTilde", "0.015"), dataFolder, {});
    params.aStarValue = aStar.value;
    params.aStarFile = aStar.file;
    params.bbTildeValue = bTilde.value;
    params.bbTildeFile = bTilde.file;
    load.missingFiles = int{aStar.missing} + int{bTilde.missing};
    LoadSigmaTables(params);
    return load;
}

void SaveSigmaParams(Settings& settings, const SigmaParams& params) {
    for (const auto& [key, missing, field] : kNumberKeys) {
        settings.SaveSetting(kSection, key, NumberText(params.*field));
    }
    for (const auto& [key, field] : kFlagKeys) {
        settings.SaveSetting(kSection, key, params.*field ? "TRUE" : "FALSE");
    }
    settings.SaveSetting(kSection, "aStar", NumberOrFile(params.aStarValue, params.aStarFile));
    settings.SaveSetting(kSection, "bTilde", NumberOrFile(params.bbTildeValue, params.bbTildeFile));
}

std::optional<float> SigmaA(const SigmaParams& params, double lambda, bool includeWater) {
    return SigmaAInWater(params, lambda, includeWater ? Purewater().a(lambda) : 0);
}

std::optional<float> SigmaAInWater(const SigmaParams& params, double lambda, double water) {
    double aStar = params.aStarValue;
    if (aStar == kSentinel) {
        const auto value = FromTable(params.aStarTable, lambda);
        if (!value) return std::nullopt;
        aStar = static_cast<double>(*value);
    }
    const double yellow = 1 + 0.2 * std::exp(-params.gammay * (lambda - 440));
    const double detritus = params.ad400 * std::exp(-params.gammad * (lambda - 400));
    return static_cast<float>((0.06 * aStar * std::pow(params.C, 0.65) + water) * yellow + detritus);
}

std::optional<double> SigmaBbTilde(const SigmaParams& params, double lambda) {
    if (params.bbTildeValue != kSentinel) return params.bbTildeValue;
    const auto value = FromTable(params.bbTildeTable, lambda);
    if (!value) return std::nullopt;
    return static_cast<double>(*value);
}

std::string MissingAStarText(const SigmaParams& params, double lambda) {
    return MissingText("adjustment", lambda, params.aStarFile);
}

std::string MissingBbTildeText(const SigmaParams& params, double lambda) {
    return MissingText("sigma-correction", lambda, params.bbTildeFile);
}

}  // namespace marisonde
