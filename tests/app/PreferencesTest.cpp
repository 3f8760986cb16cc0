#include <array>
#include <gtest/gtest.h>
#include <string>
#include <string_view>

#include "app/Preferences.h"

namespace marisonde {
namespace {

/// A stored setting and the text of its default; nullptr: it is not stored before it has a value.
struct Row {
    std::string_view section, key;
    const char* text;
};
constexpr std::array kDefaults{
    Row{"App", "ConnectOnStartup", "0"},
    Row{"App", "NameFilesOnOpen", "0"},
    Row{"App", "UserHeader", ""},
    Row{"App", "RecallLastCal", "1"},
    Row{"App", "SavePath", "/opt/marisonde/"},
    Row{"App", "OpenPath", "/opt/marisonde/"},
    Row{"App", "OpenCalPath", "/opt/marisonde/"},
    Row{"App", "CalFile", ""},
    Row{"App", "ORCA", "False"},
    Row{"App", "MaxGraphPoints", "50000"},
    Row{"App", "OrcaX", "2.7"},
    Row{"App", "OrcaCThreshold", "0.02"},
    Row{"App", "OrcaInherentC", "0.2"},
    Row{"App", "OrcaVertical", "False"},
    Row{"Connection", "Port", nullptr},
    Row{"Connection", "Baud", "9600"},
    Row{"Connection", "LoadCal", "1"},
    Row{"GraphDefaults", "Sigma", "True"},
    Row{"GraphDefaults", "VsTime", "FALSE"},
};

class PreferencesTest : public testing::Test {
  protected:
    bool Load(std::string_view folder = "/opt/marisonde") { return LoadPreferences(settings, folder, prefs); }

    MapSettings settings;
    Preferences prefs;
};

TEST_F(PreferencesTest, EverySettingHasItsDefault) {
    Load();
    EXPECT_EQ(prefs.ConnectOnStartup, 0);
    EXPECT_FALSE(prefs.NameFilesOnOpen);
    EXPECT_EQ(prefs.UserHeader, "");
    EXPECT_TRUE(prefs.RecallLastCal);
    EXPECT_EQ(prefs.CalFile, "");
    EXPECT_FALSE(prefs.ORCA);
    EXPECT_EQ(prefs.MaxGraphPoints, 50000);
    EXPECT_EQ(prefs.OrcaX, 2.7);
    EXPECT_EQ(prefs.OrcaCThreshold, 0.02);
    EXPECT_EQ(prefs.OrcaInherentC, 0.2);
    EXPECT_FALSE(prefs.OrcaVertical);
    EXPECT_EQ(prefs.Port, 0);
    EXPECT_EQ(prefs.Baud, 9600);
    EXPECT_TRUE(prefs.LoadCal);
    EXPECT_TRUE(prefs.Sigma);
    EXPECT_FALSE(prefs.VsTime);
}

TEST_F(PreferencesTest, DefaultsAreWrittenUnderTheirSections) {
    Load();
    SavePreferences(settings, prefs);
    for (const Row& row : kDefaults)
        EXPECT_EQ(settings.GetSetting(row.section, row.key, "nothing"), row.text ? row.text : "nothing")
            << row.key;
}

TEST_F(PreferencesTest, EverySettingComesBack) {
    constexpr std::array kOther{
        Row{"App", "ConnectOnStartup", "2"},
        Row{"App", "NameFilesOnOpen", "1"},
        Row{"App", "UserHeader", "Leg 2, station 14"},
        Row{"App", "RecallLastCal", "0"},
        Row{"App", "SavePath", "/a/"},
        Row{"App", "OpenPath", "/b/"},
        Row{"App", "OpenCalPath", "/c/"},
        Row{"App", "CalFile", "/c/one.cal"},
        Row{"App", "ORCA", "True"},
        Row{"App", "MaxGraphPoints", "2000"},
        Row{"App", "OrcaX", "3.5"},
        Row{"App", "OrcaCThreshold", "0.5"},
        Row{"App", "OrcaInherentC", "0.25"},
        Row{"App", "OrcaVertical", "True"},
        Row{"Connection", "Port", "7"},
        Row{"Connection", "Baud", "19200"},
        Row{"Connection", "LoadCal", "0"},
        Row{"GraphDefaults", "Sigma", "False"},
        Row{"GraphDefaults", "VsTime", "TRUE"},
    };
    static_assert(kOther.size() == kDefaults.size());
    for (const Row& row : kOther) settings.SaveSetting(row.section, row.key, row.text);
    Load();
    MapSettings written;
    SavePreferences(written, prefs);
    for (const Row& row : kOther)
        EXPECT_EQ(written.GetSetting(row.section, row.key, ""), row.text) << row.key;
}

TEST_F(PreferencesTest, AUserIsNewOnce) {
    EXPECT_TRUE(Load());
    EXPECT_EQ(settings.GetSetting("App", "Path", ""), "/opt/marisonde/");
    EXPECT_FALSE(Load("/elsewhere"));
    EXPECT_EQ(prefs.Path, "/opt/marisonde/");
    EXPECT_EQ(prefs.SavePath, "/opt/marisonde/");
    EXPECT_EQ(NewUserNotice(),
              "The current user profile does not yet have Marisonde preferences.  This is OK, but note that "
              "each user's Marisonde settings are independent.  This user's settings will be set to their "
              "defaults.");
}

TEST_F(PreferencesTest, ABadNumberReadsAsNought) {
    for (const char* key : {"ConnectOnStartup", "MaxGraphPoints", "OrcaX", "RecallLastCal"})
        settings.SaveSetting("App", key, "many");
    Load();
    EXPECT_EQ(prefs.ConnectOnStartup, 0);
    EXPECT_EQ(prefs.MaxGraphPoints, 0);
    EXPECT_EQ(prefs.OrcaX, 0);
    EXPECT_FALSE(prefs.RecallLastCal);
}

TEST_F(PreferencesTest, FlagsAreWordsOrNumbers) {
    for (const char* text : {"True", "TRUE", "true", " true ", "1", "-1"})
        EXPECT_TRUE(FlagFromText(text)) << text;
    for (const char* text : {"", "False", "FALSE", "0", "yes"}) EXPECT_FALSE(FlagFromText(text)) << text;
}

TEST_F(PreferencesTest, GraphPointsAreHeldToTheirRange) {
    EXPECT_EQ(ClampGraphPoints(5), 1000);
    EXPECT_EQ(ClampGraphPoints(999), 1000);
    EXPECT_EQ(ClampGraphPoints(1500), 1500);
    EXPECT_EQ(ClampGraphPoints(100001), 100000);
    EXPECT_EQ(ClampGraphPoints(500000), 100000);
    EXPECT_EQ(ClampGraphPoints(1e30), 100000);
}

}  // namespace
}  // namespace marisonde
