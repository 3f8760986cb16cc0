#include <algorithm>

#include "common/ConversionUtils.h"
#include "link/ReplyParsers.h"
#include "link/ReplyText.h"

namespace marisonde {

namespace {

/// Lines of the shortest complete calibration; an end mark before them belongs to something else.
constexpr std::size_t kShortestIni = 54;
/// Lines of the last section in units that send no end mark.
constexpr std::size_t kLastSection = 17;
/// A section of that length may go on; only when nothing has come for this long was it the end.
constexpr Millis kQuietEnd{500};

bool HasEndMark(const std::vector<std::string>& lines) {
    return std::any_of(lines.begin(), lines.end(),
                       [](const std::string& line) { return Holds(line, "[End]"); });
}

bool EndsWithLastSection(const InstrumentLink& window) {
    const auto& lines = window.State.CalLines;
    const auto last = std::find_if(lines.begin(), lines.end(), [](const std::string& line) {
        return Holds(line, "[Channel8]") || Holds(line, "[Channel 8]");
    });
    if (static_cast<std::size_t>(lines.end() - last) <= kLastSection) return false;
    return window.Time().Steady() - window.State.LastInputTime >= kQuietEnd;
}

void ReadCalLines(InstrumentLink& window) {
    CalSection section;
    for (const std::string& line : window.State.CalLines)
        window.ReplyCal().ParseLineIntoCalClass(line, section);
    window.State.CurrentCommand.clear();
}

bool ReadWhenComplete(InstrumentLink& window, bool endMark) {
    if (!endMark && !EndsWithLastSection(window)) return false;
    ReadCalLines(window);
    return true;
}

}  // namespace

void ParseIniReply(InstrumentLink& window) {
    const auto& lines = window.State.CalLines;
    if (ReadWhenComplete(window, lines.size() >= kShortestIni && HasEndMark(lines)))
        window.State.GotIniReply = true;
}

void ParseMultiCal(InstrumentLink& window) {
    if (ReadWhenComplete(window, HasEndMark(window.State.CalLines))) window.State.CalReady = true;
}

bool ParseDumpText(InstrumentLink& window) {
    if (!ReadWhenComplete(window, HasEndMark(window.State.CalLines))) return false;
    window.State.GotIniReply = true;
    return true;
}

}  // namespace marisonde
