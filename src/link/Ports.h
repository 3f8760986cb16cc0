#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "link/PortTable.h"
#include "link/SerialLine.h"

namespace marisonde {

/// The ports that connections can be made on, and lines for windows to open them with.
class Ports {
  public:
    virtual ~Ports() = default;
    /// The devices that are there now, by number.
    [[nodiscard]] virtual std::vector<PortEntry> Present() = 0;
    /// The device that has or had this number; nullopt when that is not known.
    [[nodiscard]] virtual std::optional<PortEntry> Known(int /*number*/) { return std::nullopt; }
    /// A closed line that can open every port. The ports outlive it.
    [[nodiscard]] virtual std::unique_ptr<SerialLine> MakeLine() = 0;
};

/// The serial ports of this computer.
class ComputerPorts final : public Ports {
  public:
    explicit ComputerPorts(PortTable table) : table_(std::move(table)) {}
    [[nodiscard]] std::vector<PortEntry> Present() override;
    [[nodiscard]] std::optional<PortEntry> Known(int number) override { return table_.Find(number); }
    [[nodiscard]] std::unique_ptr<SerialLine> MakeLine() override;

  private:
    PortTable table_;
};

/// True when the port opens, or when only somebody else's use or the lack of permission prevents it.
bool PortAvailable(Ports& ports, int port);

}  // namespace marisonde
