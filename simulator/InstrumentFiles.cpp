#include <memory>
#include <utility>

#include "simulator/FieldText.h"
#include "simulator/Instrument.h"
#include "simulator/XmodemReceiver.h"
#include "simulator/XmodemSender.h"

namespace marisonde::simulator {

namespace {

constexpr std::string_view kCalFile = "cal.cal";
constexpr Nanos kSaveImage{500'000'000};

/// The first word of a text, which loses it.
std::string_view NextWord(std::string_view& text) {
    text = Trimmed(text);
    const auto word = text.substr(0, text.find(' '));
    text.remove_prefix(word.size());
    return word;
}

}  // namespace

std::string Instrument::CalFile() const {
    const std::string* const kept = files_.Find(kCalFile);
    if (kept) return *kept;
    return calFileMade_ ? "File not found\r\n" : CalText();
}

void Instrument::RewriteCalFile() {
    files_.Delete(kCalFile);
    calFileMade_ = false;
}

void Instrument::SendCal(std::string_view /*argument*/) {
    ReplyText(CalFile());
}

void Instrument::MakeIni(std::string_view /*argument*/) {
    constexpr std::string_view kHeading = "[Channel ";
    std::string text = CalFile();
    for (auto at = text.find(kHeading); at != std::string::npos; at = text.find(kHeading, at))
        text.erase(at + kHeading.size() - 1, 1);
    ReplyText(text);
}

void Instrument::Capture(std::string_view argument) {
    const auto name = Trimmed(argument);
    if (!KeepsFiles()) return ReplyUnknown();
    if (name.empty()) return ReplyRefused();
    files_.BeginCapture(name);
}

void Instrument::EndCapture() {
    files_.AddLine(command_);
    Reply("");
    Reply(std::to_string(files_.EndCapture()) + " lines captured");
}

void Instrument::FileCommand(std::string_view argument) {
    if (!KeepsFiles()) return ReplyUnknown();
    const std::string verb = UpperCase(NextWord(argument));
    const std::string name(NextWord(argument));
    const std::string other(NextWord(argument));
    // The file of a calibration that was never captured is there as well.
    if (!std::exchange(calFileMade_, true) && !files_.Find(kCalFile)) files_.Put(kCalFile, CalText());
    if (verb == "DEL" && !name.empty())
        Reply(files_.Delete(name) ? "Done" : "File not found");
    else if (verb == "REN" && !other.empty())
        Reply(files_.Rename(name, other) ? "Done" : "File not found");
    else
        ReplyUnknown();
}

void Instrument::SendBlock(std::string_view block) {
    TransferBlock(std::make_unique<XmodemSender>(block, now_), nullptr);
}

void Instrument::ReceiveBlock(std::function<bool(const std::string&)> store) {
    auto receiver = std::make_unique<XmodemReceiver>(now_);
    const XmodemReceiver& ended = *receiver;
    TransferBlock(std::move(receiver), [this, &ended, keep = std::move(store)] {
        const std::string block = ended.Block();
        WorkAfter(kSaveImage, [this, block, keep] {
            const bool saved = !block.empty() && keep(block);
            Reply(saved ? "Data saved" : "Data not saved");
        });
    });
}

}  // namespace marisonde::simulator
