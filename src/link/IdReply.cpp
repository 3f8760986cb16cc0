#include <algorithm>
#include <array>

#include "common/ConversionUtils.h"
#include "common/InstTypes.h"
#include "link/ReplyParsers.h"
#include "link/ReplyText.h"

namespace marisonde {

namespace {

/// How a model names itself, and how many lines its identification has behind the heading.
struct WireModel {
    std::string_view wireName;
    InstTypeCode type;
    std::size_t lines;
};

constexpr std::array kWireModels{
    WireModel{"cv6", InstTypeCode::Corvane6, 8},   WireModel{"cv4", InstTypeCode::Corvane4, 8},
    WireModel{"cv2", InstTypeCode::Corvane2, 8},   WireModel{"l-tidal", InstTypeCode::LTidal, 6},
    WireModel{"n-tidal", InstTypeCode::NTidal, 6}, WireModel{"fathom-2", InstTypeCode::Fathom2, 6},
    WireModel{"delph-2", InstTypeCode::Delph2, 6}, WireModel{"delph-4", InstTypeCode::Delph4, 6},
    WireModel{"delph-6", InstTypeCode::Delph6, 6},
};

const WireModel* FindWireModel(std::string_view text) {
    const std::string name = LowerCase(Trim(text));
    const auto* const found = std::find_if(kWireModels.begin(), kWireModels.end(),
                                           [&](const WireModel& row) { return row.wireName == name; });
    return found == kWireModels.end() ? nullptr : found;
}

void EndIdReply(DataWindowState& state) {
    state.GotIdReply = true;
    state.CurrentCommand.clear();
}

/// "LT040712": units that identify themselves with their serial alone.
bool IsShortForm(std::string_view line) {
    return line.size() >= 3 && (line[0] == 'L' || line[0] == 'N') && line[1] == 'T' &&
           IsDigitChar(line.substr(2));
}

void TakeShortForm(DataWindowState& state, const std::string& line) {
    state.InstModelName = InstTypeName(line[0] == 'L' ? InstTypeCode::LTidal : InstTypeCode::NTidal);
    state.InstConfig.clear();
    state.InstId.clear();
    state.InstSerial = line;
    EndIdReply(state);
}

std::string CutAtControl(std::string_view text) {
    const auto* const end =
        std::find_if(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 13; });
    return std::string(text.begin(), end);
}

void TakeLongForm(DataWindowState& state, std::span<std::string> lines) {
    constexpr std::size_t kNeeded = 5;
    if (lines.size() < kNeeded || state.GotIdReply) return;
    state.InstModelName = TextBehind(lines[0], ": ");
    state.InstSerial = TextBehind(lines[1], ": ");
    state.InstConfig = TextBehind(lines[2], ": ");
    state.InstId = CutAtControl(TextBehind(lines[3], ": "));
    const WireModel* const model = FindWireModel(state.InstModelName);
    if (!model) return;
    if (!IsCorvaneFamily(model->type)) state.InstModelName = InstTypeName(model->type);
    if (lines.size() < model->lines) return;
    state.InstModelName = InstTypeName(model->type);
    EndIdReply(state);
}

}  // namespace

std::string ModelFromReply(std::string_view line) {
    constexpr std::string_view kMark = "model: ";
    const std::size_t at = LowerCase(line).find(kMark);
    const std::string_view text = at == std::string::npos ? Trim(line) : Trim(line.substr(at + kMark.size()));
    const WireModel* const model = FindWireModel(text);
    return std::string(model ? InstTypeName(model->type) : text);
}

void ParseIdReply(InstrumentLink& window) {
    DataWindowState& state = window.State;
    const std::span<std::string> lines = ReplyLines(state);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (Holds(lines[i], "Identification:")) return TakeLongForm(state, lines.subspan(i + 1));
        if (IsShortForm(lines[i])) return TakeShortForm(state, lines[i]);
    }
}

}  // namespace marisonde
