#include "graphs/PlotTypes.h"

#include <algorithm>
#include <array>

namespace marisonde {

namespace {

struct TitleRow {
    std::int32_t code;
    std::string_view title;
};
constexpr std::array kTitles{
    TitleRow{PlotType::BbUncorrected, "Backscattering Coefficient (/m)"},
    TitleRow{PlotType::BbCorrected, "Backscattering Coefficient (/m)"},
    TitleRow{PlotType::Fluorescence, "Backscattering Coefficient (/m)"},
    TitleRow{PlotType::NormalizedSignal, "Normalized signal"},
    TitleRow{PlotType::Attenuation, "Attenuation (/m)"},
    TitleRow{PlotType::AttenuationAndAbsorption, "Attenuation & Absorption (/m)"},
    TitleRow{PlotType::DepthMeters, "Depth (m)"},
    TitleRow{PlotType::DepthFeet, "Depth (feet)"},
    TitleRow{PlotType::Pressure, "Pressure (PSI)"},
    TitleRow{PlotType::Distance, "Distance (cm)"},
    TitleRow{PlotType::Angle, "Angle (degrees)"},
    TitleRow{PlotType::Wavelength, "Wavelength (nm)"},
    TitleRow{PlotType::ElapsedTime, "Elapsed Time (minutes)"},
    TitleRow{PlotType::Temperature, "Temperature (C)"},
};

}  // namespace

std::string_view AxisTitleForType(std::int32_t code) {
    const auto* const row =
        std::find_if(kTitles.begin(), kTitles.end(), [&](const TitleRow& r) { return r.code == code; });
    return row == kTitles.end() ? "Unknown data type" : row->title;
}

}  // namespace marisonde
