#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "common/Numbers.h"
#include "common/Settings.h"
#include "optics/SpectralTable.h"

namespace marisonde {

/// Parameters of the bio-optical model behind the sigma correction; one per application.
struct SigmaParams {
    double aStarValue = kSentinel;  ///< chlorophyll-specific absorption; the sentinel: use aStarFile
    std::string aStarFile;
    double bbTildeValue = 0.015;  ///< backscatter probability; the sentinel: use bbTildeFile
    std::string bbTildeFile;
    double gammay = 0.014;          ///< slope of yellow substance, 1/nm
    double gammad = 0.011;          ///< slope of detritus, 1/nm
    double C = 0.1;                 ///< chlorophyll, mg/m^3
    double ad400 = 0.01;            ///< absorption of detritus at 400 nm, 1/m
    double p = 0.6;                 ///< share of c that acts on an n-Tidal without the model
    bool cUseCV = false;            ///< an n-Tidal uses the model instead of p
    bool includePurewater = false;  ///< the older form of K, with the water in it

    SpectralTable aStarTable;    ///< of aStarFile, filled by LoadSigmaTables
    SpectralTable bbTildeTable;  ///< of bbTildeFile

    bool operator==(const SigmaParams&) const = default;
};

/// The parameters of a new user; `aStarFile` is the table that comes with the program.
SigmaParams DefaultSigmaParams(std::string aStarFile);
/// What a box or a setting shows of a parameter that is a number or, for the sentinel, the file of a table.
std::string NumberOrFile(double value, const std::string& file);

/// Reads the files that the parameters name, once. Call after aStarFile or bbTildeFile has changed.
void LoadSigmaTables(SigmaParams& params);

struct SigmaParamsLoad {
    SigmaParams params;
    int missingFiles = 0;  ///< files named in the settings that are nowhere; the caller shows one message
};
/// Section "Sigma", tables included. `programFolder` holds the default "aStar.csv"; a file that is missing is
/// looked for in `dataFolder` under its own name.
SigmaParamsLoad LoadSigmaParams(const Settings& settings, const std::filesystem::path& programFolder,
                                const std::filesystem::path& dataFolder);
void SaveSigmaParams(Settings& settings, const SigmaParams& params);

/// Absorption, 1/m, at `lambda` nm of chlorophyll, yellow substance and detritus (form of Morel 1991), with
/// water if asked. nullopt when the table has no value; the reason is MissingAStarText.
std::optional<float> SigmaA(const SigmaParams& params, double lambda, bool includeWater);
/// The same with so much absorption by the water, 1/m.
std::optional<float> SigmaAInWater(const SigmaParams& params, double lambda, double water);
/// Backscatter probability at `lambda` nm. nullopt when the table has no value; the reason is
/// MissingBbTildeText.
std::optional<double> SigmaBbTilde(const SigmaParams& params, double lambda);

/// For the user, when a table gave no value.
std::string MissingAStarText(const SigmaParams& params, double lambda);
std::string MissingBbTildeText(const SigmaParams& params, double lambda);

}  // namespace marisonde
