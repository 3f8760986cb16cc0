#include "link/PortTable.h"

#include <QSerialPortInfo>
#include <algorithm>
#include <map>
#include <utility>

#include "common/ConversionUtils.h"
#include "common/Numbers.h"

namespace marisonde {

namespace {

/// The digits at the front, without leading zeros, cut off the text.
std::string_view TakeDigits(std::string_view& text) {
    const std::size_t end = std::min(text.find_first_not_of("0123456789"), text.size());
    std::string_view digits = text.substr(0, end);
    text.remove_prefix(end);
    digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
    return digits;
}

int PortNumberFromText(std::string_view text) {
    const double value = SafeVal(text);
    const int number = ToInt32(value);
    return number == value && number >= 1 && number <= kMaxPortNumber ? number : 0;
}

bool ByNumber(const PortEntry& a, const PortEntry& b) {
    return a.number < b.number;
}

void Put(std::vector<PortEntry>& entries, const PortEntry& entry) {
    std::erase_if(entries, [&entry](const PortEntry& other) { return other.number == entry.number; });
    entries.insert(std::upper_bound(entries.begin(), entries.end(), entry, ByNumber), entry);
}

std::vector<PortEntry> RowsOf(std::string_view text) {
    std::map<int, PortEntry> rows;
    while (!text.empty()) {
        const std::size_t comma = std::min(text.find(','), text.size());
        const std::string_view row = text.substr(0, comma);
        text.remove_prefix(std::min(comma + 1, text.size()));
        const std::size_t equals = row.find('=');
        if (equals == std::string_view::npos) continue;
        const int number = PortNumberFromText(row.substr(0, equals));
        const std::string_view device = Trim(row.substr(equals + 1));
        if (number != 0 && !device.empty()) rows[number] = {number, std::string(device), {}, {}};
    }
    std::vector<PortEntry> entries;
    entries.reserve(rows.size());
    for (auto& row : rows) entries.push_back(std::move(row.second));
    return entries;
}

}  // namespace

bool NaturalLess(std::string_view a, std::string_view b) {
    while (!a.empty() && !b.empty()) {
        if (IsDigit(a[0]) && IsDigit(b[0])) {
            const std::string_view x = TakeDigits(a);
            const std::string_view y = TakeDigits(b);
            if (x.size() != y.size()) return x.size() < y.size();
            if (x != y) return x < y;
        } else {
            if (a[0] != b[0]) return a[0] < b[0];
            a.remove_prefix(1);
            b.remove_prefix(1);
        }
    }
    return a.size() < b.size();
}

std::vector<PortEntry> ListSystemPorts() {
    std::vector<PortEntry> entries;
    for (const QSerialPortInfo& info : QSerialPortInfo::availablePorts()) {
#ifdef Q_OS_WIN
        const std::string device = info.portName().toStdString();
        const int number =
            EqualIgnoringCase(device.substr(0, 3), "COM") ? PortNumberFromText(device.substr(3)) : 0;
        if (number == 0) continue;
#else
        const int number = 0;
        const std::string device = info.systemLocation().toStdString();
#endif
        entries.push_back(
            {number, device, info.description().toStdString(), info.serialNumber().toStdString()});
    }
    std::sort(entries.begin(), entries.end(),
              [](const PortEntry& a, const PortEntry& b) { return NaturalLess(a.device, b.device); });
    return entries;
}

PortTable::PortTable(Lister list) : list_(std::move(list)) {
    Refresh();
}

PortTable PortTable::FromText(std::string_view text) {
    return PortTable([rows = RowsOf(text)] { return rows; });
}

PortTable PortTable::ForThisComputer() {
    const QByteArray named = qgetenv("MARISONDE_PORTS");
    return named.isEmpty() ? PortTable(ListSystemPorts)
                           : FromText({named.data(), static_cast<std::size_t>(named.size())});
}

void PortTable::Refresh() {
    present_.clear();
    std::vector<PortEntry> fresh;
    // Devices that have a number keep it; only then may new ones take what is free.
    for (PortEntry& entry : list_()) {
        const auto known = std::find_if(known_.begin(), known_.end(),
                                        [&](const PortEntry& other) { return other.device == entry.device; });
        if (entry.number == 0 && known != known_.end()) entry.number = known->number;
        if (entry.number == 0)
            fresh.push_back(std::move(entry));
        else
            Put(present_, entry);
    }
    for (const PortEntry& entry : present_) Put(known_, entry);
    for (PortEntry& entry : fresh) {
        entry.number = FreeNumber();
        if (entry.number == 0) continue;
        Put(present_, entry);
        Put(known_, entry);
    }
}

std::optional<PortEntry> PortTable::Find(int number) const {
    const auto found = std::find_if(known_.begin(), known_.end(),
                                    [number](const PortEntry& entry) { return entry.number == number; });
    return found == known_.end() ? std::nullopt : std::optional(*found);
}

int PortTable::FreeNumber() const {
    for (int number = 1; number <= kMaxPortNumber; ++number)
        if (!Find(number)) return number;
    for (int number = 1; number <= kMaxPortNumber; ++number)
        if (!IsPresent(number)) return number;
    return 0;
}

bool PortTable::IsPresent(int number) const {
    return std::any_of(present_.begin(), present_.end(),
                       [number](const PortEntry& entry) { return entry.number == number; });
}

}  // namespace marisonde
