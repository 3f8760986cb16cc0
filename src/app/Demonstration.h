#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "app/AppContext.h"
#include "common/InstTypes.h"
#include "link/SerialLine.h"

namespace marisonde {

class DataWindow;

/// One simulated instrument of the demonstration: lowered through a layered water column, already sampling.
struct DemoInstrument {
    std::unique_ptr<SerialLine> line;
    std::string calText;  ///< its calibration, as a .cal file
    int baud = 0;
};

/// The `index`-th instrument of the demonstration; its clock shows the computer's time.
DemoInstrument MakeDemoInstrument(InstTypeCode model, int index, const Clock& clock);
/// Loads the calibration, opens the line and starts the data files, whose final place is below `folder`.
/// A text for the user when something did not work, else empty.
std::string StartDemo(DataWindow& window, const DemoInstrument& instrument, InstTypeCode model,
                      const std::filesystem::path& folder);
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
