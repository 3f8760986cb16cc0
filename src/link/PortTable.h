#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace marisonde {

/// Serial ports are numbered 1 to 31 all over the program.
inline constexpr int kMaxPortNumber = 31;

/// One row of the list of ports that the user chooses from.
struct PortEntry {
    int number = 0;           ///< 1 to 31; 0 in a lister's answer: the table gives one
    std::string device;       ///< "COM3", "/dev/ttyUSB0"
    std::string description;  ///< what the system calls the adapter; may be empty
    std::string serial;       ///< serial text of the adapter; may be empty
};

/// The ports of this computer by number. A device keeps its number as long as the table lives, also while it
/// is unplugged, so that a window finds its port again.
class PortTable {
  public:
    using Lister = std::function<std::vector<PortEntry>()>;

    /// Ports in the order of the list, except those that bring a number. More than 31 are left out.
    explicit PortTable(Lister list);
    /// A fixed table: "1=/dev/pts/4,7=/home/me/sim0". Rows without a number from 1 to 31 or without a device
    /// are passed over; the last of two with the same number counts.
    static PortTable FromText(std::string_view text);
    /// The table named by the environment's MARISONDE_PORTS if that is not empty, otherwise what the system
    /// lists.
    static PortTable ForThisComputer();

    /// Looks which devices are there now.
    void Refresh();
    /// The devices that are there, by number.
    [[nodiscard]] const std::vector<PortEntry>& Present() const { return present_; }
    /// The device of that number, also when it is unplugged at the moment; nullopt when there never was one.
    [[nodiscard]] std::optional<PortEntry> Find(int number) const;

  private:
    [[nodiscard]] int FreeNumber() const;
    [[nodiscard]] bool IsPresent(int number) const;

    Lister list_;
    std::vector<PortEntry> known_;  ///< every device seen, by number
    std::vector<PortEntry> present_;
};

/// The system's ports. On Windows COMn brings number n; elsewhere they are sorted by name, digits by their
/// value.
std::vector<PortEntry> ListSystemPorts();
/// "ttyS2" stands before "ttyS10".
bool NaturalLess(std::string_view a, std::string_view b);

}  // namespace marisonde
