#pragma once

#include <array>
#include <map>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "LinkBench.h"
#include "link/CalibrationFetch.h"
#include "link/Xmodem.h"

namespace marisonde {

inline std::ostream& operator<<(std::ostream& out, FetchOutcome outcome) {
    constexpr std::array kNames{"Arrived", "Silent", "Cancelled", "BrokenLine", "Damaged"};
    return out << kNames[static_cast<std::size_t>(outcome)];
}

using Lines = std::vector<std::string>;
using Fetch = QCoro::Task<FetchOutcome> (*)(Operation&, InstrumentLink&, FetchRequest);

/// An instrument that answers by a list, and echoes what it hears.
class FetchBench : public LinkBench {
  protected:
    /// Reads what the program has sent and answers each complete command.
    void Answer() {
        for (const char c : line->TakeWritten()) {
            if (xmodem && c == 'C' && heard.empty()) {
                line->Queue(frame);
                continue;
            }
            if (xmodem && c == '\x06') line->Queue(std::exchange(endOfTransfer, {}));
            if (c != '\r') {
                if (c > ' ') heard += c;
                continue;
            }
            commands.push_back(std::exchange(heard, {}));
            const auto reply = replies.find(commands.back());
            if (reply == replies.end()) continue;
            Speak(commands.back());
            for (const std::string& text : reply->second) Speak(text);
        }
    }
    void Speak(const std::string& text) {
        if (spoken++ >= mute) return;
        line->Queue(text + "\r\n");
        if (twice) line->Queue(text + "\r\n");
    }
    void Turn(Millis step = 50ms) {
        Answer();
        Tick(step);
    }
    void TurnFor(Millis time) {
        for (Millis passed{0}; passed < time; passed += 50ms) Turn();
    }
    /// Turns until the fetch is over; false after a minute.
    bool Finish() {
        for (int i = 0; i < 1200 && !outcome; ++i) Turn();
        return outcome.has_value();
    }
    /// What was sent in a run before is not answered in the next.
    void Forget() {
        heard.clear();
        line->TakeWritten();
    }
    void Begin(Fetch fetch) {
        outcome.reset();
        Forget();
        operations.Start("fetch", [this, fetch](Operation& operation) -> QCoro::Task<> {
            outcome = co_await fetch(operation, window, request);
        });
    }
    /// What every end of a fetch leaves behind.
    void ExpectTidy() {
        EXPECT_TRUE(pump.Idle());
        EXPECT_EQ(state.CurrentCommand, "");
        EXPECT_EQ(state.DumpStage, 0);
        EXPECT_FALSE(state.DumpActive);
        EXPECT_EQ(state.BinaryReceiver.BinaryActive, XmodemStage::Idle);
        EXPECT_EQ(window.ReplyCalData, nullptr);
        EXPECT_EQ(state.CalReady, outcome == FetchOutcome::Arrived);
        if (outcome != FetchOutcome::Arrived) {
            EXPECT_TRUE(window.CalData == CalibrationDataClass());
        }
    }
    void UseCorvane6() {
        Use(InstTypeCode::Corvane6);
        replies["GCF"] = {"Model: CV6", "S/N: CV060412", "Cal temp: 18.5", "Cal Time: 01/03/09 17:05:00"};
        const std::array<const char*, 8> names{"bb420", "bb510", "bb470", "bb685",
                                               "bb550", "bb700", "fl685", "fl510"};
        for (int n = 1; n <= 8; ++n)
            replies["CCL," + std::to_string(n)] = Channel(n, names[static_cast<std::size_t>(n - 1)]);
    }
    static Lines Channel(int n, const std::string& name) {
        const std::string heading =
            std::string("'Channel ").append(std::to_string(n)).append(" (").append(name).append(")");
        return {heading, "' mu: 1.5", "' G1: 1: 10: 20: 30", "' G5: 10000: 11: 21: 31"};
    }
    static Lines DelphFile() {
        return {"[General]          //Saved by Marisonde 2.85",
                "DeviceType=Delph-4",
                "Serial=D4080102",
                "",
                "[Attenuation 1]",
                "Name=c(532)",
                "Lambda=532",
                "L=0.25",
                "[End]"};
    }
    static Lines TidalFile() {
        return {"[General]", "DeviceType=l-Tidal", "Serial=LT040712", "[Scattering]", "Lambda=660",
                "Mu=3.5",    "[Attenuation]",      "Lambda=510",      "[End]"};
    }
    /// The image of an l-Tidal: serial number 7 of April 2006, 40 m.
    static std::string Image() {
        std::string image(128, '\0');
        image[0] = '\xA0';
        image[1] = 7;
        image[2] = 2;  // times 20
        image[3] =
            88;  // month 88: year floor(99 / 12) + 98 = 106, month 99 mod 12 + 1 = 4, code 10604 less 10000
        image.replace(4, 4, "unit");
        return image;
    }
    void UseXmodem(const std::string& image) {
        Use(InstTypeCode::LTidal);
        xmodem = true;
        replies["DUMPCFG"] = {};
        const int crc = XmodemCrc(image);
        frame = std::string("\x01\x01\xFE", 3) + image + static_cast<char>(crc / 256) +
                static_cast<char>(crc % 256);
        endOfTransfer = "\x04";
    }

    SigmaParams sigma;
    PureWaterParams water;
    FetchRequest request{sigma, water};
    std::vector<std::string> failures;
    Operations operations{pump, [this](const std::string& name, const std::string& why) {
                              failures.push_back(name + ": " + why);
                          }};
    std::optional<FetchOutcome> outcome;
    std::map<std::string, Lines> replies;
    Lines commands;
    std::string heard;
    int mute = 1000000;  ///< lines after which nothing is said any more
    int spoken = 0;
    bool twice = false;
    bool xmodem = false;
    std::string frame;
    std::string endOfTransfer;
};

}  // namespace marisonde
