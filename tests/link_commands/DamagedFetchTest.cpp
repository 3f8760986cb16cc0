// Calibrations fetched over a noisy cable: one byte in a hundred arrives with one bit flipped.
#include <gtest/gtest.h>
#include <optional>
#include <random>

#include "LinkBench.h"
#include "link/CalibrationFetch.h"

namespace marisonde {
namespace {

using Lines = std::vector<std::string>;

/// Every key of a Corvane-6 with offsets, as its file store sends it.
Lines CorvaneFile() {
    Lines lines{"[General]          //Saved by Marisonde 2.85",
                "DeviceType=Corvane-6",
                "Serial=CV060412",
                "Label=bench",
                "Config=FT",
                "MaxDepth=500",
                "CalTime=1231002300 (01/3/09 17:05:00)",
                "DepthCal=0.0125",
                "DepthOff=312.5",
                "CalTemp=18.5"};
    for (int n = 1; n <= 8; ++n) {
        lines.push_back("[Channel " + std::to_string(n) + "]");
        lines.push_back("Name=bb" + std::to_string(400 + 37 * n));
        for (int g = 1; g <= 5; ++g)
            lines.push_back("Gain" + std::to_string(g) + "=" + std::to_string(g * 17 * n));
        for (const char* const key :
             {"Mu", "Sigma1", "Sigma2", "Sigma3", "SigmaExp", "RNominal", "Beta2Bb", "MuRho", "TempCoeff"})
            lines.push_back(std::string(key) + "=0.12" + std::to_string(n));
        for (const char* const key : {"Offset", "NomOffset", "FlOffset"})
            for (int g = 1; g <= 5; ++g)
                lines.push_back(key + std::to_string(g) + "=" + std::to_string(10 * n + g));
    }
    lines.emplace_back("[End]");
    return lines;
}

/// A Delph file, the shortest of all.
Lines DelphFile() {
    Lines lines{"[General]          //Saved by Marisonde 2.85",
                "DeviceType=Delph-4",
                "Serial=D4080102",
                "Label=bench",
                "Config=",
                "MaxDepth=200",
                "CalTime=1231002300 (01/3/09 17:05:00)",
                "[Depth]"};
    for (const char* const key : {"kp1", "kp2", "P0", "TP0", "kD1", "kD2"})
        lines.push_back(std::string(key) + "=12.5");
    for (int n = 1; n <= 2; ++n) {
        lines.push_back("[Attenuation " + std::to_string(n) + "]");
        for (const char* const key :
             {"Name=c(532)", "Lambda=532", "DeltaLambda=10", "L=0.25", "S0=12345", "R0=23456", "P1=0.5",
              "P2=-0.25", "kTauPX=0", "Tau0=0.875", "TPW=0.9375"})
            lines.emplace_back(key);
        for (int i = 0; i <= 5; ++i) lines.push_back("kT" + std::to_string(i) + "=0.123456");
        for (int i = 0; i <= 5; ++i) lines.push_back("kTauP" + std::to_string(i) + "=0.123456");
    }
    lines.emplace_back("[End]");
    return lines;
}

Lines ChannelReply(const std::string& number) {
    Lines lines{"'Channel " + number + " (bb4" + number + "0)"};
    for (const char* const key : {"mu", "Rnom", "Roo", "kbb", "kc", "kSigma0", "kSigma1", "kSigma2", "Kt"})
        lines.push_back(std::string("' ") + key + ": 12." + number);
    for (int g = 1; g <= 5; ++g) lines.push_back("' G" + std::to_string(g) + ": 1" + number + ": 21: 22: 23");
    return lines;
}

const Lines kGlobal{"Model: CV6",
                    "S/N: CV060412",
                    "Config: FT",
                    "ID: bench",
                    "Firmware: 1.85",
                    "Maximum depth: 500",
                    "Depth coefficient: 0.0125",
                    "Depth offset: 312.5",
                    "Cal temp: 18.5",
                    "Cal Time: 01/03/09 17:05:00"};

struct Case {
    const char* name;
    InstTypeCode type;
    Lines (*answer)(const std::string& command);
    int mayHide;  ///< of 1000 damaged replies
};

Lines AnswerDelph(const std::string& command) {
    return command == "sendcal" ? DelphFile() : Lines{};
}
Lines AnswerStore(const std::string& command) {
    return command == "sendcal" ? CorvaneFile() : Lines{};
}
Lines AnswerChannels(const std::string& command) {
    if (command == "GCF") return kGlobal;
    return command.starts_with("CCL,") ? ChannelReply(command.substr(4)) : Lines{};
}

std::string Noisy(std::string text, std::mt19937& random) {
    std::uniform_int_distribution<int> hundred(0, 99);
    std::uniform_int_distribution<int> bit(0, 7);
    for (char& c : text)
        if (hundred(random) == 0) c = static_cast<char>(c ^ (1 << bit(random)));
    return text;
}

class DamagedFetch : public LinkBench, public testing::WithParamInterface<Case> {
  protected:
    /// The outcome of one fetch whose reply lines are damaged by `seed`; 0 is undamaged.
    FetchOutcome Run(unsigned seed) {
        std::mt19937 random(seed);
        Use(GetParam().type);
        window.PendingOutput.clear();
        line->TakeWritten();
        std::string written;
        std::optional<FetchOutcome> outcome;
        Operations operations{pump, [](const std::string&, const std::string& why) { ADD_FAILURE() << why; }};
        operations.Start("fetch", [&](Operation& operation) -> QCoro::Task<> {
            outcome = co_await LoadCalFromInstrument(operation, window, request);
        });
        for (int i = 0; i < 2000 && !outcome; ++i) {
            for (const char c : line->TakeWritten()) {
                if (c != '\r') {
                    written += c;
                    continue;
                }
                std::string reply;
                for (const std::string& text : GetParam().answer(std::exchange(written, {})))
                    reply += text + "\r\n";
                line->Queue(seed == 0 ? reply : Noisy(reply, random));
            }
            Tick();
        }
        EXPECT_TRUE(outcome) << seed;
        return outcome.value_or(FetchOutcome::Silent);
    }
    SigmaParams sigma;
    PureWaterParams water;
    FetchRequest request{sigma, water};
};

TEST_P(DamagedFetch, DamageShowsUnlessAllOfItTurnedDigitsIntoDigits) {
    ASSERT_EQ(Run(0), FetchOutcome::Arrived);
    const CalibrationDataClass good = window.CalData;
    int slipped = 0;
    for (unsigned seed = 1; seed <= 1000; ++seed)
        if (Run(seed) == FetchOutcome::Arrived && !(window.CalData == good)) ++slipped;
    // These replies have no check sum: a digit that became another digit does not show. Some ten bytes are
    // hit in the shortest reply and forty in the longest, and all of them must have gone that way for the
    // damage to stay hidden.
    EXPECT_LE(slipped, GetParam().mayHide);
}
INSTANTIATE_TEST_SUITE_P(Replies, DamagedFetch,
                         testing::Values(Case{"store", InstTypeCode::Corvane6, AnswerStore, 0},
                                         Case{"channels", InstTypeCode::Corvane6, AnswerChannels, 0},
                                         Case{"delph", InstTypeCode::Delph4, AnswerDelph, 10}),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace marisonde
