#pragma once

#include <string>

#include "link/SerialLine.h"

namespace marisonde {

/// Who may use a device, as far as the system tells.
struct DeviceAccess {
    std::string group;  ///< the group that owns the device; empty when it does not help or is unknown
    std::string user;   ///< the user's login name
    bool memberAlready = false;  ///< the user is in the group, but has not logged in since
};
/// Looks the device up. All empty where devices have no groups.
DeviceAccess AccessTo(const std::string& device);

/// A sentence or two on what the user can do about a port that does not open; empty when nothing is known.
std::string PortRemedy(const LineError& error, const std::string& device, const DeviceAccess& access);
/// The same for the user who runs the program.
std::string PortRemedy(const LineError& error, const std::string& device);

}  // namespace marisonde
