#include "link/PortRemedy.h"

#include <QtGlobal>
#ifndef Q_OS_WIN
#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace marisonde {

#ifdef Q_OS_WIN

DeviceAccess AccessTo(const std::string& /*device*/) {
    return {};
}

#else

namespace {

bool IsMember(const group& owner, const std::string& user) {
    for (char** member = owner.gr_mem; member && *member; ++member)
        if (user == *member) return true;
    return false;
}

}  // namespace

DeviceAccess AccessTo(const std::string& device) {
    DeviceAccess access;
    if (const passwd* const user = getpwuid(getuid())) access.user = user->pw_name;
    struct stat status {};
    if (stat(device.c_str(), &status) != 0) return access;
    const mode_t wanted = S_IRGRP | S_IWGRP;
    if ((status.st_mode & wanted) != wanted) return access;
    // Being in the group of the administrator opens far more than a port.
    if (status.st_gid == 0) return access;
    const group* const owner = getgrgid(status.st_gid);
    if (!owner) return access;
    access.group = owner->gr_name;
    access.memberAlready = IsMember(*owner, access.user);
    return access;
}

#endif

namespace {

std::string DeniedRemedy(const std::string& device, const DeviceAccess& access) {
    if (access.group.empty())
        return "Ask the administrator of this computer for the right to use " + device + ".";
    const std::string owner = "The device " + device + " belongs to the group \"" + access.group + "\".  ";
    if (access.memberAlready)
        return owner + "You are a member of it since your last login: log out and in again.";
    return owner + "To become a member, run \"sudo usermod -aG " + access.group + " " + access.user +
           "\" in a terminal, then log out and in again.";
}

}  // namespace

std::string PortRemedy(const LineError& error, const std::string& device, const DeviceAccess& access) {
    switch (error.kind) {
        case LineError::Kind::Denied:
            return DeniedRemedy(device, access);
        case LineError::Kind::Busy:
            return "Another program, or another window of Marisonde, is using it.  Close the connection "
                   "there first.";
        case LineError::Kind::NotFound:
        case LineError::Kind::Gone:
            return "The device is gone.  Check the cable and the adapter, and plug it in again.";
        default:
            return "";
    }
}

std::string PortRemedy(const LineError& error, const std::string& device) {
    return PortRemedy(error, device,
                      error.kind == LineError::Kind::Denied ? AccessTo(device) : DeviceAccess{});
}

}  // namespace marisonde
