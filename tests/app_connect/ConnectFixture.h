#pragma once

#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "TalkingLine.h"
#include "app/Connect.h"
#include "app/WindowFixture.h"

namespace marisonde {

using namespace std::chrono_literals;
using simulator::Model;

/// A line that leads to the talker of whichever port is opened.
class SwitchedLine final : public SerialLine {
  public:
    explicit SwitchedLine(std::map<int, std::unique_ptr<Talker>>& talkers) : talkers_(talkers) {}

    LineError Open(int port, int baud) override {
        Close();
        line_.reset();
        const auto found = talkers_.find(port);
        if (found == talkers_.end()) return error_ = {LineError::Kind::NotFound, "There is no such port"};
        line_ = std::make_unique<TalkingLine>(*found->second);
        return line_->Open(port, baud);
    }
    void Close() override {
        if (line_) line_->Close();
        error_ = {};
    }
    [[nodiscard]] bool IsOpen() const override { return line_ && line_->IsOpen(); }
    void SetRate(int baud) override { line_->SetRate(baud); }
    void ReadAll(std::string& out) override {
        if (line_) line_->ReadAll(out);
    }
    void Write(std::string_view bytes) override {
        if (line_) line_->Write(bytes);
    }
    [[nodiscard]] std::size_t BytesToWrite() const override { return 0; }
    [[nodiscard]] std::size_t BytesToRead() const override { return line_ ? line_->BytesToRead() : 0; }
    void DropInput() override {
        if (line_) line_->DropInput();
    }
    void SetBreak(bool) override {}
    [[nodiscard]] LineError LastError() const override { return line_ ? line_->LastError() : error_; }

  private:
    std::map<int, std::unique_ptr<Talker>>& talkers_;
    std::unique_ptr<TalkingLine> line_;
    LineError error_;
};

class TalkerPorts final : public Ports {
  public:
    std::map<int, std::unique_ptr<Talker>> talkers;
    std::map<int, std::string> serials;  ///< of adapters; "A5" unless named here

    Talker& Add(int port) { return *(talkers[port] = std::make_unique<Talker>()); }
    [[nodiscard]] std::vector<PortEntry> Present() override {
        std::vector<PortEntry> present;
        for (const auto& [port, talker] : talkers)
            if (!talker->gone) present.push_back(*Known(port));
        return present;
    }
    [[nodiscard]] std::optional<PortEntry> Known(int port) override {
        const std::string serial = serials.contains(port) ? serials[port] : "A5";
        return PortEntry{port, "/dev/tty" + std::to_string(port), "Adapter", serial};
    }
    [[nodiscard]] std::unique_ptr<SerialLine> MakeLine() override {
        return std::make_unique<SwitchedLine>(talkers);
    }
};

inline Lines LinesOf(const std::string& text) {
    std::istringstream in(text);
    Lines lines;
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        lines.push_back(line);
    }
    return lines;
}

/// The identification, version and calibration file of a simulated model, as replies. A Corvane that does not
/// know GCF is asked for its file, too.
inline void TeachModel(Talker& talker, Model model) {
    const simulator::ModelInfo& info = simulator::InfoOf(model);
    const bool corvane = info.family == simulator::Family::Corvane;
    const std::string wire(corvane ? info.code : info.name);
    talker.replies["ID"] = {"Identification:",   "Model: " + wire, "S/N: " + std::string(info.serial),
                            "Config: T0",        "ID: bench",      "Firmware: 1.85",
                            "Maximum depth: 500"};
    if (corvane)
        talker.replies["ID"].insert(talker.replies["ID"].end(), {"Clock: 07/04/11", "Logged casts: 3"});
    talker.replies["VER"] = {"Firmware version 1.85"};
    Lines file = LinesOf(simulator::MakeInstrument(model)->CalText());
    if (file.empty() || file.back() != "[End]") file.emplace_back("[End]");
    const bool tidal = info.family == simulator::Family::Tidal;
    if (tidal) file.insert(file.begin(), "DUMPCFG");
    talker.replies[tidal ? "DUMPCFG" : "sendcal"] = file;
}

/// A data window on scripted ports, its connect dialog, and time that the test moves.
class ConnectFixture : public WindowFixture {
  protected:
    ConnectFixture() {
        app.ports = &ports;
        operations = MakeOperations();
    }
    ~ConnectFixture() override { operations.reset(); }

    std::unique_ptr<Operations> MakeOperations() {
        return std::make_unique<Operations>(
            pump, [](const std::string& name, const std::string& why) { FAIL() << name << ": " << why; });
    }

    /// A window with its dialog open.
    void Open() {
        window = std::make_unique<DataWindow>(app, dialogs, ports.MakeLine());
        connector = std::make_unique<Connector>(*window);
        connector->Visible = true;
        connector->Form_Load();
    }
    /// The talker of port 3, taught a model.
    Talker& Teach(Model model) {
        Talker& talker = ports.Add(3);
        TeachModel(talker, model);
        return talker;
    }
    void PressOk() {
        operations->Start("Connect", [this](Operation& operation) -> QCoro::Task<> {
            operation_ = &operation;
            co_await connector->OK_Click(operation);
        });
    }
    void PressSearch() {
        operations->Start("Connect", [this](Operation& operation) -> QCoro::Task<> {
            operation_ = &operation;
            co_await connector->AutoDetect_Click(operation);
        });
    }
    void Tick() {
        clock.AdvanceBy(kTick);
        window->Tick();
        pump.ResumeReady();
    }
    void TickFor(Millis time) {
        for (Millis passed{0}; passed < time; passed += kTick) Tick();
    }
    /// Until nothing runs any more; false after ten minutes.
    bool Finish() {
        for (int tick = 0; tick < 12000 && operations->Count() > 0; ++tick) Tick();
        return operations->Count() == 0;
    }
    bool ConnectAndFinish() {
        PressOk();
        return Finish();
    }
    DataWindowState& State() { return window->Link.State; }
    std::vector<std::string> Questions() const {
        std::vector<std::string> texts;
        for (const Question& question : dialogs.asked) texts.push_back(question.message);
        return texts;
    }
    void ExpectNotConnected() {
        EXPECT_FALSE(State().Connected);
        EXPECT_FALSE(window->Link.Line().IsOpen());
        EXPECT_EQ(State().ConnectStage, kConnectEnded);
        EXPECT_EQ(State().PortNumber, 0);
        EXPECT_EQ(State().CurrentCommand, "");
        EXPECT_TRUE(connector->Controls().Enabled);
        EXPECT_EQ(connector->Controls().CancelCaption, "Close");
        EXPECT_EQ(connector->Controls().StatusBox, " No Connection");
    }

    TalkerPorts ports;
    Pump pump{clock};
    std::unique_ptr<DataWindow> window;
    std::unique_ptr<Connector> connector;
    std::unique_ptr<Operations> operations;
    Operation* operation_ = nullptr;
};

}  // namespace marisonde
