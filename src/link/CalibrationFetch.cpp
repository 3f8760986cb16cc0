#include "link/CalibrationFetch.h"

#include <algorithm>
#include <span>
#include <utility>

#include "link/BinaryInput.h"
#include "link/Commands.h"
#include "link/ReplyDamage.h"
#include "link/ReplyText.h"

namespace marisonde {

namespace {

bool Stopped(const Operation& operation, const InstrumentLink& window) {
    return operation.Cancelled() || window.State.ConnectStage == kConnectEnded;
}

bool Silent(const InstrumentLink& window) {
    return window.Time().Steady() - window.State.LastInputTime >= kFetchSilence;
}

/// Directs the replies of one fetch to its object, and leaves the window ready for other commands on every
/// way out.
class FetchScope {
  public:
    FetchScope(InstrumentLink& window, const FetchRequest& request)
        : window_(window), target_(request.target), calReady_(window.State.CalReady) {
        window.ReplyCalData = target_;
        window.State.CalReady = false;
        Cal().Clear();
        // Dates are counted from a day that depends on the model, so it must be known before any line is
        // read.
        Cal().InstType = window.State.InstType;
    }
    ~FetchScope() {
        window_.ReplyCalData = nullptr;
        window_.State.CurrentCommand.clear();
        EndDump(window_.State);
        // A calibration read back for comparison says nothing about the window's own.
        window_.State.CalReady = target_ ? calReady_ : arrived_;
        if (!arrived_) Cal().Clear();
    }
    FetchScope(const FetchScope&) = delete;
    FetchScope& operator=(const FetchScope&) = delete;

    CalibrationDataClass& Cal() { return target_ ? *target_ : window_.CalData; }
    void Arrived() { arrived_ = true; }

  private:
    InstrumentLink& window_;
    CalibrationDataClass* target_;
    bool calReady_;
    bool arrived_ = false;
};

void ShowProgress(const FetchRequest& request, const std::string& title, const std::string& text) {
    if (request.onProgress) request.onProgress(title, text);
}

/// Waits for the flag. Silent when `limit` passes first, or when nothing comes for kFetchSilence.
QCoro::Task<FetchOutcome> AwaitReply(Operation& operation, InstrumentLink& window, const bool& flag,
                                     Millis limit) {
    const auto over = [&] {
        return flag || Stopped(operation, window) || window.LineBroken() || Silent(window);
    };
    co_await operation.Until(over, limit);
    if (Stopped(operation, window)) co_return FetchOutcome::Cancelled;
    if (flag) co_return FetchOutcome::Arrived;
    co_return window.LineBroken() ? FetchOutcome::BrokenLine : FetchOutcome::Silent;
}

bool IsModel(InstTypeCode type) {
    return type != InstTypeCode::Unknown && type != InstTypeCode::NoSuchName;
}

bool SameFamily(InstTypeCode a, InstTypeCode b) {
    return (IsCorvaneFamily(a) && IsCorvaneFamily(b)) || (IsTidalFamily(a) && IsTidalFamily(b)) ||
           (IsDelphFamily(a) && IsDelphFamily(b));
}

/// A calibration must be of the family that the instrument has said it is of; any, when it is not known.
bool FitsInstrument(InstTypeCode cal, InstTypeCode instrument) {
    return IsModel(instrument) ? SameFamily(cal, instrument) : IsModel(cal);
}

void Complete(FetchScope& scope, const FetchRequest& request) {
    CalibrationDataClass& cal = scope.Cal();
    cal.NameTidalChannels();
    cal.InferSharedChannels();
    cal.ChangedItems = 0;
    std::vector<std::string> messages = cal.CheckAndUpdateAll(request.sigma, request.water);
    if (request.messages) std::move(messages.begin(), messages.end(), std::back_inserter(*request.messages));
    scope.Arrived();
}

bool ChannelReplyIsGood(DataWindowState& state, int channel) {
    return state.ReplyChannel == channel && !ReplyLooksDamaged(ReplyLines(state));
}

/// One command about one channel, from 0.
QCoro::Task<FetchOutcome> FetchChannel(Operation& operation, InstrumentLink& window, std::string command,
                                       int channel, const bool& flag) {
    DataWindowState& state = window.State;
    state.ReplyChannel = channel;
    SendCommandNow(command, window, std::to_string(channel + 1));
    const FetchOutcome outcome = co_await AwaitReply(operation, window, flag, kNoLimit);
    if (outcome == FetchOutcome::Arrived && !ChannelReplyIsGood(state, channel))
        co_return FetchOutcome::Damaged;
    co_return outcome;
}

QCoro::Task<FetchOutcome> FetchGlobal(Operation& operation, InstrumentLink& window, InstTypeCode& type) {
    const InstTypeCode expected = window.State.InstType;
    SendCommandNow("gcf", window);
    const FetchOutcome outcome = co_await AwaitReply(operation, window, window.State.GotGcfReply, kGcfAnswer);
    if (outcome != FetchOutcome::Arrived) co_return outcome;
    type = window.ReplyCal().InstType;
    // The number of channels hangs on the model: a neighbour of the family would leave some out.
    const bool fits = IsModel(expected) ? type == expected : IsCorvaneFamily(type);
    co_return fits && !ReplyLooksDamaged(ReplyLines(window.State)) ? FetchOutcome::Arrived
                                                                   : FetchOutcome::Damaged;
}

QCoro::Task<FetchOutcome> FetchChannels(Operation& operation, InstrumentLink& window,
                                        const FetchRequest& request, InstTypeCode type) {
    const int count = ChannelSlots(type);
    for (int channel = 0; channel < count; ++channel) {
        const std::string word = request.comparing ? " Checking channel " : " Loading channel ";
        ShowProgress(request, "", word + std::to_string(channel + 1));
        const FetchOutcome outcome =
            co_await FetchChannel(operation, window, "ccl", channel, window.State.GotCclReply);
        if (outcome != FetchOutcome::Arrived) co_return outcome;
        if (type == InstTypeCode::Corvane6) continue;
        const FetchOutcome factors =
            co_await FetchChannel(operation, window, "CCF", channel, window.State.GotCcfReply);
        if (factors != FetchOutcome::Arrived) co_return factors;
    }
    co_return FetchOutcome::Arrived;
}

QCoro::Task<FetchOutcome> FetchByChannels(Operation& operation, InstrumentLink& window,
                                          const FetchRequest& request) {
    FetchScope scope(window, request);
    ShowProgress(request, "", "Checking global data");
    InstTypeCode type = InstTypeCode::Unknown;
    FetchOutcome outcome = co_await FetchGlobal(operation, window, type);
    if (outcome == FetchOutcome::Arrived) outcome = co_await FetchChannels(operation, window, request, type);
    if (outcome == FetchOutcome::Arrived) Complete(scope, request);
    co_return outcome;
}

}  // namespace

QCoro::Task<FetchOutcome> LoadCalMultiC(Operation& operation, InstrumentLink& window, FetchRequest request) {
    FetchScope scope(window, request);
    DataWindowState& state = window.State;
    ShowProgress(request, " Loading Calibration", "Loading calibration");
    SendCommandNow("sendcal", window);
    state.CurrentCommand = "MULTICCAL";
    FetchOutcome outcome = co_await AwaitReply(operation, window, state.CalReady, kNoLimit);
    if (outcome != FetchOutcome::Arrived) co_return outcome;
    if (CalTextLooksDamaged(state.CalLines) || !FitsInstrument(scope.Cal().InstType, state.InstType))
        co_return FetchOutcome::Damaged;
    Complete(scope, request);
    co_return outcome;
}

QCoro::Task<FetchOutcome> LoadCalGcfCcl(Operation& operation, InstrumentLink& window, FetchRequest request) {
    window.State.GotGcfReply = false;
    const FetchOutcome outcome = co_await FetchByChannels(operation, window, request);
    const bool noGcf = outcome == FetchOutcome::Silent && !window.State.GotGcfReply;
    if (!noGcf) co_return outcome;
    co_return co_await LoadCalMultiC(operation, window, request);
}

QCoro::Task<FetchOutcome> LoadCalDump(Operation& operation, InstrumentLink& window, FetchRequest request) {
    FetchScope scope(window, request);
    DataWindowState& state = window.State;
    ShowProgress(request, " Loading Calibration", "");
    SendCommandNow("DUMPCFG", window);
    FetchOutcome outcome = co_await AwaitReply(operation, window, state.GotIniReply, kNoLimit);
    if (outcome != FetchOutcome::Arrived) co_return outcome;
    if (CalTextLooksDamaged(state.CalLines) || !FitsInstrument(scope.Cal().InstType, state.InstType))
        co_return FetchOutcome::Damaged;
    // Keeps the unit awake.
    window.QueueOutput("power1\r");
    Complete(scope, request);
    co_return outcome;
}

QCoro::Task<FetchOutcome> LoadCalFromInstrument(Operation& operation, InstrumentLink& window,
                                                FetchRequest request) {
    const InstTypeCode type = window.State.InstType;
    if (IsCorvaneFamily(type)) co_return co_await LoadCalGcfCcl(operation, window, request);
    if (IsTidalFamily(type)) co_return co_await LoadCalDump(operation, window, request);
    co_return co_await LoadCalMultiC(operation, window, request);
}

}  // namespace marisonde
