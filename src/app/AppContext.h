#pragma once

#include <array>
#include <filesystem>

#include "app/CommandLine.h"
#include "app/Preferences.h"
#include "common/Clock.h"
#include "common/Settings.h"
#include "link/DataWindowState.h"
#include "optics/PureWaterParams.h"
#include "optics/SigmaParams.h"
#include "platform/Recovery.h"

namespace marisonde {

class DataWindow;
class Ports;

/// What all windows of the program share.
struct AppContext {
    AppContext(Settings& settingsStore, const Clock& time) : settings(settingsStore), clock(time) {}

    Settings& settings;
    const Clock& clock;
    Preferences prefs;
    SigmaParams sigma;
    PureWaterParams pureWater;
    LineScratch scratch;
    std::filesystem::path temporaryFolder;
    SafePlaces safePlaces;   ///< for unsaved data of which nobody was asked
    int instanceNumber = 1;  ///< of this running copy; part of the names of temporary calibrations
    Ports* ports = nullptr;  ///< where windows connect; null only where nothing connects
    std::array<DataWindow*, kMaxWindows> windows{};
    int untitledFiles = 0;  ///< data files begun without a name; counts on over all windows

    [[nodiscard]] bool WindowInUse(int index) const {
        return windows.at(static_cast<std::size_t>(index)) != nullptr;
    }
    /// The lowest free slot, or kMaxWindows when all are taken.
    [[nodiscard]] int FirstFreeWindow() const {
        int index = 0;
        while (index < kMaxWindows && WindowInUse(index)) ++index;
        return index;
    }
};

}  // namespace marisonde
