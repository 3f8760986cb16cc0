#pragma once

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <utility>

#include "app/DataWindow.h"
#include "common/Settings.h"
#include "link/SimulatedLine.h"
#include "platform/Paths.h"
#include "simulator/Instrument.h"
#include "support/FailingOutputFile.h"
#include "support/ScriptedDialogs.h"
#include "support/ScriptedLine.h"
#include "support/ShareFolder.h"
#include "support/TestFolder.h"

namespace marisonde {

inline constexpr Millis kTick{50};

/// Data windows in virtual time, with scripted dialogs and a folder of their own.
class WindowFixture : public testing::Test {
  protected:
    WindowFixture() : app(settings, clock) {
        LoadPreferences(settings, folder.Path().string(), app.prefs);
        app.sigma = LoadSigmaParams(settings, folder.Path(), ShareFolder()).params;
        app.pureWater = LoadPureWaterParams(settings);
        app.temporaryFolder = folder.Path();
        app.safePlaces = {folder / "recovered", folder / "recovered too"};
    }

    /// A window on a simulated instrument with its calibration loaded and its data files open.
    std::unique_ptr<DataWindow> Simulated(simulator::Model model, const simulator::Options& options) {
        auto instrument = simulator::MakeInstrument(model, options);
        const std::string cal = instrument->CalText();
        return Connected(std::make_unique<SimulatedLine>(std::move(instrument), clock), cal,
                         static_cast<InstTypeCode>(model), options.baud);
    }

    /// A window on a scripted line with the calibration of a simulated model.
    std::unique_ptr<DataWindow> Scripted(simulator::Model model, DataFiles::MakeFile makeFile = OnDisk) {
        auto line = std::make_unique<ScriptedLine>();
        port = line.get();
        return Connected(std::move(line), simulator::MakeInstrument(model)->CalText(),
                         static_cast<InstTypeCode>(model), 19200, std::move(makeFile));
    }

    static std::unique_ptr<OutputFile> OnDisk() { return std::make_unique<DiskFile>(); }

    std::unique_ptr<DataWindow> Connected(std::unique_ptr<SerialLine> line, const std::string& cal,
                                          InstTypeCode model, int baud,
                                          DataFiles::MakeFile makeFile = OnDisk) {
        auto window = std::make_unique<DataWindow>(app, dialogs, std::move(line), std::move(makeFile));
        const auto path = folder / ("window" + std::to_string(window->Index()) + ".cal");
        TestFolder::Write(path, cal);
        EXPECT_TRUE(window->LoadCalIntoWindow(path.string()));
        EXPECT_EQ(window->OpenWithoutQuery(window->Index() + 1, baud, model), "");
        window->OpenDataFiles("raw", true);
        return window;
    }

    void Run(DataWindow& window, Millis time) {
        for (Millis t{0}; t < time; t += kTick) {
            clock.AdvanceBy(kTick);
            window.Tick();
        }
    }

    TestFolder folder;
    MapSettings settings;
    VirtualClock clock{40735.385671};  // 11 July 2011, about 09:15
    AppContext app;
    ScriptedDialogs dialogs;
    ScriptedLine* port = nullptr;
};

/// The bytes of a file behind its header, which ends with `lastHeaderLine`.
inline std::string BehindHeader(const std::string& text, const std::string& lastHeaderLine) {
    const std::size_t place = text.find(lastHeaderLine + "\r\n");
    return place == std::string::npos ? "no header" : text.substr(place + lastHeaderLine.size() + 2);
}

/// Whether a hexadecimal line ends in its checksum, with or without the "*" summed. A damaged digit of the
/// checksum ends its number, as in every hexadecimal field.
inline bool ChecksumHolds(const std::string& line) {
    if (line.size() < 4 || line[0] != '*') return false;
    unsigned sum = 0;
    for (std::size_t i = 1; i + 2 < line.size(); ++i) sum += static_cast<unsigned char>(line[i]);
    unsigned told = 0;
    for (const char c : line.substr(line.size() - 2)) {
        const std::size_t digit = std::string("0123456789ABCDEFabcdef").find(c);
        if (digit == std::string::npos) break;
        told = told * 16 + static_cast<unsigned>(digit > 15 ? digit - 6 : digit);
    }
    return told == sum % 256 || told == (sum + '*') % 256;
}

}  // namespace marisonde
