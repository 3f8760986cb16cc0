#include "app/Connect.h"

#include <algorithm>

#include "common/Numbers.h"
#include "link/PortRemedy.h"

namespace marisonde {

namespace {

constexpr std::string_view kNoInstrument = "No instrument was detected.";
constexpr std::string_view kSecondAttempt =
    "  If an instrument is connected but asleep, it may connect on a second attempt.  If not, check your "
    "connections and be sure the port and baud rate are correct.";

std::string PortText(const PortEntry& entry) {
    std::string text = "Com " + std::to_string(entry.number);
    const char* separator = " - ";
    for (const std::string* part : {&entry.device, &entry.description, &entry.serial}) {
        if (part->empty()) continue;
        text += separator + *part;
        separator = ", ";
    }
    return text;
}

std::string Behind(const std::string& text, const std::string& remedy) {
    return remedy.empty() ? text : text + "  " + remedy;
}

bool CanBeChosen(const std::string& model) {
    return InstTypeFromName(model) < InstTypeCode::Unknown;
}

bool IsOffered(int baud) {
    return std::find(kInstrumentRates.begin(), kInstrumentRates.end(), baud) != kInstrumentRates.end();
}

}  // namespace

void Connector::Form_Load() {
    const Preferences& prefs = window_.App().prefs;
    State().ConnectStage = kConnectEnded;
    controls_ = {};
    connected_ = false;
    offered_ = false;
    unidentified_ = {};
    ports_.clear();
    Ports& ports = *window_.App().ports;
    for (const PortEntry& entry : ports.Present()) {
        const bool own = window_.Link.Line().IsOpen() && entry.number == State().PortNumber;
        if (own || PortAvailable(ports, entry.number)) ports_.push_back(entry);
    }
    std::stable_partition(ports_.begin(), ports_.end(),
                          [&](const PortEntry& entry) { return entry.number == prefs.Port; });
    for (const PortEntry& entry : ports_) {
        controls_.CommPort_Box.push_back({entry.number, PortText(entry)});
        if (entry.number == prefs.Port) controls_.Port = entry.number;
    }
    // With one port there is nothing to choose.
    if (ports_.size() == 1) controls_.Port = ports_.front().number;
    controls_.Baud = IsOffered(prefs.Baud) ? prefs.Baud : 0;
    controls_.UploadCal_Check = prefs.LoadCal;
    controls_.Open = true;
    SetInstrumentTypeBox();
    Update_Status();
    controls_.CancelCaption = "Cancel";
    if (OnChanged) OnChanged();
}

void Connector::Form_Unload() {
    if (!controls_.Open) return;
    controls_.Open = false;
    if (connected_) {
        Preferences& prefs = window_.App().prefs;
        prefs.Port = State().PortNumber;
        prefs.Baud = State().BaudRate;
        prefs.LoadCal = controls_.UploadCal_Check;
        Settings& settings = window_.App().settings;
        settings.SaveSetting("Connection", "Port", std::to_string(prefs.Port));
        settings.SaveSetting("Connection", "Baud", std::to_string(prefs.Baud));
        settings.SaveSetting("Connection", "LoadCal", prefs.LoadCal ? "1" : "0");
    }
    if (OnChanged) OnChanged();
}

void Connector::Update_Status() {
    const bool running = State().ConnectStage == kConnecting;
    controls_.Enabled = !running;
    controls_.CancelCaption = running ? "Stop" : "Close";
    if (State().Connected) {
        controls_.Baud = State().BaudRate;
        controls_.Port = State().PortNumber;
        controls_.StatusBox = State().InstModelName + " connected";
    } else {
        controls_.StatusBox = window_.Link.Line().IsOpen() ? " Port open, no instrument" : " No Connection";
    }
    if (OnChanged) OnChanged();
}

void Connector::SetInstrumentTypeBox() {
    const InstTypeCode type = State().InstType;
    if (InstTypeName(type) != InstTypeName(InstTypeCode::Unknown)) controls_.Instrument_Box = type;
}

void Connector::Status(const std::string& text) {
    controls_.StatusBox = text;
    if (OnChanged) OnChanged();
}

void Connector::NoteLook(const ConnectionTry& look) {
    lastLook_ = look;
    if (look.finding == Finding::Cancelled) return;
    controls_.SearchList.push_back("Com " + std::to_string(look.port) + ", " + std::to_string(look.baud) +
                                   ": " + FindingText(look));
    if (look.Found()) SetInstrumentTypeBox();
    if (look.finding == Finding::Unidentified) OfferUnidentified(look);
    if (OnChanged) OnChanged();
}

/// When its model can be chosen here all the same, only Connect is left to press.
void Connector::OfferUnidentified(const ConnectionTry& look) {
    WithdrawOffer();
    unidentified_ = look;
    controls_.Port = look.port;
    controls_.Baud = look.baud;
    if (!CanBeChosen(look.model)) return;
    controls_.Instrument_Box = InstTypeFromName(look.model);
    offered_ = !controls_.NoQueryCheck;
    controls_.NoQueryCheck = true;
}

/// What was found at one port and rate says nothing about another.
void Connector::WithdrawOffer() {
    if (!offered_) return;
    offered_ = false;
    controls_.NoQueryCheck = false;
    if (OnChanged) OnChanged();
}

std::string Connector::UnidentifiedText() const {
    if (unidentified_.finding != Finding::Unidentified) return "";
    const std::string text = "On port " + std::to_string(unidentified_.port) + " at " +
                             std::to_string(unidentified_.baud) +
                             " baud an instrument answers that calls itself " + unidentified_.model +
                             ".  It can be opened without identifying it";
    if (!Visible) return text + ".";
    return text + (CanBeChosen(unidentified_.model)
                       ? ": its port, rate and model are chosen now, so press Connect."
                       : ": choose its model, tick \"Open port without identifying instrument\" and "
                         "press Connect.");
}

void Connector::SelectPort(int port) {
    controls_.Port = port;
    WithdrawOffer();
}

void Connector::SelectBaud(int baud) {
    controls_.Baud = baud;
    WithdrawOffer();
}

void Connector::CheckNoQuery(bool on) {
    controls_.NoQueryCheck = on;
    offered_ = false;
}

ConnectNotes Connector::Notes() {
    return {[this](const std::string& text) { Status(text); },
            [this](const ConnectionTry& look) { NoteLook(look); }};
}

std::string Connector::Device(int port) const {
    const auto entry = std::find_if(ports_.begin(), ports_.end(),
                                    [port](const PortEntry& known) { return known.number == port; });
    return entry == ports_.end() ? "port " + std::to_string(port) : entry->device;
}

QCoro::Task<> Connector::OK_Click(Operation& operation) {
    if (controls_.Port == 0 || controls_.Baud == 0) {
        window_.Ask().ShowError("Please select a Com Port and Baud Rate, or click Search");
        co_return;
    }
    if (!controls_.UploadCal_Check && window_.Link.CalData.SourceFile().empty()) {
        window_.Ask().ShowError(NoCalibrationText());
        co_return;
    }
    if (controls_.NoQueryCheck)
        OpenWithoutIdentifying();
    else
        co_await DoConnect(operation, false);
}

QCoro::Task<> Connector::AutoDetect_Click(Operation& operation) {
    co_await DoConnect(operation, true);
}

void Connector::Cancel_Click() {
    if (State().ConnectStage != kConnecting) {
        Form_Unload();
        return;
    }
    State().ConnectStage = kConnectEnded;
    controls_.CancelCaption = "Close";
    if (OnChanged) OnChanged();
}

void Connector::OpenWithoutIdentifying() {
    const int port = controls_.Port;
    State().CancelRequest = kCancelIdle;
    const std::string error = window_.OpenWithoutQuery(port, controls_.Baud, controls_.Instrument_Box);
    connected_ = error.empty();
    if (connected_) {
        State().ConnectStage = 0;
    } else {
        window_.Ask().ShowError(Behind(error, PortRemedy(window_.Link.Line().LastError(), Device(port))));
    }
    Update_Status();
    if (window_.OnInstrumentChanged) window_.OnInstrumentChanged();
}

void Connector::BeginAttempt() {
    connected_ = false;
    State().ConnectStage = kConnecting;
    State().CancelRequest = kCancelIdle;
    State().Connected = false;
    State().InstType = InstTypeCode::Unknown;
    controls_.SearchList.clear();
    WithdrawOffer();
    unidentified_ = {};
    Update_Status();
    Status("Connecting");
}

QCoro::Task<bool> Connector::Find(Operation& operation, bool search) {
    const ConnectNotes notes = Notes();
    if (search) {
        lastLook_ = co_await SearchPorts(operation, window_.Link, ports_, notes);
    } else {
        const int port = controls_.Port;
        const int baud = controls_.Baud;
        lastLook_ = co_await TryConnection(operation, window_.Link, port, baud, notes);
    }
    co_return lastLook_.Found();
}

QCoro::Task<> Connector::DoConnect(Operation& operation, bool search) {
    for (bool again = true; again;) {
        BeginAttempt();
        const bool found = co_await Find(operation, search);
        if (!found) {
            NotConnected(search);
            co_return;
        }
        co_await FinishConnection(operation);
        if (Stopped(operation)) {
            GiveUp();
            co_return;
        }
        if (State().CalReady) {
            if (!State().Connected) NotConnected(search);
            if (!State().Connected) co_return;
            State().ConnectStage = 0;
            connected_ = true;
            Update_Status();
            if (window_.OnInstrumentChanged) window_.OnInstrumentChanged();
            Form_Unload();
            co_return;
        }
        again = co_await AskTryAgain(operation);
    }
    GiveUp();
}

QCoro::Task<bool> Connector::AskTryAgain(Operation& operation) {
    if (OnBeep) OnBeep();
    const Question question{"Some calibration information did not load properly.  Try again?", "Yes",
                            "Cancel", ""};
    const Choice choice = co_await window_.Ask().ShowChoiceDialog(operation, question);
    co_return choice == Choice::First && !Stopped(operation);
}

/// What the user is told when nothing was found; empty when nothing is to be said.
std::string Connector::NotConnectedText(bool search) {
    if (search) return Behind(std::string(kNoInstrument), UnidentifiedText());
    const std::string port = "Port " + std::to_string(lastLook_.port);
    const std::string remedy = PortRemedy(lastLook_.error, Device(lastLook_.port));
    if (lastLook_.finding == Finding::StoppedWorking)
        return Behind(port + " has stopped working: " + lastLook_.error.text + ".", remedy);
    if (lastLook_.error) return Behind(port + " could not be opened. " + lastLook_.error.text, remedy);
    return Visible ? Behind(std::string(kNoInstrument).append(kSecondAttempt), UnidentifiedText()) : "";
}

void Connector::NotConnected(bool search) {
    if (State().ConnectStage != kConnectEnded) {
        const std::string text = NotConnectedText(search);
        if (!text.empty()) window_.Ask().ShowError(text);
    }
    GiveUp();
    if (Visible && OnFocusOk) OnFocusOk();
}

void Connector::GiveUp() {
    window_.Link.ClosePort();
    State().ConnectStage = kConnectEnded;
    Update_Status();
    if (window_.OnInstrumentChanged) window_.OnInstrumentChanged();
}

}  // namespace marisonde
