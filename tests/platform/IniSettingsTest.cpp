#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "platform/IniSettings.h"

namespace marisonde {
namespace {

class IniSettingsTest : public testing::Test {
  protected:
    [[nodiscard]] QString Path() const { return folder.filePath(QStringLiteral("Marisonde/Marisonde.ini")); }
    /// A new object each time, as in a new run of the program.
    [[nodiscard]] std::string Read(std::string_view section, std::string_view key,
                                   std::string_view missing = "missing") const {
        return IniSettings(Path()).GetSetting(section, key, missing);
    }
    void Write(std::string_view section, std::string_view key, std::string_view value) const {
        IniSettings(Path()).SaveSetting(section, key, value);
    }
    void WriteFile(const QByteArray& bytes) const {
        ASSERT_TRUE(QDir().mkpath(QFileInfo(Path()).path()));
        QFile file(Path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    [[nodiscard]] QByteArray FileText() const {
        QFile file(Path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    QTemporaryDir folder;
};

TEST_F(IniSettingsTest, AMissingKeyGivesTheDefault) {
    EXPECT_EQ(Read("App", "Instance", "none"), "none");
    EXPECT_EQ(Read("App", "Instance", ""), "");
    EXPECT_FALSE(QFile::exists(Path()));
}

TEST_F(IniSettingsTest, ValuesComeBackInTheNextRun) {
    Write("App", "2.85", "TRUE");
    Write("Connection", "Baud", "19200");
    EXPECT_EQ(Read("App", "2.85"), "TRUE");
    EXPECT_EQ(Read("Connection", "Baud"), "19200");
    EXPECT_EQ(FileText(), "[App]\n2.85=TRUE\n\n[Connection]\nBaud=19200\n");
}

TEST_F(IniSettingsTest, AnEmptyValueIsNotAMissingOne) {
    Write("App", "UserHeader", "");
    EXPECT_EQ(Read("App", "UserHeader"), "");
}

class IniSettingsNameTest : public IniSettingsTest, public testing::WithParamInterface<std::string> {};

TEST_P(IniSettingsNameTest, SectionsAndKeysMayHoldAnyCharacters) {
    Write(GetParam(), "RemindDate", "as section");
    Write("App", GetParam(), "as key");
    EXPECT_EQ(Read(GetParam(), "RemindDate"), "as section");
    EXPECT_EQ(Read("App", GetParam()), "as key");
    EXPECT_EQ(Read("App", "RemindDate"), "missing");
}

INSTANTIATE_TEST_SUITE_P(Names, IniSettingsNameTest,
                         testing::Values("", "General", "%General", "VB1234", "VB/12 34", "a\\b", "[x]=;#",
                                         "_", "_5F", "50%", "\xE9\xFF", std::string("\0\n\r", 3), "../up",
                                         "@ByteArray(x)"));

TEST_F(IniSettingsTest, DifferentNamesNeverMeet) {
    Write("a/b", "c", "1");
    Write("a", "b/c", "2");
    Write("a_2Fb", "c", "3");
    EXPECT_EQ(Read("a/b", "c"), "1");
    EXPECT_EQ(Read("a", "b/c"), "2");
    EXPECT_EQ(Read("a_2Fb", "c"), "3");
}

class IniSettingsValueTest : public IniSettingsTest, public testing::WithParamInterface<std::string> {};

TEST_P(IniSettingsValueTest, ComesBackByteForByte) {
    Write("App", "UserHeader", GetParam());
    EXPECT_EQ(Read("App", "UserHeader"), GetParam());
}

INSTANTIATE_TEST_SUITE_P(Values, IniSettingsValueTest,
                         testing::Values("C:\\Data\\", "a, b; c = \"d\"", "  blanks  ", "line\r\nline\ttab",
                                         "\xC3\xA9t\xC3\xA9", "\xE9t\xE9", "@ByteArray(x)", "@Invalid()",
                                         "@@", "100%", std::string("nul\0inside", 10),
                                         std::string(5000, 'x')));

TEST_F(IniSettingsTest, TheEventLoopSavesWithoutBeingAsked) {
    IniSettings settings(Path());
    settings.SaveSetting("App", "SavePath", "/data/");
    EXPECT_EQ(FileText(), "");
    QCoreApplication::processEvents();
    EXPECT_EQ(FileText(), "[App]\nSavePath=/data/\n");
}

TEST_F(IniSettingsTest, ADamagedFileGivesWhatCanBeReadAndTakesNewValues) {
    WriteFile("[App]\nSavePath=/data/\nno equals sign\n[unclosed\n" + QByteArray::fromHex("FFFE0001") +
              "=x\n[Connection]\nBaud=9600\n");
    EXPECT_EQ(Read("App", "SavePath"), "/data/");
    EXPECT_EQ(Read("Connection", "Baud"), "9600");
    Write("Connection", "Port", "3");
    EXPECT_EQ(Read("Connection", "Port"), "3");
    EXPECT_EQ(Read("Connection", "Baud"), "9600");
}

TEST_F(IniSettingsTest, ACommaWrittenByHandIsPartOfTheValue) {
    WriteFile("[App]\nUserHeader=cast one, station 5\n");
    EXPECT_EQ(Read("App", "UserHeader"), "cast one, station 5");
}

TEST_F(IniSettingsTest, AFileThatCannotBeWrittenIsReportedOnceAndKeepsItsValuesInMemory) {
    // A file stands where the folder should be.
    QFile obstacle(folder.filePath(QStringLiteral("Marisonde")));
    ASSERT_TRUE(obstacle.open(QIODevice::WriteOnly));
    std::vector<std::string> problems;
    {
        IniSettings settings(Path(), [&](const std::string& reason) { problems.push_back(reason); });
        settings.SaveSetting("App", "Instance", "1");
        EXPECT_FALSE(settings.Save());
        settings.SaveSetting("App", "Version", "2.85");
        EXPECT_FALSE(settings.Save());
        EXPECT_EQ(settings.GetSetting("App", "Instance"), "1");
        EXPECT_EQ(settings.GetSetting("App", "Version"), "2.85");
    }
    ASSERT_EQ(problems.size(), 1u);
    EXPECT_EQ(problems[0].find(Path().toStdString() + ": "), 0u) << problems[0];
}

TEST_F(IniSettingsTest, TwoCopiesOfTheProgramKeepEachOthersValues) {
    IniSettings first(Path());
    first.SaveSetting("App", "Instance", "1");
    ASSERT_TRUE(first.Save());
    WriteFile("[App]\nInstance=1\nVersion=2.85\n");
    first.SaveSetting("App", "ORCA", "True");
    ASSERT_TRUE(first.Save());
    EXPECT_EQ(Read("App", "Version"), "2.85");
    EXPECT_EQ(Read("App", "ORCA"), "True");
}

}  // namespace
}  // namespace marisonde
