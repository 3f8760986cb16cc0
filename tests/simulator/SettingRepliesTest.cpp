#include "simulator/Conversation.h"

namespace marisonde::simulator {
namespace {

using namespace std::chrono_literals;

TEST(CorvaneSettings, AreListedInTheOrderOfTheLogCommand) {
    Conversation talk(Model::Corvane4);
    EXPECT_EQ(talk.Ask("LOG"), Lines({"Period: 0.5", "Start delay: 0", "Sleep on memory full: 0",
                                      "Start on power: 0", "Burst mode: off", "Warmup time: 2",
                                      "Burst length: 10", "Burst cycle: 60", "Total duration: 0"}));
}

TEST(CorvaneSettings, ShowTheShutterBehindThem) {
    Conversation talk(Model::Corvane6);
    EXPECT_TRUE(
        talk.Ask("LOG").ends_with(Lines({"Total duration: 0", "Shutter enabled: 1", "Automatic open: 1",
                                         "Shutter close time: 2.5", "Shutter direction: CW"})));
    // Firmware before 1.81 has no switch for it.
    Conversation old(Model::Corvane6, {.firmware = "1.80"});
    EXPECT_TRUE(old.Ask("LOG").ends_with(Lines(
        {"Total duration: 0", "Automatic open: 1", "Shutter close time: 2.5", "Shutter direction: CW"})));
}

TEST(CorvaneSettings, AreSetByOneLine) {
    Conversation talk(Model::Corvane4);
    // A period that begins with a blank for its sign.
    const std::string listing = Lines({"Period: 2.25", "Start delay: 3", "Sleep on memory full: 1",
                                       "Start on power: 1", "Burst mode: on", "Warmup time: 4",
                                       "Burst length: 20", "Burst cycle: 120", "Total duration: 3600"});
    EXPECT_EQ(talk.Ask("LOG, 2.25,3,1,1,1,4,20,120,3600"), listing);
    EXPECT_EQ(talk.Ask("LOG"), listing);
    EXPECT_TRUE(talk.Ask("LOG,,7").starts_with("Period: 2.25\r\nStart delay: 7\r\n"));  // empty ones stay
}

TEST(CorvaneSettings, RefuseAllOfALineWithOneBadValue) {
    Conversation talk(Model::Corvane4);
    const std::string before = talk.Ask("LOG");
    for (const char* const bad : {"LOG,0.05", "LOG,soon", "LOG,1,-1", "LOG,1,0,2", "LOG,1,0,0,0,on",
                                  "LOG,1,0,0,0,1,2,61,60,0", "LOG,1,0,0,0,1,2,3,4,5,6"})
        EXPECT_EQ(talk.Ask(bad), "Value refused\r\n") << bad;
    EXPECT_EQ(talk.Ask("LOG"), before);
}

TEST(CorvaneSettings, OfTheShutter) {
    Conversation talk(Model::Corvane6);
    EXPECT_EQ(talk.Ask("shutter,0,1,5,CCW"), Lines({"Shutter enabled: 0", "Automatic open: 1",
                                                    "Shutter close time: 5", "Shutter direction: CCW"}));
    EXPECT_EQ(talk.Ask("shutter,1,1,5,left"), "Value refused\r\n");
    Conversation old(Model::Corvane6, {.firmware = "1.80"});
    EXPECT_EQ(old.Ask("shutter,0,5,"),
              Lines({"Automatic open: 0", "Shutter close time: 5", "Shutter direction: CW"}));
    Conversation without(Model::Corvane4);
    EXPECT_EQ(without.Ask("shutter,1,1,5,CW"), "Unknown command\r\n");
}

TEST(CorvaneSettings, TheShutterMovesAsItIsSet) {
    Conversation talk(Model::Corvane6);
    talk.Ask("shutter,1,1,5,CW");
    EXPECT_EQ(talk.Ask("START,0", 4900ms), "Opening shutter");
    EXPECT_EQ(talk.Listen(1s).substr(0, 8), "..done\r\n");
    Conversation off(Model::Corvane6);
    off.Ask("shutter,0");
    EXPECT_EQ(off.Ask("START,0", 500ms), "Starting in 5\r\n");
    Conversation byHand(Model::Corvane6);
    byHand.Ask("shutter,,0");
    EXPECT_EQ(byHand.Ask("START,0", 500ms), "Starting in 5\r\n");
}

TEST(CorvaneSettings, LastUntilRestartUnlessStored) {
    Conversation talk(Model::Corvane4);
    talk.Ask("LOG,2");
    talk.instrument->Restart(talk.now);
    EXPECT_EQ(talk.Value("LOG", "Period"), "0.5");
    talk.Ask("LOG,2");
    EXPECT_EQ(talk.Ask("STORELOG"), "Storing parameters..OK\r\n");
    talk.Ask("LOG,3");
    talk.instrument->Restart(talk.now);
    EXPECT_EQ(talk.Value("LOG", "Period"), "2");
}

TEST(Sharing, IsToldForEachFluorescenceChannel) {
    Conversation six(Model::Corvane6);
    EXPECT_EQ(six.Ask("FL"), "FL status: 0\r\nFL status: 0\r\n");
    Conversation two(Model::Corvane2);
    EXPECT_EQ(two.Ask("FL"), "FL status: 0\r\n");
}

TEST(Sharing, IsSetByWavelengthByNameOrForAll) {
    Conversation talk(Model::Corvane6);  // fl510 and fl700
    EXPECT_EQ(talk.Ask("fl510,2"), "FL status: 2\r\nFL status: 0\r\n");
    EXPECT_EQ(talk.Ask("FLfl700,1"), "FL status: 2\r\nFL status: 1\r\n");
    EXPECT_EQ(talk.Ask("fl,0"), "FL status: 0\r\nFL status: 0\r\n");
    for (const char* const bad : {"fl510,3", "fl620,1", "fl510", "fl510,1,1", "fl510,x"})
        EXPECT_EQ(talk.Ask(bad), "Value refused\r\n") << bad;
}

TEST(Sharing, NeedsAPeriodOfThreeTenths) {
    Conversation talk(Model::Corvane6);
    talk.Ask("LOG,0.29");
    EXPECT_EQ(talk.Ask("fl510,2"), "Value refused\r\n");
    talk.Ask("LOG,0.3");
    EXPECT_EQ(talk.Ask("fl510,2"), "FL status: 2\r\nFL status: 0\r\n");
    EXPECT_EQ(talk.Ask("LOG,0.29"), "Value refused\r\n");
    talk.Ask("fl510,1");
    EXPECT_EQ(talk.Value("LOG,0.29", "Period"), "0.29");
}

TEST(Sharing, IsKeptByStoring) {
    Conversation talk(Model::Corvane6);
    talk.Ask("fl700,2");
    EXPECT_EQ(talk.Ask("STOREFL"), "Storing parameters..OK\r\n");
    talk.Ask("fl510,2");
    talk.instrument->Restart(talk.now);
    EXPECT_EQ(talk.Ask("FL"), "FL status: 0\r\nFL status: 2\r\n");
}

TEST(TidalSettings, AreAskedOneByOne) {
    Conversation talk(Model::LTidal);
    EXPECT_EQ(talk.Ask("DATAFORMAT"), "Data format: hex\r\n");
    EXPECT_EQ(talk.Ask("PERIOD"), "Period: 0.25\r\n");
    EXPECT_EQ(talk.Ask("STARTDELAY"), "Start delay: 0\r\n");
    EXPECT_EQ(talk.Ask("BURST"), Lines({"Burst mode: off", "Burst length: 10", "Burst cycle: 60"}));
    Conversation decimal(Model::XTidal);
    EXPECT_EQ(decimal.Ask("DATAFORMAT"), "Data format: decimal\r\n");
}

TEST(TidalSettings, AreSetOneByOne) {
    Conversation talk(Model::NTidal);
    EXPECT_EQ(talk.Ask("PERIOD,2"), "Period: 2\r\n");
    EXPECT_EQ(talk.Ask("PERIOD3"), "Period: 3\r\n");
    EXPECT_EQ(talk.Ask("STARTDELAY 4"), "Start delay: 4\r\n");
    EXPECT_EQ(talk.Value("BURST,1", "Burst mode"), "on");
    EXPECT_EQ(talk.Ask("BURSTCYCLE,100"), "Burst cycle: 100\r\n");
    EXPECT_EQ(talk.Ask("BURSTLENGTH,100"), "Burst length: 100\r\n");
    // A burst is never longer than its cycle, at no moment.
    EXPECT_EQ(talk.Ask("BURSTLENGTH,101"), "Value refused\r\n");
    EXPECT_EQ(talk.Ask("BURSTCYCLE,99"), "Value refused\r\n");
    EXPECT_EQ(talk.Ask("DATAFORMAT,X"), "Value refused\r\n");
    EXPECT_EQ(talk.Ask("power1"), "");
}

TEST(TidalSettings, TheDataFormatChangesTheLines) {
    Conversation talk(Model::LTidal, {.startCountdown = 0});
    EXPECT_EQ(talk.Ask("DATAFORMAT,D"), "Data format: decimal\r\n");
    const std::string decimal = talk.Ask("START", 2s);
    EXPECT_EQ(host::Commas(decimal.substr(0, decimal.find('\r'))), 11);
    talk.AskWithEcho("STOP\r");
    talk.Ask("DATAFORMAT,H");
    EXPECT_EQ(talk.Ask("START", 2s).substr(0, 2), "*A");
}

TEST(DelphSettings, AreListedAndSetInTheirOwnOrder) {
    Conversation talk(Model::Fathom2);
    EXPECT_EQ(talk.Ask("LOG"),
              Lines({"Period: 0.25", "Start delay: 0", "Start on power: 0", "Burst mode: off",
                     "Warmup time: 2", "Burst length: 10", "Burst cycle: 60"}));
    // The comma at the end belongs to the form.
    EXPECT_EQ(talk.Ask("LOG,1,2,1,1,3,4,5,"),
              Lines({"Period: 1", "Start delay: 2", "Start on power: 1", "Burst mode: on", "Warmup time: 3",
                     "Burst length: 4", "Burst cycle: 5"}));
    talk.Ask("STORELOG");
    talk.instrument->Restart(talk.now);
    EXPECT_EQ(talk.Value("LOG", "Burst cycle"), "5");
}

TEST(Settings, GovernTheSampling) {
    Conversation talk(Model::Delph2, {.startCountdown = 0});
    talk.Ask("LOG,2,1");
    talk.Ask("START", 20s);  // the delay of 1 s counts down as well: at 1, 3, ... 19 s
    EXPECT_EQ(talk.instrument->SampleCount(), 10);
}

TEST(Settings, BurstsHaveGaps) {
    Conversation talk(Model::NTidal, {.startCountdown = 1});
    talk.Ask("PERIOD,1");
    talk.Ask("BURSTLENGTH,3");
    talk.Ask("BURSTCYCLE,10");
    talk.Ask("BURST,1");
    talk.Ask("START", 26500ms);  // behind the countdown, at 0, 1, 2, 10, 11, 12, 20, 21 and 22 s
    EXPECT_EQ(talk.instrument->SampleCount(), 9);
}

}  // namespace
}  // namespace marisonde::simulator
