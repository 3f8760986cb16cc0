#include "simulator/Conversation.h"

namespace marisonde::simulator {
namespace {

using namespace std::chrono_literals;

std::vector<std::string> SplitLines(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t from = 0; from < text.size();) {
        const auto end = text.find("\r\n", from);
        lines.push_back(text.substr(from, end - from));
        from = end + 2;
    }
    return lines;
}

TEST(GlobalReply, HasTenLines) {
    Conversation talk(Model::Corvane6);
    // 4 July 2011 less 45 days is 20 May: 4 days to 30 June, 30 to 31 May, 11 more.
    EXPECT_EQ(talk.Ask("GCF"),
              Lines({"Model: CV6", "S/N: CV060412", "Config: 6F2T1", "ID: Simulated", "Firmware: 1.85",
                     "Maximum depth: 500", "Depth coefficient: 0.0104", "Depth offset: 12.37",
                     "Cal temp: 20.3", "Cal Time: 05/20/11 09:15:22"}));
}

TEST(GlobalReply, TheCalibrationMayBeOld) {
    // 181 days before 4 July 2011 is 4 January: 181 days from 1 January to 1 July in a common year.
    Conversation talk(Model::Corvane4, {.calAgeDays = 181});
    EXPECT_EQ(talk.Value("GCF", "Cal Time"), "01/04/11 09:15:22");
    const Conversation tidal(Model::LTidal, {.calAgeDays = 181});
    EXPECT_NE(tidal.instrument->CalText().find("(01/04/11 09:15:22)"), std::string::npos);
}

TEST(ChannelReply, HasTheNameTheValuesAndTheGains) {
    Conversation talk(Model::Corvane6);
    const auto lines = SplitLines(talk.Ask("CCL,2"));
    const std::vector<std::string> wanted{"'Channel 2 (bb700)",
                                          "' muRho: 0.98",
                                          "' mu: 1.874",
                                          "' Rnom: 11870",
                                          "' Roo: 0.151",
                                          "' kbb: 6.7858",
                                          "' kc: 0",
                                          "",
                                          "' kSigma1: 0",
                                          "' kSigma2: 0",
                                          "' Kt: -0.0008",
                                          "' G1: 1: 1: 2: 0",
                                          "' G2: 9.873: 2: 3: 1",
                                          "' G3: 98.61: 4: 4: 1",
                                          "' G4: 984.2: 14: 19: 6",
                                          "' G5: 9827: 122: 175: 48"};
    ASSERT_EQ(lines.size(), wanted.size());
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        if (i != 7) {
            EXPECT_EQ(lines[i], wanted[i]);
        }
    }
    const host::Cal cal(talk.instrument->CalText());
    EXPECT_EQ(lines[7], "' kSigma0: " + cal.Text("Channel 2", "Sigma1"));
}

TEST(ChannelReply, IsGivenForTheChannelsThereAre) {
    for (const auto& [model, channels] :
         {std::pair{Model::Corvane6, 8}, {Model::Corvane4, 4}, {Model::Corvane2, 3}}) {
        Conversation talk(model);
        for (int n = 1; n <= channels; ++n)
            EXPECT_TRUE(
                talk.Ask("CCL," + std::to_string(n)).starts_with("'Channel " + std::to_string(n) + " ("));
        for (const int n : {0, channels + 1})
            EXPECT_EQ(talk.Ask("CCL," + std::to_string(n)), "Value refused\r\n");
        EXPECT_EQ(talk.Ask("CCL"), "Value refused\r\n");
    }
}

TEST(FactoryReply, NamesTheChannelsThatAFluorescenceChannelIsMadeOf) {
    Conversation talk(Model::Corvane6);
    EXPECT_EQ(talk.Ask("CCF,1"),
              Lines({"'Channel 1 (bb470)", "' lambda: 470", "' deltaLambda: 20", "' ChEx: 0", "' ChRep: 0"}));
    // fl700 is lit by channel 1 (470 nm) and received by channel 2 (700 nm); fl510 by 3 (420) and 4 (510).
    const auto pair = [&](const std::string& n) {
        return talk.Value("CCF," + n, "' ChEx") + " " + talk.Value("CCF," + n, "' ChRep");
    };
    EXPECT_EQ(pair("8"), "2 0");
    EXPECT_EQ(pair("2"), "1 8");
    EXPECT_EQ(pair("7"), "4 0");
    EXPECT_EQ(pair("4"), "3 7");
    EXPECT_EQ(pair("3"), "0 0");
}

TEST(CalFileReply, IsTheFileWithItsBlankLines) {
    for (const Model model :
         {Model::Corvane6, Model::Corvane4, Model::Corvane2, Model::Fathom2, Model::Delph6}) {
        Conversation talk(model);
        const std::string text = talk.Ask("sendcal", 10s);
        EXPECT_EQ(text, talk.instrument->CalText());
        EXPECT_NE(text.find("\r\n\r\n"), std::string::npos);
        EXPECT_TRUE(text.ends_with("[End]\r\n"));
    }
}

TEST(CalFileReply, OfMakeiniHasNoBlankInItsChannelHeadings) {
    Conversation talk(Model::Corvane6);
    const std::string text = talk.Ask("MAKEINI", 10s);
    for (int n = 1; n <= 8; ++n)
        EXPECT_NE(text.find("\r\n[Channel" + std::to_string(n) + "]\r\n"), std::string::npos);
    EXPECT_EQ(text.find("[Channel "), std::string::npos);
    EXPECT_EQ(text.size(), talk.instrument->CalText().size() - 8);
    EXPECT_TRUE(text.ends_with("[End]\r\n"));
}

TEST(CalFileReply, DependsOnWhatTheFirmwareHas) {
    Conversation old(Model::Corvane4, {.calStore = CalStore::Channels});
    EXPECT_EQ(old.Ask("sendcal"), "Unknown command\r\n");
    EXPECT_EQ(old.Ask("MAKEINI"), "Unknown command\r\n");
    EXPECT_EQ(old.Value("GCF", "Model"), "CV4");
    Conversation filed(Model::Corvane4, {.calStore = CalStore::File});
    for (const char* const command : {"GCF", "CCL,1", "CCF,1", "COF,1"})
        EXPECT_EQ(filed.Ask(command), "Unknown command\r\n");
    EXPECT_EQ(filed.Ask("sendcal", 10s), filed.instrument->CalText());
    Conversation tidal(Model::LTidal);
    EXPECT_EQ(tidal.Ask("sendcal"), "Unknown command\r\n");
}

TEST(SettingTheCalibration, ByCclIsAnsweredWithTheChannelAndHeldUntilRestart) {
    Conversation talk(Model::Corvane6);
    const std::string before = talk.Ask("CCL,1");
    // ROutOff 1024 with SigmaExp 0.25; bb to c 3 with MuRho 0.5 as a twentieth.
    const std::string set = "ccl,1,2.5,12000,1024.25,6.5,3.05,1.25,0.5,0.125,-0.001,1,10,100,1000,10000,";
    const std::vector<std::string> wanted{"'Channel 1 (bb470)",
                                          "' muRho: 0.5",
                                          "' mu: 2.5",
                                          "' Rnom: 12000",
                                          "' Roo: 1024.25",
                                          "' kbb: 6.5",
                                          "' kc: 3",
                                          "' kSigma0: 1.25",
                                          "' kSigma1: 0.5",
                                          "' kSigma2: 0.125",
                                          "' Kt: -0.001",
                                          "' G1: 1: 2: 2: 0",
                                          "' G2: 10: 3: 3: 0",
                                          "' G3: 100: 5: 4: 0",
                                          "' G4: 1000: 21: 19: 0",
                                          "' G5: 10000: 180: 175: 0"};
    EXPECT_EQ(SplitLines(talk.Ask(set)), wanted);
    const host::Cal file(talk.Ask("sendcal", 10s));
    EXPECT_EQ(file.Value("Channel 1", "Mu"), 2.5);
    EXPECT_EQ(file.Value("Channel 1", "ROutOff"), 1024);
    EXPECT_EQ(file.Value("Channel 1", "SigmaExp"), 0.25);
    talk.instrument->Restart(talk.now);
    EXPECT_EQ(talk.Ask("CCL,1"), before);
}

TEST(SettingTheCalibration, WhatIsStoredOutlivesARestart) {
    Conversation talk(Model::Corvane2);
    talk.Ask("ccl,1,2.5");
    talk.instrument->Receive("STORECCL\r", talk.now);
    EXPECT_EQ(talk.Listen(490ms), "STORECCL\r\n");
    EXPECT_EQ(talk.Listen(100ms), "Storing channel data..OK\r\n");
    talk.instrument->Restart(talk.now);
    EXPECT_EQ(talk.Value("CCL,1", "' mu"), "2.5");
    EXPECT_EQ(talk.Value("CCL,1", "' Rnom"), "12020");  // what was not named stays
}

TEST(SettingTheCalibration, CommandsWaitWhileItIsStored) {
    Conversation talk(Model::Corvane2);
    EXPECT_EQ(talk.AskWithEcho("STORECCL\rVER\r"),
              "STORECCL\r\nStoring channel data..OK\r\nVER\r\nFirmware version 1.85\r\n");
}

TEST(SettingTheCalibration, ByCofSetsTheOffsets) {
    Conversation talk(Model::Corvane6);
    const auto lines = SplitLines(talk.Ask("cof,4,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,"));
    ASSERT_EQ(lines.size(), 16U);
    EXPECT_EQ(lines[11], "' G1: 1: 1: 6: 11");
    EXPECT_EQ(lines[15], "' G5: 10183: 5: 10: 15");
}

TEST(SettingTheCalibration, ByGcfTakesTheDateOfTheClock) {
    Conversation talk(Model::Corvane4);
    EXPECT_EQ(talk.Ask("date,01/03/09 17:05:00", 500ms), "Time: 01/03/09 17:05:00\r\n");
    const auto lines = SplitLines(talk.Ask("gcf,*,,,,,18.5,11.25,0.0097", 400ms));
    ASSERT_EQ(lines.size(), 10U);
    EXPECT_EQ(lines[6], "Depth coefficient: 0.0097");
    EXPECT_EQ(lines[7], "Depth offset: 11.25");
    EXPECT_EQ(lines[8], "Cal temp: 18.5");
    EXPECT_EQ(lines[9], "Cal Time: 01/03/09 17:05:00");
    EXPECT_EQ(talk.Ask("STOREGCF"), "Storing global data..OK\r\n");
    talk.instrument->Restart(talk.now);
    EXPECT_EQ(talk.Value("GCF", "Cal temp"), "18.5");
}

TEST(SettingTheCalibration, StoringOneHalfLeavesTheOther) {
    Conversation talk(Model::Corvane4);
    talk.Ask("ccl,1,2.5");
    talk.Ask("gcf,*,,,,,18.5");
    talk.Ask("STOREGCF");
    talk.instrument->Restart(talk.now);
    EXPECT_EQ(talk.Value("CCL,1", "' mu"), "0.0702");
    EXPECT_EQ(talk.Value("GCF", "Cal temp"), "18.5");
}

TEST(SettingTheCalibration, RefusesWhatItCannotRead) {
    Conversation talk(Model::Corvane6);
    const std::string before = talk.instrument->CalText();
    for (const char* const bad : {"ccl,9,1", "ccl,1,much", "ccl,1,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15",
                                  "cof,1,x", "gcf,1,2", "gcf,*,,,,,warm", "gcf,*,,,,,1,2,3,4"})
        EXPECT_EQ(talk.Ask(bad), "Value refused\r\n") << bad;
    EXPECT_EQ(talk.instrument->CalText(), before);
}

TEST(SettingTheCalibration, DoesNotChangeWhatTheSensorsMeasure) {
    Conversation one(Model::Corvane2, {.startCountdown = 0});
    Conversation two(Model::Corvane2, {.startCountdown = 0});
    two.instrument->Receive("ccl,1,99\r", 0ms);
    one.Listen(1s);
    two.Listen(1s);
    EXPECT_EQ(one.Ask("START,0", 5s), two.Ask("START,0", 5s));
}

}  // namespace
}  // namespace marisonde::simulator
