#include <QByteArray>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "link/PortTable.h"

namespace marisonde {
namespace {

using Rows = std::vector<std::string>;

Rows RowsOf(const PortTable& table) {
    Rows rows;
    for (const PortEntry& entry : table.Present())
        rows.push_back(std::to_string(entry.number) + "=" + entry.device);
    return rows;
}

TEST(PortTableTest, TextGivesAFixedTable) {
    const PortTable table = PortTable::FromText("7=/home/me/sim0,1=/dev/pts/4");
    EXPECT_EQ(RowsOf(table), (Rows{"1=/dev/pts/4", "7=/home/me/sim0"}));
    EXPECT_EQ(table.Find(7)->device, "/home/me/sim0");
    EXPECT_FALSE(table.Find(2).has_value());
}

TEST(PortTableTest, BadRowsOfATextArePassedOver) {
    const PortTable table =
        PortTable::FromText(",=,x=/a,0=/b,32=/c,1.5=/d,-3=/e,5=,6,1e300=/f,, 31 = /g=h ,3=/i,3=/j");
    EXPECT_EQ(RowsOf(table), (Rows{"3=/j", "31=/g=h"}));
    EXPECT_TRUE(PortTable::FromText("").Present().empty());
}

/// A computer whose devices the test plugs and unplugs.
class PluggedPortsTest : public testing::Test {
  protected:
    void Plug(const Rows& devices) {
        listed.clear();
        for (const std::string& device : devices) listed.push_back({0, device, {}, {}});
        table.Refresh();
    }
    std::vector<PortEntry> listed;
    PortTable table{[this] { return listed; }};
};

TEST_F(PluggedPortsTest, DevicesAreNumberedInTheOrderOfTheList) {
    Plug({"/dev/ttyS0", "/dev/ttyUSB0"});
    EXPECT_EQ(RowsOf(table), (Rows{"1=/dev/ttyS0", "2=/dev/ttyUSB0"}));
}

TEST_F(PluggedPortsTest, ADeviceKeepsItsNumberWhileOthersComeAndGo) {
    Plug({"/dev/ttyUSB0", "/dev/ttyUSB1"});
    Plug({"/dev/ttyUSB1"});
    EXPECT_EQ(RowsOf(table), Rows{"2=/dev/ttyUSB1"});
    EXPECT_EQ(table.Find(1)->device, "/dev/ttyUSB0");
    Plug({"/dev/ttyACM0", "/dev/ttyUSB0", "/dev/ttyUSB1"});
    EXPECT_EQ(RowsOf(table), (Rows{"1=/dev/ttyUSB0", "2=/dev/ttyUSB1", "3=/dev/ttyACM0"}));
}

TEST_F(PluggedPortsTest, AtMost31AndThenThoseUnpluggedGiveTheirNumbers) {
    Rows devices;
    for (int i = 0; i < 33; ++i) devices.push_back("/dev/ttyUSB" + std::to_string(i));
    Plug(devices);
    EXPECT_EQ(table.Present().size(), 31u);
    EXPECT_EQ(table.Present().back().device, "/dev/ttyUSB30");
    devices.erase(devices.begin() + 4);
    Plug(devices);
    EXPECT_EQ(table.Present().size(), 31u);
    EXPECT_EQ(table.Find(5)->device, "/dev/ttyUSB31");
}

TEST_F(PluggedPortsTest, ADeviceMayBringItsNumber) {
    listed = {{7, "COM7", "USB serial port", "A1"}, {3, "COM3", "", ""}};
    table.Refresh();
    EXPECT_EQ(RowsOf(table), (Rows{"3=COM3", "7=COM7"}));
    EXPECT_EQ(table.Find(7)->description, "USB serial port");
    EXPECT_EQ(table.Find(7)->serial, "A1");
}

TEST(PortTableTest, TheEnvironmentReplacesTheTable) {
    qputenv("MARISONDE_PORTS", "4=/dev/pts/9");
    EXPECT_EQ(RowsOf(PortTable::ForThisComputer()), Rows{"4=/dev/pts/9"});
    qunsetenv("MARISONDE_PORTS");
    const PortTable real = PortTable::ForThisComputer();
    int last = 0;
    for (const PortEntry& entry : real.Present()) {
        EXPECT_GT(entry.number, last);
        EXPECT_NE(entry.device, "");
        last = entry.number;
    }
    EXPECT_LE(last, kMaxPortNumber);
}

TEST(NaturalLessTest, DigitsCompareByValue) {
    EXPECT_TRUE(NaturalLess("ttyS2", "ttyS10"));
    EXPECT_FALSE(NaturalLess("ttyS10", "ttyS2"));
    EXPECT_TRUE(NaturalLess("ttyACM0", "ttyS0"));
    EXPECT_TRUE(NaturalLess("tty", "tty0"));
    EXPECT_FALSE(NaturalLess("a07", "a7"));
    EXPECT_TRUE(NaturalLess("a99999999999999999998", "a99999999999999999999"));
}

}  // namespace
}  // namespace marisonde
