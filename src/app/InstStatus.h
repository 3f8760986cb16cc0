#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace marisonde {

class DataWindow;

/// One fact about the instrument of a window.
struct InstStatusRow {
    std::string_view box;    ///< name of its control
    std::string_view label;  ///< as the user reads it
    std::string value;
};

/// What is known of the instrument, in the order in which the dialog shows it.
std::vector<InstStatusRow> InstStatus(const DataWindow& window);

}  // namespace marisonde
