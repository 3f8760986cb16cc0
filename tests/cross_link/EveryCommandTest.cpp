// Every row of the command table, sent as the program sends it: what the instruments say to it.
#include <set>

#include "CrossBench.h"
#include "link/CommandTable.h"

namespace marisonde {
namespace {

using sim::Model;

/// What is given with a command, what comes first, and a word of the answer.
struct Example {
    std::string name;
    std::uint8_t models;  ///< those that know the command
    std::string argument;
    std::string before;  ///< queued first
    std::string answer;  ///< empty: nothing goes out, or no answer is due
};

const std::vector<Example> kExamples{
    {"DELCAST", Models::All, ", 3", "", "delete cast 3"},
    {"STORECCL", Models::Corvane, "", "", "Storing channel data..OK"},
    {"STORECCL", Models::NotCorvane, "", "", ""},
    {"STOREGCF", Models::Corvane, "", "", "Storing global data..OK"},
    {"STOREGCF", Models::NotCorvane, "", "", ""},
    {"FL", Models::Corvane, "", "", "FL status: 0"},
    {"FL1", Models::Corvane, "1", "", "FL status: 1"},
    {"FL2", Models::Corvane, "1", "", "FL status: 1"},
    {"SETGAIN", Models::Corvane, "3", "", "Gain: 3"},
    {"SETGAIN", Models::Tidal, "3", "", "Gain: 3"},
    {"GETRAWSAMPLE", Models::Corvane, "", "", "*V"},
    {"GETRAWSAMPLE", Models::Tidal, "", "gain2\r", "*A"},
    {"CLEARSAMPLE", Models::Corvane, "", "", "Cleared"},
    {"CLEARSAMPLE", Models::Tidal, "", "gain2\r", "*A"},
    {"GETSAMPLEPARAMS", Models::Tidal, "", "", "Burst cycle: 60"},
    {"GETSAMPLEPARAMS", Models::NotTidal, "", "", "Burst cycle: 60"},
    {"PERIOD", Models::Tidal, "3", "", "Period: 3"},
    {"STARTDELAY", Models::Tidal, "3", "", "Start delay: 3"},
    {"BURST", Models::Tidal, "1", "", "Burst mode: on"},
    {"BURSTLENGTH", Models::Tidal, "3", "", "Burst length: 3"},
    {"BURSTCYCLE", Models::Tidal, "30", "", "Burst cycle: 30"},
    {"START", Models::Corvane, "", "", "Opening shutter"},
    {"START", Models::NotCorvane, "", "", "Starting in 5"},
    {"STARTNOLOG", Models::Corvane, ",0", "", "Opening shutter"},
    {"STARTNOLOG", Models::NotCorvane, "", "", "Starting in 5"},
    {"STOP", Models::All, "", "", "Stopped"},
    {"SETSLEEP", Models::All, "", "SLEEP\r", "ready"},
    {"SETSLEEP", Models::All, "", "", "Sleeping"},
    {"DOWNLOAD", Models::All, "3", "", ","},
    {"MAKEINI", Models::Corvane | Models::Delph, "", "", "[End]"},
    {"CCL", Models::Corvane, "1", "", "' G5"},
    {"GCF", Models::Corvane, "", "", "Cal Time: "},
    {"CCF", Models::Corvane, "1", "", "' ChRep"},
    {"CLEARLOGCOMMAND", Models::All, "", "", "rase"},
    {"DIR", Models::All, "", "", " free"},
    {"ID", Models::All, "", "", "Identification:"},
    {"TIME", Models::All, "", "", ""},
    {"SETDATE", Models::All, "03/01/12 12:00:00", "", "Time: 03/01/12 12:00:0"},
    {"GETTIME", Models::All, "", "", "Time: "},
    {"SETPERIOD", Models::Tidal, "3", "", "Period: 3"},
    {"SETPERIOD", Models::Corvane, "3", "", "Period: 3"},
    {"SETDELAY", Models::Tidal, "3", "", "Start delay: 3"},
    {"SETDELAY", Models::Corvane, "3", "", "Start delay: 3"},
    {"\r\n", Models::All, "", "SLEEP\r", "ready"},
    {"DUMPCFG", Models::Tidal, "", "", "DUMPCFG"},
    {"LOG", Models::Corvane | Models::Delph, ",3", "", "Period: 3"},
    {"BAUD", Models::All, "38400", "", "Baud rate: 38400"},
};

/// Commands of the program that go out by their own name.
const std::vector<Example> kOthers{
    {"VER", Models::All, "", "", "Firmware version 1.85"},
    {"WAKE", Models::All, "", "", "ready"},
    {"SLEEP", Models::All, "", "", "Sleeping"},
    {"ECHOON", Models::All, "", "", "ECHOON"},
    {"ECHOOFF", Models::All, "", "", "ECHOOFF"},
    {"LOADCFG", Models::Tidal, "", "", "LOADCFG\r\nC"},
    {"sendcal", Models::Corvane | Models::Delph, "", "", "[End]"},
    {"POWER", Models::Tidal, ",1", "", "POWER,1"},
    {"dataformat", Models::Tidal, ",d", "", "Data format: decimal"},
    {"mode", Models::Corvane, ",0,3", "", "Mode: 3"},
    {"am", Models::Corvane, ",1", "", "Averaging: on"},
    {"again", Models::Corvane, ",0,1", "", "Automatic gain: on"},
    {"cof", Models::Corvane, ",1,3", "", "' G1: 1: 3:"},
    {"shutter", Models::Corvane, ",1,1,5,CW", "", "Shutter close time: 5"},
    {"STORELOG", Models::Corvane | Models::Delph, "", "", "Storing parameters..OK"},
    {"STOREFL", Models::Corvane, "", "", "Storing parameters..OK"},
    {"date", Models::All, ",03/01/12 12:00:00", "", "Time: 03/01/12 12:00:0"},
    {"capture", Models::Corvane | Models::Delph, " tmp.tmp", "", "capture tmp.tmp"},
    {"\\ del", Models::Corvane | Models::Delph, " cal.cal", "", "Done"},
};

class EveryCommand : public CrossBench {
  protected:
    /// All that the instrument sends, as it came.
    std::string heard;

    std::string Say(const Example& example, Model model) {
        Plug(model, {.powerOn = sim::PowerOn::Stopped});
        window.OnChunk = [this](std::string_view chunk) { heard += chunk; };
        Open();
        window.CalData.EditChannel(6).name = "fl510";
        window.CalData.EditChannel(7).name = "fl700";
        state.InstState = InstStateCode::Stopped;
        window.QueueOutput(example.before);
        TickFor(3s);
        if (example.before == "SLEEP\r") {
            EXPECT_TRUE(instrument->Asleep());
        }
        heard.clear();
        SendCommand(example.name, window, example.argument);
        TickFor(6s);
        return heard;
    }
    void ExpectAnswer(const Example& example, Model model) {
        const std::string answer = Say(example, model);
        if (example.answer.empty()) {
            EXPECT_EQ(answer, "") << example.name;
            return;
        }
        EXPECT_NE(answer.find(example.answer), std::string::npos)
            << example.name << ": " << answer.substr(0, 200);
        EXPECT_EQ(answer.find("refused"), std::string::npos) << example.name << ": " << answer;
        EXPECT_EQ(answer.find("Unknown"), std::string::npos) << example.name << ": " << answer;
    }
    static std::vector<Model> ModelsOf(std::uint8_t bits) {
        std::vector<Model> models;
        for (const auto& [bit, model] :
             {std::pair{Models::Corvane, Model::Corvane6}, std::pair{Models::Tidal, Model::LTidal},
              std::pair{Models::Delph, Model::Delph4}})
            if ((bits & bit) != 0) models.push_back(model);
        return models;
    }
};

TEST_F(EveryCommand, OfTheTableIsAnsweredByTheModelsThatKnowIt) {
    ASSERT_EQ(CommandTable().size(), kExamples.size());
    for (std::size_t row = 0; row < kExamples.size(); ++row) {
        const Example& example = kExamples[row];
        ASSERT_EQ(CommandTable()[row].name, example.name);
        ASSERT_EQ(CommandTable()[row].models & example.models & Models::All, example.models & Models::All);
        for (const Model model : ModelsOf(example.models)) ExpectAnswer(example, model);
    }
}

TEST_F(EveryCommand, ThatGoesOutByItsNameIsAnsweredToo) {
    for (const Example& example : kOthers)
        for (const Model model : ModelsOf(example.models)) ExpectAnswer(example, model);
}

TEST_F(EveryCommand, IsCalledUnknownByTheModelsThatDoNotKnowIt) {
    for (const auto* const examples : {&kExamples, &kOthers})
        for (const Example& example : *examples) {
            std::uint8_t known = 0;
            for (const auto* const others : {&kExamples, &kOthers})
                for (const Example& other : *others)
                    if (other.name == example.name) known |= other.models;
            for (const Model model : ModelsOf(Models::All & ~known)) {
                const std::string answer = Say(example, model);
                const bool nothing = answer.empty();  // the table has nothing to send to them
                EXPECT_TRUE(nothing || answer.find("Unknown command") != std::string::npos)
                    << example.name << ": " << answer;
            }
        }
}

}  // namespace
}  // namespace marisonde
