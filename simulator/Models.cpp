#include "simulator/Models.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace marisonde::simulator {

namespace {

constexpr std::array<ModelInfo, kModelCount> kModels{{
    {Model::Corvane6, Family::Corvane, "Corvane-6", "CV6", "CV060412", "6F2T1", 8},
    {Model::Corvane4, Family::Corvane, "Corvane-4", "CV4", "V4060305", "4T0", 4},
    {Model::Corvane2, Family::Corvane, "Corvane-2", "CV2", "V2060211", "2F1T0", 3},
    {Model::LTidal, Family::Tidal, "l-Tidal", "L-Tidal", "LT040712", "257", 1},
    {Model::NTidal, Family::Tidal, "n-Tidal", "N-Tidal", "NT050308", "258", 1},
    {Model::XTidal, Family::Tidal, "x-Tidal", "X-Tidal", "XT050919", "259", 1},
    {Model::Fathom2, Family::Delph, "Fathom-2", "FATHOM-2", "FA070803", "2", 2},
    {Model::Delph2, Family::Delph, "Delph-2", "DELPH-2", "D2070811", "2", 2},
    {Model::Delph4, Family::Delph, "Delph-4", "DELPH-4", "D4080102", "4", 2},
    {Model::Delph6, Family::Delph, "Delph-6", "DELPH-6", "D6080107", "6", 2},
}};

bool SameIgnoringCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](unsigned char x, unsigned char y) { return std::tolower(x) == std::tolower(y); });
}

}  // namespace

const ModelInfo& InfoOf(Model model) {
    return kModels[static_cast<std::size_t>(model)];
}

std::optional<Model> ModelFromText(std::string_view text) {
    if (text.size() == 1 && text[0] >= '0' && text[0] <= '9') return static_cast<Model>(text[0] - '0');
    const auto* row = std::find_if(kModels.begin(), kModels.end(),
                                   [&](const ModelInfo& info) { return SameIgnoringCase(info.name, text); });
    if (row == kModels.end()) return std::nullopt;
    return row->model;
}

}  // namespace marisonde::simulator
