#include <chrono>
#include <fstream>
#include <iostream>
#include <memory>

#include "simulator/Instrument.h"
#include "simulator/SeenAtRate.h"
#include "simulator/program/Arguments.h"
#include "simulator/program/PseudoTerminal.h"

namespace {

using namespace marisonde::simulator;

constexpr Millis kTurn{10};

/// One instrument on its device.
class Berth {
  public:
    Berth(std::unique_ptr<Instrument> instrument, PseudoTerminal terminal)
        : instrument_(std::move(instrument)), terminal_(std::move(terminal)) {}
    ~Berth() { Unlink(); }
    Berth(Berth&&) = default;
    Berth& operator=(Berth&&) = delete;
    Berth(const Berth&) = delete;
    Berth& operator=(const Berth&) = delete;

    /// The reason when the link cannot be made.
    std::optional<std::string> Link(const std::string& link) {
        auto reason = MakeLink(terminal_.Path(), link);
        if (!reason) link_ = link;
        return reason;
    }

    /// False when the file cannot be written.
    [[nodiscard]] bool WriteCal(const std::string& path) const {
        std::ofstream file(path, std::ios::binary);
        file << instrument_->CalText();
        file.close();
        return !file.fail();
    }

    [[nodiscard]] std::string Device() const { return terminal_.Path(); }
    [[nodiscard]] const std::string& LinkedAs() const { return link_; }
    [[nodiscard]] std::string_view ModelName() const { return instrument_->Info().name; }

    /// Carries bytes both ways. Without a peer what the instrument says is lost.
    void Turn(Millis now) {
        if (instrument_->Vanished(now)) return Vanish();
        const bool present = terminal_.PeerPresent();
        const int ours = instrument_->BaudRate();
        const int theirs = present ? terminal_.PeerBaud() : 0;
        const std::string heard = terminal_.Read();
        if (theirs > 0 && !heard.empty()) instrument_->Receive(SeenAtRate(heard, theirs, ours), now);
        const std::string said = instrument_->TakeOutput(now);
        if (theirs > 0 && !said.empty()) terminal_.Write(SeenAtRate(said, instrument_->SentRate(), theirs));
    }

  private:
    void Vanish() {
        Unlink();
        terminal_.Close();
    }
    void Unlink() {
        if (!link_.empty()) RemoveLink(terminal_.Path(), link_);
        link_.clear();
    }

    std::unique_ptr<Instrument> instrument_;
    PseudoTerminal terminal_;
    std::string link_;
};

/// Opens a device for each model. False, with the reason on the error output, when one cannot be had.
bool OpenBerths(const Arguments& arguments, std::vector<Berth>& berths) {
    for (std::size_t i = 0; i < arguments.models.size(); ++i) {
        Options options = arguments.options;
        options.seed += i;
        options.startDate = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
        std::string error;
        auto terminal = PseudoTerminal::Open(options.baud, error);
        if (!terminal) {
            std::cerr << "marisonde-simulator: no pseudo-terminal: " << error << "\n";
            return false;
        }
        Berth& berth =
            berths.emplace_back(MakeInstrument(arguments.models[i], options), std::move(*terminal));
        const std::string cal = NumberedPath(arguments.cal, i, arguments.models.size());
        if (!arguments.cal.empty() && !berth.WriteCal(cal)) {
            std::cerr << "marisonde-simulator: cannot write the calibration " << cal << "\n";
            return false;
        }
        if (arguments.link.empty()) continue;
        const std::string link = NumberedPath(arguments.link, i, arguments.models.size());
        if (const auto reason = berth.Link(link)) {
            std::cerr << "marisonde-simulator: cannot make the link " << link << ": " << *reason << "\n";
            return false;
        }
    }
    return true;
}

void Serve(std::vector<Berth>& berths) {
    const auto begin = std::chrono::steady_clock::now();
    while (!StopAsked()) {
        const auto now = std::chrono::duration_cast<Millis>(std::chrono::steady_clock::now() - begin);
        for (Berth& berth : berths) berth.Turn(now);
        Pause(kTurn);
    }
}

int Run(const std::vector<std::string_view>& words) {
    const Arguments arguments = ReadArguments(words);
    if (!arguments.error.empty()) {
        std::cerr << "marisonde-simulator: " << arguments.error << "\nTry marisonde-simulator --help.\n";
        return 2;
    }
    if (arguments.help || arguments.version) {
        std::cout << (arguments.help ? HelpText() : "marisonde-simulator " MARISONDE_VERSION "\n");
        return 0;
    }
    WatchSignals();
    std::vector<Berth> berths;
    if (!OpenBerths(arguments, berths)) return 1;
    for (const Berth& berth : berths) {
        std::cout << berth.ModelName() << " " << berth.Device();
        if (!berth.LinkedAs().empty()) std::cout << " " << berth.LinkedAs();
        std::cout << "\n";
    }
    std::cout.flush();
    Serve(berths);
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    return Run({argv + 1, argv + argc});
}
