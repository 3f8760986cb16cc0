#pragma once

#include <optional>
#include <string_view>

namespace marisonde::simulator {

/// The ten models, numbered as hosts number them.
enum class Model { Corvane6, Corvane4, Corvane2, LTidal, NTidal, XTidal, Fathom2, Delph2, Delph4, Delph6 };
inline constexpr int kModelCount = 10;

enum class Family { Corvane, Tidal, Delph };

/// What is fixed by the model.
struct ModelInfo {
    Model model;
    Family family;
    std::string_view name;    ///< full name, such as "Corvane-6"
    std::string_view code;    ///< short name in the instrument's own replies, such as "CV6"
    std::string_view serial;  ///< two letters, four digits of production date, the number
    std::string_view
        config;    ///< configuration text; "F" fluorescence, "T" with a digit other than 0 a shutter
    int channels;  ///< optical channels that carry values
};

/// The name that users may give their instrument; here the same for all.
inline constexpr std::string_view kLabel = "Simulated";

const ModelInfo& InfoOf(Model model);
/// By full name in any case ("corvane-6") or by number ("0" to "9"). nullopt: no such model.
std::optional<Model> ModelFromText(std::string_view text);

}  // namespace marisonde::simulator
