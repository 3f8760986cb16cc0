#include "common/InstTypes.h"

#include <array>

#include "common/ConversionUtils.h"
#include "common/Numbers.h"

namespace marisonde {

namespace {

enum class Family { Corvane, Tidal, Delph, None };

struct Model {
    InstTypeCode code;
    std::string_view name;
    Family family;
    int slots;
    int channelsShown;
    double referenceConstant;
};

constexpr std::array<Model, kInstTypeCount> kModels{{
    {InstTypeCode::Corvane6, "Corvane-6", Family::Corvane, 8, 6, 4.81},
    {InstTypeCode::Corvane4, "Corvane-4", Family::Corvane, 4, 4, 3.64},
    {InstTypeCode::Corvane2, "Corvane-2", Family::Corvane, 3, 2, 4.81},
    {InstTypeCode::LTidal, "l-Tidal", Family::Tidal, 1, 1, 4.83},
    {InstTypeCode::NTidal, "n-Tidal", Family::Tidal, 1, 1, 4.83},
    {InstTypeCode::XTidal, "x-Tidal", Family::Tidal, 1, 1, 4.83},
    {InstTypeCode::Fathom2, "Fathom-2", Family::Delph, 0, 2, -1},
    {InstTypeCode::Delph2, "Delph-2", Family::Delph, 0, 2, -1},
    {InstTypeCode::Delph4, "Delph-4", Family::Delph, 0, 4, -1},
    {InstTypeCode::Delph6, "Delph-6", Family::Delph, 0, 6, -1},
    {InstTypeCode::Unknown, "unknown", Family::None, -1, 0, -1},
}};

constexpr bool RowsStandAtTheirCodes() {
    for (std::size_t i = 0; i < kModels.size(); ++i)
        if (kModels[i].code != static_cast<InstTypeCode>(i)) return false;
    return true;
}
static_assert(RowsStandAtTheirCodes());

const Model& ModelOf(InstTypeCode code) {
    const auto row = static_cast<std::size_t>(code);
    return row < kModels.size() ? kModels[row] : kModels.back();
}

constexpr double kLastSlowFirmware =
    1.01;  // Delph inputs before the next version lose characters sent together

bool AnySerial(std::string_view serial) {
    return serial.empty() || serial == "unknown";
}

/// The digits stand behind a six-character prefix in long serials, behind two letters in short ones.
double SerialNumber(std::string_view serial) {
    const std::size_t start = serial.size() >= 7 ? 6 : 2;
    return serial.size() > start ? Val(serial.substr(start)) : 0;
}

}  // namespace

std::string_view InstTypeName(InstTypeCode code) {
    return ModelOf(code).name;
}

InstTypeCode InstTypeFromName(std::string_view text) {
    for (const Model& model : kModels)
        if (EqualIgnoringCase(model.name, text)) return model.code;
    return InstTypeCode::NoSuchName;
}

bool IsCorvaneFamily(InstTypeCode code) {
    return ModelOf(code).family == Family::Corvane;
}

bool IsTidalFamily(InstTypeCode code) {
    return ModelOf(code).family == Family::Tidal;
}

bool IsDelphFamily(InstTypeCode code) {
    return ModelOf(code).family == Family::Delph;
}

bool TypesAreCompatible(InstTypeCode a, InstTypeCode b) {
    if (a >= InstTypeCode::Unknown || b >= InstTypeCode::Unknown) return false;
    // Decimal lines do not tell one member of these families from another: they are then taken for these.
    const auto oneIs = [&](InstTypeCode code) { return a == code || b == code; };
    return a == b || (oneIs(InstTypeCode::XTidal) && IsTidalFamily(a) && IsTidalFamily(b)) ||
           (oneIs(InstTypeCode::Fathom2) && IsDelphFamily(a) && IsDelphFamily(b));
}

int ChannelSlots(InstTypeCode code) {
    return ModelOf(code).slots;
}

int ChannelsShown(InstTypeCode code) {
    return ModelOf(code).channelsShown;
}

int DelphChannels(InstTypeCode code) {
    if (IsTidalFamily(code)) return 1;
    return IsDelphFamily(code) ? ChannelsShown(code) : 0;
}

double ReferenceConstant(InstTypeCode code) {
    return ModelOf(code).referenceConstant;
}

bool HasFluorChannels(const InstIdentity& inst) {
    if (IsDelphFamily(inst.type)) return true;
    return IsCorvaneFamily(inst.type) && inst.config.find('F') != std::string_view::npos;
}

bool HasShutter(const InstIdentity& inst) {
    return IsCorvaneFamily(inst.type) && inst.config.find('T') != std::string_view::npos &&
           inst.config.find("T0") == std::string_view::npos;
}

int OutputChunkSize(const InstIdentity& inst) {
    // A sleeping instrument wakes on the first character and would lose those that come with it.
    if (inst.sleeping) return 1;
    if (IsCorvaneFamily(inst.type)) return 10;
    return IsDelphFamily(inst.type) && Val(inst.firmwareVersion) > kLastSlowFirmware ? 20 : 1;
}

bool SerialMatches(std::string_view a, std::string_view b) {
    if (AnySerial(a) || AnySerial(b)) return true;
    return EqualIgnoringCase(a.substr(0, 2), b.substr(0, 2)) && SerialNumber(a) == SerialNumber(b);
}

bool StoresCalibration(InstTypeCode type, std::string_view serial) {
    constexpr std::size_t kLaterSeries = 7;
    return !IsTidalFamily(type) || serial.size() >= kLaterSeries;
}

}  // namespace marisonde
