#include "graphs/GraphDefaults.h"

#include <cmath>
#include <string_view>
#include <variant>

#include "common/ConversionUtils.h"
#include "common/Numbers.h"
#include "graphs/ChartBatch.h"

namespace marisonde {

namespace {

constexpr std::string_view kSection = "GraphDefaults";

template <class Owner, class... Types>
using FieldOf = std::variant<Types Owner::*...>;
using Field = FieldOf<GraphDefaults, bool, std::int32_t, PackedColor, double>;

struct KeyRow {
    std::string_view key;
    std::string_view missing;
    Field field;
};
const std::array kKeys{
    KeyRow{"GridOn", "1", &GraphDefaults::GridOn},
    KeyRow{"GridStyle", "0", &GraphDefaults::GridStyle},
    KeyRow{"GraphColor", "&HFFFFFF", &GraphDefaults::GraphColor},
    KeyRow{"GraphExtColor", "&HFFFFFF", &GraphDefaults::GraphExtColor},
    KeyRow{"GridColor", "0", &GraphDefaults::GridColor},
    KeyRow{"LineSize", "1", &GraphDefaults::LineSize},
    KeyRow{"MarkerSize", "1", &GraphDefaults::MarkerSize},
    KeyRow{"AutoDataMin", "1", &GraphDefaults::AutoDataMin},
    KeyRow{"AutoDataMax", "1", &GraphDefaults::AutoDataMax},
    KeyRow{"AutoDataMin2", "1", &GraphDefaults::AutoDataMin2},
    KeyRow{"AutoDataMax2", "1", &GraphDefaults::AutoDataMax2},
    KeyRow{"AutoDepthMin", "1", &GraphDefaults::AutoDepthMin},
    KeyRow{"AutoDepthMax", "1", &GraphDefaults::AutoDepthMax},
    KeyRow{"AutoTimeMin", "1", &GraphDefaults::AutoTimeMin},
    KeyRow{"AutoTimeMax", "1", &GraphDefaults::AutoTimeMax},
    KeyRow{"DataMin", "0", &GraphDefaults::DataMin},
    KeyRow{"DataMax", ".01", &GraphDefaults::DataMax},
    KeyRow{"DataMin2", "0", &GraphDefaults::DataMin2},
    KeyRow{"DataMax2", ".1", &GraphDefaults::DataMax2},
    KeyRow{"DepthMin", "0", &GraphDefaults::DepthMin},
    KeyRow{"DepthMax", "100", &GraphDefaults::DepthMax},
    KeyRow{"TimeMin", "0", &GraphDefaults::TimeMin},
    KeyRow{"TimeMax", "100", &GraphDefaults::TimeMax},
    KeyRow{"Units", "1", &GraphDefaults::Units},
};

// Colours may stand as signed or unsigned 32-bit numbers: both are the same bits.
PackedColor ColorFromText(std::string_view text) {
    const double value = Val(text);
    if (!(std::fabs(value) < 4294967296.0)) return 0;
    return static_cast<PackedColor>(static_cast<std::int64_t>(value));
}

std::string ColorText(PackedColor color) {
    return std::to_string(static_cast<std::int32_t>(color));
}

bool FlagOf(std::string_view text) {
    return EqualIgnoringCase(Trim(text), "TRUE") || Val(text) != 0;
}

void Read(std::string_view text, bool& value) {
    value = FlagOf(text);
}
void Read(std::string_view text, std::int32_t& value) {
    value = ToInt32(Val(text));
}
void Read(std::string_view text, PackedColor& value) {
    value = ColorFromText(text);
}
void Read(std::string_view text, double& value) {
    value = Val(text);
}

std::string Text(bool value) {
    return value ? "1" : "0";
}
std::string Text(std::int32_t value) {
    return std::to_string(value);
}
std::string Text(PackedColor value) {
    return ColorText(value);
}
std::string Text(double value) {
    return NumberText(value);
}

std::string Numbered(std::string_view key, std::size_t channel) {
    return std::string(key) + std::to_string(channel);
}

}  // namespace

GraphDefaults LoadGraphDefaults(const Settings& settings) {
    GraphDefaults defaults;
    for (const KeyRow& row : kKeys) {
        const std::string text = settings.GetSetting(kSection, row.key, row.missing);
        std::visit([&](auto field) { Read(text, defaults.*field); }, row.field);
    }
    for (std::size_t n = 0; n < defaults.channels.size(); ++n) {
        ChannelStyle& style = defaults.channels[n];
        style.on = FlagOf(settings.GetSetting(kSection, Numbered("ChannelOn", n), "1"));
        style.color = ColorFromText(
            settings.GetSetting(kSection, Numbered("DataColor", n), ColorText(kAutomaticColor)));
        style.marker = settings.GetSetting(kSection, Numbered("Marker", n), "Circle");
    }
    return defaults;
}

void SaveGraphDefaults(Settings& settings, const GraphDefaults& defaults) {
    for (const KeyRow& row : kKeys)
        settings.SaveSetting(kSection, row.key,
                             std::visit([&](auto field) { return Text(defaults.*field); }, row.field));
    for (std::size_t n = 0; n < defaults.channels.size(); ++n) {
        const ChannelStyle& style = defaults.channels[n];
        settings.SaveSetting(kSection, Numbered("ChannelOn", n), Text(style.on));
        settings.SaveSetting(kSection, Numbered("DataColor", n), Text(style.color));
        settings.SaveSetting(kSection, Numbered("Marker", n), style.marker);
    }
}

void ApplyGraphDefaults(const GraphDefaults& defaults, LivePlot& plot, Chart2D& chart) {
    const ChartBatch batch(chart);
    plot.Look = static_cast<const GraphLook&>(defaults);
    plot.AutoDataMin = defaults.AutoDataMin;
    plot.AutoDataMax = defaults.AutoDataMax;
    plot.AutoDataMin2 = defaults.AutoDataMin2;
    plot.AutoDataMax2 = defaults.AutoDataMax2;
    plot.AutoDepthMin = defaults.AutoDepthMin;
    plot.AutoDepthMax = defaults.AutoDepthMax;
    plot.AutoTimeMin = defaults.AutoTimeMin;
    plot.AutoTimeMax = defaults.AutoTimeMax;
    plot.CurrentDepthMin = defaults.DepthMin;
    plot.CurrentDepthMax = defaults.DepthMax;
    plot.CurrentTimeMin = defaults.TimeMin;
    plot.CurrentTimeMax = defaults.TimeMax;
    const bool depth = plot.View() == PlotView::Vs_Depth;
    chart.Axes(AxisName::X).SetMin(depth ? defaults.DepthMin : defaults.TimeMin);
    chart.Axes(AxisName::X).SetMax(depth ? defaults.DepthMax : defaults.TimeMax);
    chart.Axes(AxisName::Y).SetMin(defaults.DataMin);
    chart.Axes(AxisName::Y).SetMax(defaults.DataMax);
    chart.Axes(AxisName::Y2).SetMin(defaults.DataMin2);
    chart.Axes(AxisName::Y2).SetMax(defaults.DataMax2);
    plot.ChangeDepthUnits(defaults.Units);
    for (std::size_t n = 0; n < defaults.channels.size(); ++n)
        plot.AutoColor(static_cast<int>(n)) = defaults.channels[n].color == kAutomaticColor;
}

}  // namespace marisonde
