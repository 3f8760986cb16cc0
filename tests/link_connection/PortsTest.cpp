#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <unistd.h>

#include "link/PortRemedy.h"
#include "link/SimulatedPorts.h"
#include "simulator/Instrument.h"
#include "support/TestFolder.h"

namespace marisonde {
namespace {

using Kind = LineError::Kind;
using simulator::Model;

TEST(PortRemedyTest, DeniedNamesTheGroupAndTheCommand) {
    const std::string text = PortRemedy({Kind::Denied, ""}, "/dev/ttyUSB0", {"dialout", "anna", false});
    EXPECT_EQ(
        text,
        "The device /dev/ttyUSB0 belongs to the group \"dialout\".  To become a member, run \"sudo usermod "
        "-aG dialout anna\" in a terminal, then log out and in again.");
}

TEST(PortRemedyTest, AMemberOfTheGroupMustLogInAgain) {
    const std::string text = PortRemedy({Kind::Denied, ""}, "/dev/ttyUSB0", {"dialout", "anna", true});
    EXPECT_NE(text.find("log out and in again"), std::string::npos);
    EXPECT_EQ(text.find("usermod"), std::string::npos);
}

TEST(PortRemedyTest, WithoutAGroupTheAdministratorHelps) {
    EXPECT_EQ(PortRemedy({Kind::Denied, ""}, "/dev/ttyS0", {}),
              "Ask the administrator of this computer for the right to use /dev/ttyS0.");
}

TEST(PortRemedyTest, BusyAndGoneSaySo) {
    EXPECT_NE(PortRemedy({Kind::Busy, ""}, "x", {}).find("is using it"), std::string::npos);
    EXPECT_NE(PortRemedy({Kind::NotFound, ""}, "x", {}).find("gone"), std::string::npos);
    EXPECT_NE(PortRemedy({Kind::Gone, ""}, "x", {}).find("gone"), std::string::npos);
    EXPECT_EQ(PortRemedy({Kind::Other, ""}, "x", {}), "");
    EXPECT_EQ(PortRemedy({}, "x", {}), "");
}

TEST(PortRemedyTest, ADeviceClosedToItsGroupNamesNoGroup) {
    const TestFolder folder;
    TestFolder::Write(folder / "device", "");
    std::filesystem::permissions(folder / "device", std::filesystem::perms::owner_all);
    EXPECT_EQ(AccessTo((folder / "device").string()).group, "");
    EXPECT_EQ(AccessTo((folder / "none").string()).group, "");
}

class SimulatedPortsTest : public testing::Test {
  protected:
    VirtualClock clock;
    SimulatedPorts ports{clock};
};

TEST_F(SimulatedPortsTest, ListsTheModelBehindEachNumber) {
    EXPECT_EQ(ports.Add(simulator::MakeInstrument(Model::Corvane6)), 1);
    EXPECT_EQ(ports.Add(simulator::MakeInstrument(Model::Delph4)), 2);
    const auto present = ports.Present();
    ASSERT_EQ(present.size(), 2u);
    EXPECT_EQ(present[0].number, 1);
    EXPECT_EQ(present[0].description, "Simulated Corvane-6");
    EXPECT_EQ(present[0].serial, "CV060412");
    EXPECT_EQ(present[1].description, "Simulated Delph-4");
    EXPECT_EQ(present[1].serial, "D4080102");
}

TEST_F(SimulatedPortsTest, TellTheSerialThatTheInstrumentWasGiven) {
    simulator::Options options;
    options.serial = "CV6-123";
    ports.Add(simulator::MakeInstrument(Model::Corvane6, options));
    EXPECT_EQ(ports.Present()[0].serial, "CV6-123");
}

TEST_F(SimulatedPortsTest, OneLineAtATimeHasAPort) {
    ports.Add(simulator::MakeInstrument(Model::Corvane6));
    const auto first = ports.MakeLine();
    const auto second = ports.MakeLine();
    EXPECT_FALSE(first->Open(1, 19200));
    EXPECT_EQ(second->Open(1, 19200).kind, Kind::Busy);
    EXPECT_EQ(second->Open(2, 19200).kind, Kind::NotFound);
    EXPECT_TRUE(PortAvailable(ports, 1)) << "in use is not gone";
    EXPECT_FALSE(PortAvailable(ports, 2));
    first->Close();
    EXPECT_FALSE(second->Open(1, 19200));
    EXPECT_TRUE(second->IsOpen());
}

TEST_F(SimulatedPortsTest, ALineThatDiesFreesItsPort) {
    ports.Add(simulator::MakeInstrument(Model::Corvane6));
    auto first = ports.MakeLine();
    EXPECT_FALSE(first->Open(1, 19200));
    first.reset();
    EXPECT_FALSE(ports.MakeLine()->Open(1, 19200));
}

TEST_F(SimulatedPortsTest, AVanishedInstrumentIsToldOnceAndIsNotListed) {
    simulator::Options options;
    options.faults.vanishAt = std::chrono::seconds(1);
    ports.Add(simulator::MakeInstrument(Model::Corvane6, options));
    const auto line = ports.MakeLine();
    EXPECT_FALSE(line->Open(1, 19200));
    clock.AdvanceBy(std::chrono::seconds(2));
    std::string bytes;
    line->ReadAll(bytes);
    EXPECT_EQ(line->LastError().kind, Kind::Gone);
    EXPECT_FALSE(line->IsOpen());
    EXPECT_TRUE(ports.Present().empty());
    ASSERT_TRUE(ports.Known(1)) << "it is still known what was there";
    EXPECT_EQ(ports.Known(1)->description, "Simulated Corvane-6");
    EXPECT_FALSE(ports.Known(2));
}

}  // namespace
}  // namespace marisonde
