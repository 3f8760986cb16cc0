#include "operations/Termulator.h"

#include <algorithm>
#include <array>

#include "common/ConversionUtils.h"
#include "decode/Decoders.h"

namespace marisonde {

namespace {

constexpr std::array kKindsWithSupply{LineKind::CorvaneVerbose, LineKind::TidalExtraHex, LineKind::TidalFull,
                                      LineKind::DelphFull};

/// Noise without line ends is told by its beginning.
constexpr std::size_t kMaxPartialShown = 4096;

bool CarriesSupply(LineKind kind) {
    return std::find(kKindsWithSupply.begin(), kKindsWithSupply.end(), kind) != kKindsWithSupply.end();
}

/// The text of one line as it was cut from the input: without the line feed that came behind the carriage
/// return of the line before, and without its own end.
std::string_view LineOf(std::string_view text) {
    if (text.starts_with('\r')) text.remove_prefix(1);
    if (text.starts_with('\n')) text.remove_prefix(1);
    if (text.ends_with('\n')) text.remove_suffix(1);
    if (text.ends_with('\r')) text.remove_suffix(1);
    return text;
}

bool IsOneDataLine(std::string_view text) {
    const std::string_view line = LineOf(text);
    return line.find('\r') == std::string_view::npos && ClassifyLine(line) != LineKind::Other;
}

/// As a screen shows it: a backspace takes the character before it back, and ends at the beginning.
std::string OnScreen(std::string_view text) {
    std::string shown;
    for (const char c : text) {
        if (c != TypedLine::kBackspace)
            shown += c;
        else if (!shown.empty())
            shown.pop_back();
    }
    return shown;
}

/// Starts sampling, with or without an argument. STARTDELAY and the like do not.
bool StartsSampling(std::string_view command) {
    constexpr std::string_view kStart = "START";
    return command.starts_with(kStart) &&
           (command.size() == kStart.size() || command.find_first_of(" ,0123456789") == kStart.size());
}

/// The beginning of a data line comes and goes with every tick: it is not shown before it has turned out to
/// be text.
bool MayBecomeData(std::string_view text, InstStateCode state) {
    if (text.starts_with('*')) return true;
    const bool flows = state == InstStateCode::Sampling || state == InstStateCode::Downloading;
    return HasNumberChars(text) && (flows || text.find(',') != std::string_view::npos);
}

}  // namespace

bool Termulator::OffersNumerical() const {
    return !IsDelphFamily(link_.State.InstType);
}

bool Termulator::KeyPress(char key) {
    if (!link_.Line().IsOpen()) return false;
    if (key == '\r')
        EnterLine();
    else
        Send(typed_.Type(key));
    return true;
}

bool Termulator::Paste(std::string_view text) {
    if (!link_.Line().IsOpen()) return false;
    typed_.Paste(text);
    return true;
}

/// One key goes out at once. More than that is a recalled line, for which instruments have too little
/// buffering: it is paced, and what is typed behind it must not overtake it.
void Termulator::Send(const std::string& text) {
    catchesUp_ = (catchesUp_ && !link_.PendingOutput.empty()) || text.size() > 1;
    if (catchesUp_)
        link_.QueueOutput(text);
    else
        link_.Line().Write(text);
}

/// From here on the reply is treated as if the program had sent the command.
void Termulator::EnterLine() {
    DataWindowState& state = link_.State;
    state.TerminalText.clear();
    state.ResponseLineCount = 0;
    state.CalLines.clear();
    state.GotDirEnd = false;
    state.CurrentCommand = UpperCase(typed_.Text());
    state.SentText = typed_.Text();
    // What is started by hand is recorded too.
    if (StartsSampling(state.CurrentCommand) && link_.MayStart) link_.MayStart();
    const std::string rest = typed_.Enter();
    if (catchesUp_ && !link_.PendingOutput.empty())
        link_.QueueOutput(rest + "\r");
    else
        link_.PendingOutput = rest + "\r";
    catchesUp_ = false;
}

void Termulator::ResponseAdd(std::string_view text) {
    const std::size_t end = text.rfind('\r');
    if (end != std::string_view::npos) lastLineStart_ = response_.Text().size() + end + 1;
    response_.Append(text);
    while (response_.Text().size() > kMaxResponse) {
        const std::size_t fifth = response_.Text().size() / 5;
        response_.CutFront(fifth);
        lastLineStart_ -= std::min(lastLineStart_, fifth);
    }
}

void Termulator::ResponseClearLastLine() {
    if (lastLineStart_ == 0) return;
    response_.CutBack(lastLineStart_);
    partial_.clear();
}

void Termulator::ResponseClear() {
    response_.CutBack(0);
    lastLineStart_ = 0;
    partial_.clear();
}

void Termulator::ResponseRemoveDataLines() {
    const std::string_view text = response_.Text();
    if (IsOneDataLine(text)) return ResponseClear();
    const std::size_t last = text.rfind('\r');
    if (last == 0 || last == std::string_view::npos) return;
    const std::size_t before = text.rfind('\r', last - 1);
    if (before == std::string_view::npos || !IsOneDataLine(text.substr(before, last - before))) return;
    lastLineStart_ = before + 1;
    response_.CutBack(last);
    partial_.clear();
}

void Termulator::AddLineToDataBox(std::string_view text) {
    const std::string& old = data_.Text();
    if (old.size() + text.size() >= kMaxData) data_.CutFront(text.size());
    if (text.size() > kMaxData) text.remove_prefix(text.size() - kMaxData);
    data_.Append(text);
}

void Termulator::DataClear() {
    data_.CutBack(0);
    headings_.clear();
}

void Termulator::UpdateTerm(const Converter* converter, const TerminalView& view) {
    if (!Numerical || converter == nullptr) headings_.clear();
    while (link_.TermQueue.GetNext(line_)) {
        const LineKind kind = ClassifyLine(line_);
        if (kind == LineKind::Other)
            AddReply(line_);
        else
            AddData(kind, converter, view);
    }
    ShowPartialLine();
    std::string& collected = link_.State.TerminalText;
    if (collected.ends_with('\r') || collected.ends_with('\n')) collected.clear();
}

/// The line feed stands in front of a line, as instruments send it behind the carriage return of the one
/// before: the last line can then be cut off and written anew.
void Termulator::AddReply(std::string_view line) {
    DropPartialLine();
    std::string text = response_.Text().ends_with('\r') ? "\n" : "";
    ResponseAdd(text.append(OnScreen(line)) + "\r");
}

void Termulator::AddData(LineKind kind, const Converter* converter, const TerminalView& view) {
    DropPartialLine();
    ResponseRemoveDataLines();
    ResponseClearLastLine();
    ReadDataLine(kind, converter, view);
    line_ += "\r\n";
    AddLineToDataBox(line_);
}

/// Puts the values of the line in its place when they are wanted. A line that gives none, for want of a
/// calibration or by its kind, stays as it came. The supply comes with lines of few kinds.
void Termulator::ReadDataLine(LineKind kind, const Converter* converter, const TerminalView& view) {
    DataWindowState& state = link_.State;
    if (kind == LineKind::CorvaneHousekeeping) {
        DecodeVoltageOnly(line_, raw_);
        state.SupplyVoltage = raw_.Voltage;
        return;
    }
    const bool wanted = Numerical && converter != nullptr;
    if (!wanted && !CarriesSupply(kind)) return;
    const bool decoded = ParseRawLine(line_, kind, state.InstType, raw_);
    if (CarriesSupply(kind)) state.SupplyVoltage = raw_.Voltage;
    if (!wanted || !decoded || !converter->Apply(raw_, sample_)) return;
    if (sample_.Time == 0) sample_.Time = link_.Time().Now();
    const std::string values = TerminalLine(kind, state.InstType, raw_, sample_, view);
    if (values.empty()) return;
    line_ = values;
    headings_ = TerminalHeadings(kind, state.InstType, link_.CalData, view);
}

std::string Termulator::PartialLine() const {
    if (link_.State.DumpActive) return "";
    const std::string_view text = link_.State.InputText.Text().substr(0, kMaxPartialShown);
    return MayBecomeData(text, link_.State.InstState) ? "" : OnScreen(text);
}

void Termulator::ShowPartialLine() {
    const std::string text = PartialLine();
    if (!text.starts_with(partial_)) DropPartialLine();
    if (text.size() == partial_.size()) return;
    std::string added = partial_.empty() && response_.Text().ends_with('\r') ? "\n" : "";
    ResponseAdd(added.append(text, partial_.size()));
    partial_ = text;
}

void Termulator::DropPartialLine() {
    if (partial_.empty()) return;
    if (lastLineStart_ > 0)
        ResponseClearLastLine();
    else
        ResponseClear();
}

std::string Termulator::TextToSave() const {
    std::string text = response_.Text();
    if (!text.empty()) text += text.ends_with('\r') ? "\n" : "\r\n";
    if (!data_.Text().empty() && !text.empty()) text += "\r\n";
    std::string headings = headings_.empty() ? "" : headings_ + "\n";
    for (std::size_t end = headings.find('\n'); end != std::string::npos; end = headings.find('\n', end + 2))
        headings.insert(end, 1, '\r');
    return text + headings + data_.Text();
}

}  // namespace marisonde
