#include <random>

#include "ConnectFixture.h"

namespace marisonde {
namespace {

/// Whatever is done to the replies: the connection ends, and a window that is connected without any message
/// has exactly the calibration that the instrument holds.
class DamagedReplies : public ConnectFixture {
  protected:
    void ExpectGoodOrTold(const CalibrationDataClass& good, const std::string& what) {
        dialogs.errors.clear();
        dialogs.asked.clear();
        dialogs.answers.assign(20, Choice::Second);
        connector->Form_Load();
        connector->SelectBaud(19200);
        ASSERT_TRUE(ConnectAndFinish()) << what;
        const bool told = !dialogs.errors.empty() || !dialogs.asked.empty();
        if (told) {
            EXPECT_FALSE(State().Connected) << what;
            return;
        }
        ++connected;
        EXPECT_TRUE(State().Connected && State().CalReady) << what;
        EXPECT_EQ(window->Link.CalData.Compare(good, CalItems::All), 0) << what;
        window->Link.ClosePort();
    }
    /// The calibration as it arrives undamaged.
    CalibrationDataClass Good() {
        connector->SelectBaud(19200);
        EXPECT_TRUE(ConnectAndFinish());
        EXPECT_TRUE(State().Connected);
        window->Link.ClosePort();
        return window->Link.CalData;
    }
    int connected = 0;
};

TEST_F(DamagedReplies, CutAfterAnyLine) {
    Talker& talker = Teach(Model::Delph4);
    Open();
    const CalibrationDataClass good = Good();
    for (const char* command : {"ID", "VER", "sendcal"}) {
        const Lines whole = talker.replies[command];
        for (std::size_t count = 0; count < whole.size(); ++count) {
            talker.replies[command].assign(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(count));
            ExpectGoodOrTold(good, std::string(command) + " cut behind line " + std::to_string(count));
        }
        talker.replies[command] = whole;
    }
}

TEST_F(DamagedReplies, AnyLineOfACalibrationDoubled) {
    Talker& talker = Teach(Model::Delph4);
    Open();
    const CalibrationDataClass good = Good();
    const Lines whole = talker.replies["sendcal"];
    for (std::size_t doubled = 0; doubled < whole.size(); ++doubled) {
        talker.replies["sendcal"] = whole;
        talker.replies["sendcal"].insert(
            talker.replies["sendcal"].begin() + static_cast<std::ptrdiff_t>(doubled), whole[doubled]);
        ExpectGoodOrTold(good, "line " + std::to_string(doubled) + " doubled");
    }
    EXPECT_GT(connected, 0);
}

TEST_F(DamagedReplies, OneByteInAHundredFlippedNeverHangsOrCrashes) {
    Talker& talker = Teach(Model::Delph4);
    Open();
    const auto whole = talker.replies;
    std::mt19937 random(7);
    int told = 0;
    for (int round = 0; round < 200; ++round) {
        talker.replies = whole;
        for (auto& [command, lines] : talker.replies)
            for (std::string& line : lines)
                for (char& c : line)
                    if (random() % 100 == 0) c = static_cast<char>(c ^ (1 << random() % 8));
        dialogs.errors.clear();
        dialogs.asked.clear();
        dialogs.answers.assign(20, Choice::Second);
        connector->Form_Load();
        connector->SelectBaud(19200);
        ASSERT_TRUE(ConnectAndFinish()) << round;
        const bool silent = dialogs.errors.empty() && dialogs.asked.empty();
        EXPECT_EQ(State().Connected, silent) << round;
        told += silent ? 0 : 1;
        window->Link.ClosePort();
    }
    EXPECT_GT(told, 150) << "such a cable is noticed nearly always";
}

}  // namespace
}  // namespace marisonde
