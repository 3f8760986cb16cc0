#include "simulator/SampleSettings.h"

#include <optional>

#include "simulator/FieldText.h"

namespace marisonde::simulator {

namespace {

/// The words of a value that is not a number: of 1 and of 0, as told and as set. A direction and a format are
/// set by letters.
struct Words {
    std::string_view one, zero, setOne, setZero;
};

Words WordsOf(SettingRow::Kind kind) {
    switch (kind) {
        case SettingRow::Kind::OnOff:
            return {"on", "off", "1", "0"};
        case SettingRow::Kind::Direction:
            return {"CW", "CCW", "CW", "CCW"};
        case SettingRow::Kind::Format:
            return {"hex", "decimal", "H", "D"};
        case SettingRow::Kind::Number:
            break;
    }
    return {};
}

std::optional<double> ReadValue(const SettingRow& row, std::string_view text) {
    if (row.kind == SettingRow::Kind::Number) {
        const auto value = NumberFrom(text);
        return value && *value >= row.lowest && *value <= row.highest ? value : std::nullopt;
    }
    const Words words = WordsOf(row.kind);
    const std::string upper = UpperCase(text);
    if (upper == words.setOne) return 1;
    if (upper == words.setZero) return 0;
    return std::nullopt;
}

}  // namespace

std::string SettingLine(const SettingRow& row, const SampleSettings& settings) {
    const double value = settings.*row.value;
    std::string line(row.label);
    line += ": ";
    if (row.kind == SettingRow::Kind::Number) return line += AllDigits(value);
    const Words words = WordsOf(row.kind);
    return line += value != 0 ? words.one : words.zero;
}

bool ApplySettings(std::span<const SettingRow> rows, std::string_view arguments, SampleSettings& settings) {
    SampleSettings changed = settings;
    const auto texts = SplitAtCommas(arguments);
    for (std::size_t i = 0; i < texts.size(); ++i) {
        if (texts[i].empty()) continue;
        if (i >= rows.size()) return false;
        const auto value = ReadValue(rows[i], texts[i]);
        if (!value) return false;
        changed.*rows[i].value = *value;
    }
    if (changed.burstLength > changed.burstCycle) return false;
    settings = changed;
    return true;
}

}  // namespace marisonde::simulator
