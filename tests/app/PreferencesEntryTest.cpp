#include "app/PreferencesEntry.h"
#include "app/WindowFixture.h"

namespace marisonde {
namespace {

class PreferencesEntryTest : public WindowFixture {
  protected:
    PreferencesEntry entry = EntryOf(app.prefs);
    void TakePoints(const char* typed) {
        entry.MaxGraphPoints = typed;
        ASSERT_EQ(ValidatePreferences(entry), "") << typed;
        TakePreferences(app, entry);
    }
};

TEST_F(PreferencesEntryTest, ShowsWhatIsInForce) {
    EXPECT_EQ(entry.ConnectOption, 0);
    EXPECT_FALSE(entry.FileNameOnDetect);
    EXPECT_EQ(entry.HeaderText, "");
    EXPECT_TRUE(entry.RecallLastCal);
    EXPECT_EQ(entry.MaxGraphPoints, "50000");
    EXPECT_FALSE(entry.ORCA);
}

TEST_F(PreferencesEntryTest, IsSavedAtOnceButForOrca) {
    entry = {2, true, "RV Example, cruise 7", false, "2500", true};
    TakePreferences(app, entry);
    const auto stored = [this](const char* key) { return settings.GetSetting("App", key, "-"); };
    EXPECT_EQ(stored("ConnectOnStartup"), "2");
    EXPECT_EQ(stored("NameFilesOnOpen"), "1");
    EXPECT_EQ(stored("UserHeader"), "RV Example, cruise 7");
    EXPECT_EQ(stored("RecallLastCal"), "0");
    EXPECT_EQ(stored("MaxGraphPoints"), "2500");
    EXPECT_EQ(stored("ORCA"), "-");
    EXPECT_TRUE(app.prefs.ORCA);
    EXPECT_EQ(stored("SavePath"), "-");
    SavePreferences(settings, app.prefs);
    EXPECT_EQ(stored("ORCA"), "True");
    Preferences loaded;
    LoadPreferences(settings, "/opt", loaded);
    const PreferencesEntry again = EntryOf(loaded);
    EXPECT_EQ(again.ConnectOption, 2);
    EXPECT_TRUE(again.FileNameOnDetect);
    EXPECT_EQ(again.HeaderText, "RV Example, cruise 7");
    EXPECT_FALSE(again.RecallLastCal);
    EXPECT_EQ(again.MaxGraphPoints, "2500");
    EXPECT_TRUE(again.ORCA);
}

TEST_F(PreferencesEntryTest, GraphPointsAreHeldToTheirRange) {
    const std::vector<std::pair<const char*, int>> cases{
        {"5", 1000},        {"500000", 100000}, {"999", 1000},    {"1000", 1000},
        {"100000", 100000}, {"100001", 100000}, {"-7", 1000},     {"2e4", 20000},
        {" 1500 ", 1500},   {"1500.4", 1500},   {"1E30", 100000},
    };
    for (const auto& [typed, held] : cases) {
        TakePoints(typed);
        EXPECT_EQ(app.prefs.MaxGraphPoints, held) << typed;
        EXPECT_EQ(settings.GetSetting("App", "MaxGraphPoints", ""), std::to_string(held)) << typed;
    }
}

TEST_F(PreferencesEntryTest, GraphPointsMustBeANumber) {
    for (const char* typed : {"", "many", "50 000", "50,000", "1-2"}) {
        entry.MaxGraphPoints = typed;
        EXPECT_EQ(ValidatePreferences(entry),
                  "Please enter a numeric value between 1000 and 100000 for the points of a graph.")
            << typed;
    }
}

TEST_F(PreferencesEntryTest, NewLimitOfPointsActsAtOnceAndLosesNone) {
    const auto first = Simulated(simulator::Model::Corvane6, {});
    const auto second = Simulated(simulator::Model::Delph2, {});
    Run(*first, std::chrono::seconds(90));
    const int points = first->Plot.PlotIndex() - 1;
    ASSERT_GT(points, 50);
    const double oldest = first->Chart.ChartGroups(1).X(1);
    const double newest = first->Chart.ChartGroups(1).X(points);
    TakePoints("1000");
    for (DataWindow* window : {first.get(), second.get()}) EXPECT_EQ(window->Plot.MaxGraphPoints, 1000);
    TakePoints("100000");
    for (DataWindow* window : {first.get(), second.get()}) EXPECT_EQ(window->Plot.MaxGraphPoints, 100000);
    EXPECT_EQ(first->Plot.PlotIndex() - 1, points);
    EXPECT_EQ(first->Chart.ChartGroups(1).X(1), oldest);
    EXPECT_EQ(first->Chart.ChartGroups(1).X(points), newest);
}

}  // namespace
}  // namespace marisonde
