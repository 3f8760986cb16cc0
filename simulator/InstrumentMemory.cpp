#include <utility>

#include "simulator/FieldText.h"
#include "simulator/Instrument.h"

namespace marisonde::simulator {

namespace {

// Firmware before this ends a recording with another mark.
constexpr double kEndOfCastSince = 1.5;

int CastNumber(std::string_view argument) {
    const double number = NumberFrom(argument).value_or(0);
    return number > 0 && number < 10000 ? static_cast<int>(number) : 0;
}

}  // namespace

void Instrument::Directory(std::string_view /*argument*/) {
    ReplyText(memory_.Listing());
}

void Instrument::Download(std::string_view argument) {
    const Cast* const cast = memory_.Find(CastNumber(argument));
    if (!cast) return Reply("No cast " + std::string(Trimmed(argument)));
    // Another instrument of the same kind, put back to that day, gives the same lines each time.
    Options options = options_;
    options.form = form_;
    options.seed += static_cast<std::uint64_t>(cast->number) << 32U;
    recording_ = MakeInstrument(info_.model, options);
    castOut_ = *cast;
    castLines_ = 0;
    EnterAfter(State::Downloading, Millis{0});
}

void Instrument::LogLine() {
    if (memory_.AddLine(scratch_)) return;
    Say("!Memory full");
    EndSampling();
    if (settings_.sleepOnFull != 0 && state_ == State::Stopped) Sleep({});
}

void Instrument::SendCastLine() {
    if (castLines_ >= castOut_.lines) {
        recording_.reset();
        state_ = State::Stopped;
        return Say(Firmware() < kEndOfCastSince ? "'done" : "End of cast " + std::to_string(castOut_.number));
    }
    if (!castOut_.text.empty()) {
        Say(castOut_.text[static_cast<std::size_t>(castLines_++)]);
        due_ = std::max(now_, line_.BusyUntil());
        return;
    }
    ++castLines_;
    const auto hundredths =
        static_cast<std::int64_t>(static_cast<double>(castLines_) * castOut_.period * 100);
    const Moment moment{Nanos{hundredths * 10'000'000}, castOut_.startUnix + hundredths / 100,
                        static_cast<int>(hundredths % 100)};
    scratch_.clear();
    recording_->AppendSample(scratch_, moment);
    Say(scratch_);
    due_ = std::max(now_, line_.BusyUntil());
}

void Instrument::DeleteCast(std::string_view argument) {
    castInQuestion_ = CastNumber(argument);
    if (!memory_.Find(castInQuestion_)) return Reply("No cast " + std::string(Trimmed(argument)));
    Reply("Enter YES to delete cast " + std::to_string(castInQuestion_));
    question_ = Question::DeleteCast;
}

void Instrument::ClearLog(std::string_view /*argument*/) {
    question_ = Question::EraseMemory;
    if (info_.family == Family::Delph) return Send("Erase memory (Y/N)? ");
    Reply("!Enter YES to erase all casts");
}

bool Instrument::AnswersQuestion(std::string_view upperLine) {
    const Question question = std::exchange(question_, Question::None);
    if (question == Question::None) return false;
    if (upperLine != "YES" && upperLine != "Y") {
        Reply("Nothing changed");
        return true;
    }
    if (question == Question::EraseMemory) {
        memory_.Clear();
        Reply("Memory cleared");
    } else {
        memory_.Delete(castInQuestion_);
        Reply("Cast " + std::to_string(castInQuestion_) + " deleted");
    }
    return true;
}

}  // namespace marisonde::simulator
