#include <cmath>
#include <limits>
#include <utility>

#include "app/Connect.h"
#include "app/SelectCal.h"
#include "common/ConversionUtils.h"
#include "common/DateText.h"
#include "common/Numbers.h"
#include "link/CalibrationFetch.h"
#include "link/ReplyText.h"

namespace marisonde {

namespace {

bool ShutterMoves(InstStateCode state) {
    return state == InstStateCode::OpeningShutter || state == InstStateCode::ClosingShutter;
}

}  // namespace

std::string CalReminderText(double ageDays) {
    return "The calibration stored in this instrument is " + FixedText(ageDays, 0) +
           " days old.  Venmark recommends calibration every six months or 200 hours of operation.";
}

double RemindDate(const Settings& settings, std::string_view serial) {
    return WrittenDate(settings.GetSetting(serial, "RemindDate")).value_or(0);
}

void SaveRemindDate(Settings& settings, std::string_view serial, double date) {
    const CivilDate day = CivilFromDate(date);
    settings.SaveSetting(serial, "RemindDate",
                         TwoDigits(day.month) + "/" + TwoDigits(day.day) + "/" + std::to_string(day.year));
}

QCoro::Task<> Connector::FinishConnection(Operation& operation) {
    Status(" Connecting to " + State().InstModelName);
    const bool stopped = co_await StopInstrument(operation);
    if (!stopped) co_return;
    if (controls_.UploadCal_Check)
        co_await FetchCalibration(operation);
    else
        co_await CompareWithLoaded(operation);
    if (window_.OnInstrumentChanged) window_.OnInstrumentChanged();
}

/// An instrument listens to questions about its calibration when it neither samples nor moves its shutter.
QCoro::Task<bool> Connector::StopInstrument(Operation& operation) {
    InstrumentLink& link = window_.Link;
    link.QueueOutput("STOP\r");
    const auto ended = [&] { return Stopped(operation) || link.LineBroken(); };
    if (IsCorvaneFamily(State().InstType) && HasShutter(link.Identity())) {
        co_await operation.Until(ended, kShutterNotice);
        if (!ended() && ShutterMoves(State().InstState)) Status("Waiting for shutter");
        const auto still = [&] { return ended() || !ShutterMoves(State().InstState); };
        co_await operation.Until(still);
    }
    const auto sent = [&] { return ended() || link.PendingOutput.empty(); };
    co_await operation.Until(sent);
    if (link.LineBroken() && !Stopped(operation)) {
        window_.Ask().ShowError(window_.LineLostText());
        RefuseConnection();
    }
    co_return !ended();
}

/// The connection ends here; whoever calls has said why, or the window says it.
void Connector::RefuseConnection() {
    State().Connected = false;
    State().ConnectStage = kConnectEnded;
}

QCoro::Task<> Connector::CompareWithLoaded(Operation& operation) {
    if (window_.Link.CalData.InstType != State().InstType) {
        window_.Ask().ShowError(window_.NoFittingCalibration(State().InstType));
        RefuseConnection();
        Update_Status();
        co_return;
    }
    if (!SerialMatches(State().InstSerial, window_.Link.CalData.Serial)) co_await AskOtherSerial(operation);
}

QCoro::Task<> Connector::AskOtherSerial(Operation& operation) {
    const Question question{"The connected instrument's serial number (" + State().InstSerial +
                                ") does not match the currently loaded calibration (" +
                                window_.Link.CalData.Serial +
                                ").  Do you wish to select a different calibration?",
                            "Select Cal", "Use Current", ""};
    const Choice choice = co_await window_.Ask().ShowChoiceDialog(operation, question);
    if (choice != Choice::First || Stopped(operation)) co_return;
    const bool selected = co_await SelectCalCommand(operation, window_);
    if (!selected) State().CancelRequest = kCancelStop;
    State().Connected = false;
    if (!selected) State().ConnectStage = kConnectEnded;
}

void Connector::RefuseOldFirmware() {
    window_.Ask().ShowError(
        "The detected instrument has older firmware that does not support internal calibration data.  Use "
        "the Select Calibration File command under the File menu to load a suitable calibration.");
    RefuseConnection();
    controls_.UploadCal_Check = false;
    Update_Status();
}

QCoro::Task<> Connector::FetchCalibration(Operation& operation) {
    if (!StoresCalibration(State().InstType, State().InstSerial)) {
        RefuseOldFirmware();
        co_return;
    }
    State().CalReady = false;
    std::vector<std::string> messages;
    FetchRequest request{window_.App().sigma, window_.App().pureWater};
    request.messages = &messages;
    request.onProgress = [this](const std::string&, const std::string& text) {
        if (!text.empty()) Status(text);
    };
    const FetchOutcome outcome = co_await LoadCalFromInstrument(operation, window_.Link, request);
    if (Stopped(operation)) co_return;
    if (outcome != FetchOutcome::Arrived) co_return;
    for (const std::string& message : messages) window_.Ask().ShowError(message);
    co_await RemindOfAge(operation);
    if (!Stopped(operation)) KeepFetched();
}

QCoro::Task<> Connector::RemindOfAge(Operation& operation) {
    const double made = window_.Link.CalData.CalTime;
    const double now = window_.App().clock.Now();
    if (made == 0 || now <= made + kCalibrationAgeDays) co_return;
    const std::string serial = State().InstSerial;
    Settings& settings = window_.App().settings;
    if (now <= RemindDate(settings, serial)) co_return;
    const std::string text = CalReminderText(now - made);
    const int days = co_await window_.Ask().ShowCalReminder(operation, serial, text);
    if (days > 0) SaveRemindDate(settings, serial, now + days);
}

void Connector::KeepFetched() {
    CalibrationDataClass& cal = window_.Link.CalData;
    State().DataArrived = false;
    cal.Serial = State().InstSerial;
    cal.Config = State().InstConfig;
    cal.Label = State().InstId;
    AppContext& app = window_.App();
    const auto path = app.temporaryFolder / ("temp" + std::to_string(app.instanceNumber) + ".cal");
    const CalFileResult saved = cal.SaveAsFile(path, app.pureWater);
    if (saved.ok)
        app.prefs.CalFile = path.string();
    else
        window_.Ask().ShowError(saved.error);
    window_.ShowCalibration();
}

}  // namespace marisonde
