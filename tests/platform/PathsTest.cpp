#include <QDir>
#include <gtest/gtest.h>
#include <vector>

#include "platform/Paths.h"
#include "support/TestFolder.h"

namespace marisonde {
namespace {

/// Sets a variable of the environment for the length of a test.
class Environment {
  public:
    Environment(const char* name, const QByteArray& value) : name_(name), before_(qgetenv(name)) {
        value.isEmpty() ? qunsetenv(name) : qputenv(name, value);
    }
    ~Environment() { before_.isNull() ? qunsetenv(name_) : qputenv(name_, before_); }

  private:
    const char* name_;
    QByteArray before_;
};

using Folders = std::vector<std::filesystem::path>;

TEST(PathsTest, TheTemporaryFolderComesFromSettingThenTempThenTmpThenSystem) {
    const Environment temp("TEMP", "/from/temp");
    const Environment tmp("TMP", "/from/tmp");
    MapSettings settings;
    Folders folders = TemporaryFolders(settings);
    ASSERT_GE(folders.size(), 3u);
    EXPECT_EQ(folders[0], "/from/temp");
    EXPECT_EQ(folders[1], "/from/tmp");
    EXPECT_EQ(folders[2], PathFromText(QDir::tempPath()));
    settings.SaveSetting("App", "TempPath", "/from/setting/");
    EXPECT_EQ(TemporaryFolders(settings)[0], "/from/setting");
    EXPECT_EQ(TemporaryFolders(settings)[1], "/from/temp");
}

TEST(PathsTest, EmptyAndRepeatedTemporaryFoldersAreLeftOut) {
    const Environment temp("TEMP", QDir::tempPath().toLocal8Bit());
    const Environment tmp("TMP", "  ");
    EXPECT_EQ(TemporaryFolders(MapSettings()).front(), PathFromText(QDir::tempPath()));
#ifndef Q_OS_WIN
    EXPECT_EQ(TemporaryFolders(MapSettings()).size(), 1u);
#endif
}

TEST(PathsTest, TheDataFolderIsTheFirstThatHoldsTheTable) {
    const TestFolder folder;
    TestFolder::Write(folder / "b" / "aStar.csv", "x");
    TestFolder::Write(folder / "c" / "aStar.csv", "x");
    EXPECT_EQ(DataFolderAmong({folder / "a", folder / "b", folder / "c"}), folder / "b");
    EXPECT_EQ(DataFolderAmong({folder / "a"}), "");
}

TEST(PathsTest, SettingsFileCanBeNamedByTheEnvironment) {
    {
        const Environment named("MARISONDE_SETTINGS", "/some/where/file.ini");
        EXPECT_EQ(SettingsFile(), QStringLiteral("/some/where/file.ini"));
    }
    const Environment unset("MARISONDE_SETTINGS", "");
    EXPECT_TRUE(SettingsFile().endsWith(QStringLiteral("/Marisonde/Marisonde.ini")));
}

TEST(PathsTest, FoldersOfTheProgramAndTheUser) {
    EXPECT_TRUE(std::filesystem::is_directory(ProgramFolder()));
    EXPECT_EQ(UserDataFolder().filename(), "Marisonde");
    EXPECT_EQ(RecoveredFolder(), UserDataFolder() / "recovered");
}

#ifdef Q_OS_UNIX
TEST(PathsTest, NamesThatAreNotUtf8DoNotThrow) {
    EXPECT_EQ(PathFromText(TextFromPath("/data/\xC3\xA9t\xC3\xA9")), "/data/\xC3\xA9t\xC3\xA9");
    EXPECT_NO_THROW(TextFromPath("/data/\xE9t\xE9"));
}
#endif

}  // namespace
}  // namespace marisonde
