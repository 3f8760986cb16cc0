#pragma once

#include <filesystem>
#include <string>

#include "app/AppContext.h"
#include "common/InstTypes.h"
#include "link/SimulatedPorts.h"

namespace marisonde {

class DataWindow;

/// One simulated instrument of the demonstration: lowered through a layered water column, and waiting for a
/// command. Its clock shows the computer's time.
struct DemoInstrument {
    int port = 0;
    int baud = 0;
    std::string calText;  ///< its calibration, as a .cal file
};
DemoInstrument AddDemoInstrument(SimulatedPorts& ports, InstTypeCode model, const Clock& clock);
/// False for the one model that does not tell what it is: its port is opened without asking, and its
/// calibration comes from a file.
bool IdentifiesItself(InstTypeCode model);
/// Loads the calibration from a file in the temporary folder; a text for the user when that did not work.
std::string LoadDemoCalibration(DataWindow& window, const DemoInstrument& instrument);
/// Starts the data files, whose final place is below `folder`, and the instrument.
void BeginDemo(DataWindow& window, const std::filesystem::path& folder);
/// Where the files of one demonstration window are. Empty paths: there is no such file.
struct DemoFiles {
    std::filesystem::path raw;
    std::filesystem::path dat;
};
/// Copies the data to their final place and closes files and line.
DemoFiles FinishDemo(DataWindow& window);
/// The folder of demonstration files in the system's temporary folder; made when needed.
std::filesystem::path DemoFolder();

}  // namespace marisonde
