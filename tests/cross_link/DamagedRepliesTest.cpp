// Replies that are cut behind any line, said twice, or come through a bad cable: what the program takes from
// them is what the instrument said, or nothing.
#include "CrossBench.h"

namespace marisonde {
namespace {

using sim::Model;

/// What a command leaves behind.
struct Outcome {
    bool got = false;    ///< the reply was taken as complete
    std::string values;  ///< what was read from it
};

/// One command whose reply is read, on one model.
struct Reply {
    std::string command;
    Model model;
    std::string argument;
    Outcome (*outcome)(InstrumentLink& window);
};

std::string Text(double value) {
    return std::to_string(value) + " ";
}

Outcome Params(InstrumentLink& window) {
    const SampleParams& p = window.State.Params;
    std::string values;
    for (const double value :
         {static_cast<double>(p.SamplePeriod), static_cast<double>(p.StartDelay),
          static_cast<double>(p.SleepOnFull), static_cast<double>(p.PowerFlag),
          static_cast<double>(p.WarmupTime), static_cast<double>(p.BurstLength),
          static_cast<double>(p.BurstCycle), static_cast<double>(p.TotalDuration),
          static_cast<double>(p.BurstMode), static_cast<double>(p.ShutterEnabled),
          static_cast<double>(p.ShutterCloseTime), static_cast<double>(p.ShutterDirection),
          static_cast<double>(p.ShutterAutoOpen), static_cast<double>(p.DataFormatHex)})
        values += Text(value);
    return {window.State.ParamsReplyDone, values};
}
Outcome Fl(InstrumentLink& window) {
    return {window.State.ParamsReplyDone,
            std::to_string(window.State.FlStatus0) + " " + std::to_string(window.State.FlStatus1)};
}
Outcome Identity(InstrumentLink& window) {
    const DataWindowState& state = window.State;
    return {state.GotIdReply,
            state.InstModelName + " " + state.InstSerial + " " + state.InstConfig + " " + state.InstId};
}
Outcome Version(InstrumentLink& window) {
    return {window.State.FirmwareVersion != "0", window.State.FirmwareVersion};
}
Outcome Clock(InstrumentLink& window) {
    // In hours: each instrument of the test starts with its clock anew, while the computer's runs on.
    return {window.State.GotTimeReply, std::to_string(std::lround(window.State.InstClockOffset * 24))};
}
Outcome Global(InstrumentLink& window) {
    const CalibrationDataClass& cal = window.CalData;
    return {window.State.GotGcfReply, cal.Serial + " " + cal.Config + " " + Text(cal.MaxDepth) +
                                          Text(cal.CalTemp) + Text(cal.DepthOff) + Text(cal.DepthCal) +
                                          Text(cal.CalTime)};
}
Outcome Stored(InstrumentLink& window) {
    return {window.State.GotCclReply || window.State.GotGcfReply, ""};
}
Outcome Deletion(InstrumentLink& window) {
    return {window.State.InstState == InstStateCode::NoData, ""};
}

const std::vector<Reply> kReplies{
    {"GETSAMPLEPARAMS", Model::Corvane6, "", Params},
    {"GETSAMPLEPARAMS", Model::Corvane4, "", Params},
    {"GETSAMPLEPARAMS", Model::LTidal, "", Params},
    {"GETSAMPLEPARAMS", Model::Delph4, "", Params},
    {"FL", Model::Corvane6, "", Fl},
    {"ID", Model::Corvane6, "", Identity},
    {"ID", Model::NTidal, "", Identity},
    {"ID", Model::Fathom2, "", Identity},
    {"VER", Model::Delph2, "", Version},
    {"GETTIME", Model::LTidal, "", Clock},
    {"SETDATE", Model::Corvane2, "07/05/11 12:00:00", Clock},
    {"GCF", Model::Corvane4, "", Global},
    {"STORECCL", Model::Corvane4, "", Stored},
    {"STOREGCF", Model::Corvane4, "", Stored},
    {"DELCAST", Model::Corvane4, ", 2", Deletion},
    {"DELCAST", Model::Delph4, ", 2", Deletion},
};

class DamagedReply : public CrossBench, public testing::WithParamInterface<std::size_t> {
  protected:
    [[nodiscard]] static const Reply& Row() { return kReplies[GetParam()]; }
    /// Sends the command to an instrument that answers as told and gives what came of it.
    Outcome Ask(const sim::Options& options) {
        window.PendingOutput.clear();
        Plug(Row().model, options);
        Open();
        state.Params = {};
        state.FlStatus0 = state.FlStatus1 = -1;
        state.ParamsReplyDone = state.GotIdReply = state.GotTimeReply = false;
        state.GotGcfReply = state.GotCclReply = false;
        state.FirmwareVersion = "0";
        state.InstModelName = state.InstSerial = state.InstId = "";
        state.InstConfig = instrument->Info().config;  // it tells whether a shutter ends the reply
        state.InstState = InstStateCode::Stopped;
        window.CalData.Clear();
        window.CalData.InstType = state.InstType;
        SendCommand(Row().command, window, Row().argument);
        TickFor(8s);
        return Row().outcome(window);
    }
    Outcome Whole() {
        const Outcome whole = Ask({.powerOn = sim::PowerOn::Stopped});
        EXPECT_TRUE(whole.got) << Row().command;
        return whole;
    }
};

INSTANTIATE_TEST_SUITE_P(All, DamagedReply, testing::Range<std::size_t>(0, kReplies.size()));

TEST_P(DamagedReply, CutBehindAnyLineGivesAllOrNothing) {
    const Outcome whole = Whole();
    int complete = 0;
    for (int lines = 0; lines < 20; ++lines) {
        sim::Options options{.powerOn = sim::PowerOn::Stopped};
        options.replies.cutAfterLines = lines;
        const Outcome cut = Ask(options);
        if (lines == 0) {
            EXPECT_FALSE(cut.got) << Row().command;
        }
        if (!cut.got) continue;
        ++complete;
        EXPECT_EQ(cut.values, whole.values) << Row().command << " cut behind line " << lines;
    }
    EXPECT_GT(complete, 0) << "no reply is this long";
}

TEST_P(DamagedReply, SaidTwiceItIsTheSame) {
    const Outcome whole = Whole();
    sim::Options options{.powerOn = sim::PowerOn::Stopped};
    options.replies.doubledLines = true;
    const Outcome doubled = Ask(options);
    if (doubled.got) {
        EXPECT_EQ(doubled.values, whole.values) << Row().command;
    }
}

TEST_P(DamagedReply, ABadCableHangsNothingAndTheNextAnswerIsRead) {
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
        sim::Options options{.powerOn = sim::PowerOn::Stopped};
        options.seed = seed;
        options.faults.flipOneIn = 100;
        Ask(options);
        EXPECT_LE(state.ResponseLineCount, kMaxResponseLines);
        EXPECT_TRUE(window.PendingOutput.empty());
    }
    Whole();
}

}  // namespace
}  // namespace marisonde
