#pragma once

#include <filesystem>
#include <string>

#include "common/InstTypes.h"

namespace marisonde {

/// A data file that a window shows. Live samples wait while it does.
struct StoredFile {
    std::filesystem::path path;  ///< empty: no file is shown
    std::string fileType;        ///< "raw", "rmu" or "dat"
    InstTypeCode type = InstTypeCode::Unknown;
    std::string serial;
    int group = 0;  ///< of a file with more points than fit: groups passed over before the one shown

    [[nodiscard]] bool IsShown() const { return !path.empty(); }
    [[nodiscard]] bool IsCalibrated() const { return fileType == "dat"; }
};

}  // namespace marisonde
