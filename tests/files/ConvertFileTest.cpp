#include <cerrno>
#include <string>
#include <vector>

#include "calibration/CalibrationDataClass.h"
#include "common/ConversionUtils.h"
#include "decode/Lines.h"
#include "files/ConvertFile.h"
#include "files/RawFile.h"
#include "support/FailingOutputFile.h"
#include "support/FileFixture.h"
#include "support/ReadOnlyFolder.h"

namespace marisonde {
namespace {

namespace fs = std::filesystem;
using Outcome = ConversionResult::Outcome;
using namespace lines;

/// chi from the calibration, and no water in beta.
PureWaterParams NoWater() {
    PureWaterParams water;
    water.UseCalChi = true;
    water.Choice = PureWaterChoice::NoPure;
    return water;
}

SigmaParams FixedModel() {
    SigmaParams sigma;
    sigma.aStarValue = 0.5;
    return sigma;
}

/// Sigma is 1 and Mu 0.01 throughout, so that results can be worked in the head.
CalibrationDataClass Corvane2() {
    CalibrationDataClass cal;
    cal.InstType = InstTypeCode::Corvane2;
    cal.Serial = "V2970312";
    cal.DepthCal = 0.5F;
    cal.DepthOff = 10;
    for (int ch = 0; ch < 3; ++ch) {
        cal.EditChannel(ch).lambda = 525;
        cal.EditChannel(ch).beta2bb = 7;
        std::string name = "n";
        cal.EditChannel(ch).name = name.append(std::to_string(ch));
        cal.SetMu(ch, 0.01);
        cal.SetRNominal(ch, 4000);
    }
    return cal;
}

// The sample line: time 1231070712 s, signals 1000, 2000, 3000, gains of step 1, 2, 3 = 1, 10, 100, pressure
// 8000. beta = 0.01 x signal / (gain x 4000) = 0.0025, 0.0005, 0.000075; bb = 7 beta = 0.0175, 0.0035,
// 0.000525, with and without sigma. Depth = 0.5 x 8000 - 10.
const std::string kRow = "39817.50361111111,3990,0.0175,0.0035,0.000525,0.0175,0.0035,0.000525,\r\n";

class ConvertFileTest : public FileFixture {
  protected:
    ConversionResult ToDat(const fs::path& source, const ConversionHost& host = {}) {
        return ConvertRawToDat(source, ConvertedPath(source, ".dat"), stamp_, Corvane2(), FixedModel(),
                               NoWater(), host);
    }
    [[nodiscard]] std::string DataOf(const fs::path& path) const {
        const std::string text = TextOf(path);
        const std::size_t data = text.find("[Data]\r\n");
        return data == std::string::npos ? "no data section" : text.substr(data + 8);
    }
    [[nodiscard]] static std::string Header() {
        std::string text;
        const CalibrationDataClass cal = Corvane2();
        WriteRawHeader(text, {"1,2,3,4,5,6", 40000}, "raw", cal.InstType, &cal);
        return text;
    }

  private:
    HeaderStamp stamp_{"", DateFromCivil(2011, 7, 4, 9, 15, 22)};
};

TEST_F(ConvertFileTest, AWholeCalibratedFile) {
    const auto source = Write("cast.raw", Header() + WithChecksum(kSample) + "\r\n");
    const ConversionResult result = ToDat(source);
    EXPECT_EQ(result.message, "");
    ASSERT_EQ(result.outcome, Outcome::Written);
    EXPECT_EQ(TextOf(In("cast.dat")),
              "[Header]\r\nMarisondeVersion=2.85\r\nCreationDate=07/04/11 09:15:22\r\nFileType=dat\r\n"
              "DeviceType=Corvane-2\r\nDataSource=" +
                  source.string() +
                  "\r\nCalSource=Corvane-2\r\nSerial=V2970312\r\nConfig=\r\n"
                  "[SigmaParams]\r\nad400=0.01\r\naStarValue=0.5\r\nawFile=Marisonde.exe\r\n"
                  "bbTildeValue=0.015\r\nC=0.1\r\ngammad=0.011\r\ngammay=0.014\r\n"
                  "ExponentialFit=False\r\n"
                  "[bbParams]\r\nPureWaterModel=bb0=0\r\nbeta0=0\r\nlambda0=525\r\ngammaLambda=4.32\r\n"
                  "chi=FromCalFile\r\n"
                  "[Channels]\r\n\"n0\"\r\n\"n1\"\r\n\"n2\"\r\n"
                  "[ColumnHeadings]\r\nTime,Depth,n0,n1,n2,n0uncorr,n1uncorr,n2uncorr\r\n"
                  "\r\n[Data]\r\n" +
                  kRow);
    EXPECT_EQ(result.counts, (LineCounts{.lines = 1, .samples = 1}));
    EXPECT_EQ(Names(), (std::set<std::string>{"cast.raw", "cast.dat"}));
}

TEST_F(ConvertFileTest, EveryLineIsCountedOnceByWhatBecameOfIt) {
    std::string damaged = WithChecksum(kSample);
    damaged[20] = damaged[20] == '1' ? '2' : '1';
    const std::string text = Header() + WithChecksum(kSample) + "\r\n" + damaged + "\r\n" +
                             WithChecksum(kSample, true) + "\r\n" + "Sampling started\r\n\r\n" +
                             WithChecksum(kHousekeeping) + "\r\n" + WithChecksum("*Z1234") + "\r\n" +
                             Record(19) + "\r\n" + "*\r\n" + Record(7) + "\r\n";
    const ConversionResult result = ToDat(Write("cast.raw", text));
    EXPECT_EQ(result.counts,
              (LineCounts{
                  .lines = 9, .samples = 2, .housekeeping = 1, .badChecksum = 2, .noDecoder = 2, .text = 2}));
    EXPECT_EQ(DataOf(In("cast.dat")), kRow + kRow);
    EXPECT_EQ(PassedOverText(result.counts), "6 lines passed over: 2 bad checksum, 2 no decoder, 2 text");
}

TEST_F(ConvertFileTest, LineEndsAndBytesBetweenLinesDoNotMatter) {
    const std::string line = WithChecksum(kSample);
    for (const std::string end : {"\r\n", "\r", "\n"}) {
        std::string text = "[Header]" + end + "Serial=1" + end + "[EndHeader]" + end + line + end;
        text += std::string("\0\0", 2) + end + line;
        const ConversionResult result = ToDat(Write("cast.raw", text));
        EXPECT_EQ(result.counts, (LineCounts{.lines = 3, .samples = 2, .text = 1}));
        EXPECT_EQ(DataOf(In("cast.dat")), kRow + kRow);
    }
}

TEST_F(ConvertFileTest, AHeaderWithoutItsEndIsText) {
    const ConversionResult result =
        ToDat(Write("cast.raw", "[Header]\r\nSerial=1\r\n" + WithChecksum(kSample) + "\r\n"));
    EXPECT_EQ(result.counts, (LineCounts{.lines = 3, .samples = 1, .text = 2}));
    EXPECT_EQ(DataOf(In("cast.dat")), kRow);
}

TEST_F(ConvertFileTest, ALineOfAMegabyteCostsOnlyItself) {
    const std::string line = WithChecksum(kSample) + "\r\n";
    std::string longLine = "1";
    for (int i = 0; i < 512 * 1024; ++i) longLine += ",1";
    const ConversionResult result = ToDat(Write("cast.raw", line + longLine + "\r\n" + line));
    EXPECT_EQ(result.counts, (LineCounts{.lines = 3, .samples = 2, .text = 1}));
}

#ifdef __linux__
/// 4 GiB and more do not fit 32 bits. The hole in the file takes no room on the disk.
TEST_F(ConvertFileTest, ALineOfFourGigabytesCostsOnlyItself) {
    constexpr std::uintmax_t kSize = (std::uintmax_t{4} << 30) + 5;
    const std::string line = "\r\n" + WithChecksum(kSample) + "\r\n";
    const auto source = Write("cast.raw", line);
    fs::resize_file(source, kSize);
    std::ofstream(source, std::ios::binary | std::ios::app) << line;
    const ConversionResult result = ToDat(source);
    EXPECT_EQ(result.message, "");
    EXPECT_EQ(result.counts, (LineCounts{.lines = 3, .samples = 2, .text = 1}));
    EXPECT_EQ(DataOf(In("cast.dat")), kRow + kRow);
}
#endif

TEST_F(ConvertFileTest, AFileWithoutBytesGivesAHeaderAlone) {
    const ConversionResult result = ToDat(Write("cast.raw", ""));
    EXPECT_EQ(result.outcome, Outcome::Written);
    EXPECT_EQ(result.counts, LineCounts{});
    EXPECT_EQ(DataOf(In("cast.dat")), "");
}

TEST_F(ConvertFileTest, TheSourceIsNeverTouched) {
    const auto source = Write("cast.raw", WithChecksum(kSample));
    fs::permissions(source, fs::perms::owner_read);
    const auto before = fs::last_write_time(source);
    EXPECT_EQ(ToDat(source).outcome, Outcome::Written);
    EXPECT_EQ(fs::last_write_time(source), before);
    EXPECT_EQ(TextOf(source), WithChecksum(kSample));
}

TEST_F(ConvertFileTest, CalibratedFilesAreRefused) {
    const std::string dat = "[Header]\r\nFileType=dat\r\nDeviceType=Corvane-2\r\n[Data]\r\n";
    for (const char* name : {"cast.dat", "cast.DAT", "renamed.raw"}) {
        const auto source = Write(name, dat);
        const ConversionResult result = ToDat(source);
        EXPECT_EQ(result.outcome, Outcome::Failed);
        EXPECT_EQ(result.message,
                  "Error opening " + source.string() + ": it is a calibrated file, not a raw one");
        EXPECT_EQ(TextOf(source), dat);
        EXPECT_EQ(ConvertRawToDec(source, ConvertedPath(source, ".dec"), false).message, result.message);
    }
    EXPECT_EQ(Names(), (std::set<std::string>{"cast.dat", "cast.DAT", "renamed.raw"}));
    // Whatever its lines are: the calibrated file would take its place.
    const auto source = Write("lines.dat", WithChecksum(kSample));
    EXPECT_EQ(ToDat(source).message,
              "Error opening " + source.string() + ": it is a calibrated file, not a raw one");
}

TEST_F(ConvertFileTest, NoFileIsConvertedOntoItself) {
    const auto source = Write("cast.raw", WithChecksum(kSample));
    fs::create_hard_link(source, In("cast.dat"));
    const ConversionResult result = ToDat(source);
    EXPECT_EQ(result.outcome, Outcome::Failed);
    EXPECT_EQ(result.message,
              "Error opening " + In("cast.dat").string() + ": it is the file to be converted");
    EXPECT_EQ(TextOf(source), WithChecksum(kSample));
}

TEST_F(ConvertFileTest, AMissingSourceAndAMissingFolder) {
    const std::string reason = std::generic_category().message(ENOENT);
    EXPECT_EQ(ToDat(In("nothing.raw")).message,
              "Error opening " + In("nothing.raw").string() + ": " + reason);
    EXPECT_EQ(ConvertRawToDec(In("nothing.raw"), In("nothing.dec"), false).message,
              "Error opening " + In("nothing.raw").string() + ": " + reason);
    const auto source = Write("cast.raw", WithChecksum(kSample));
    const ConversionResult result =
        ConvertRawToDat(source, In("gone") / "cast.dat", {}, Corvane2(), FixedModel(), NoWater());
    EXPECT_EQ(result.outcome, Outcome::Failed);
    EXPECT_EQ(result.message, "Error opening " + (In("gone") / "cast.dat").string() + ": " + reason);
    EXPECT_EQ(Names(), std::set<std::string>{"cast.raw"});
}

TEST_F(ConvertFileTest, AFolderThatCannotBeWrittenInIsAnError) {
    ReadOnlyFolder disc(Folder());
    if (!disc.Refuses()) GTEST_SKIP() << "nothing is refused here";
    disc.Fill([&] { std::ofstream(disc / "cast.raw", std::ios::binary) << WithChecksum(kSample); });
    const ConversionResult beside = ToDat(disc / "cast.raw");
    EXPECT_EQ(beside.outcome, Outcome::Failed);
    EXPECT_EQ(beside.message, "Error opening " + (disc / "cast.dat").string() + ": " +
                                  std::generic_category().message(EACCES));
    EXPECT_EQ(beside.code, EACCES);
    // Apart from it, the file on the disc can be converted.
    const ConversionResult apart =
        ConvertRawToDat(disc / "cast.raw", In("cast.dat"), {}, Corvane2(), FixedModel(), NoWater());
    EXPECT_EQ(apart.outcome, Outcome::Written);
    EXPECT_EQ(DataOf(In("cast.dat")), kRow);
    EXPECT_FALSE(fs::exists(disc / "cast.dat"));
}

/// A disk that is full after so many bytes, under real files.
class SmallDisk final : public OutputFile {
  public:
    explicit SmallDisk(std::size_t room) : room_(room) {}
    [[nodiscard]] FileError Open(const fs::path& path, OpenMode mode) override {
        return file_.Open(path, mode);
    }
    FileError Append(std::string_view bytes) override {
        if (bytes.size() > room_) return {ENOSPC, std::generic_category().message(ENOSPC)};
        room_ -= bytes.size();
        return file_.Append(bytes);
    }
    FileError Flush() override { return file_.Flush(); }
    FileError Close() override { return file_.Close(); }
    [[nodiscard]] bool IsOpen() const override { return file_.IsOpen(); }
    [[nodiscard]] const fs::path& Path() const override { return file_.Path(); }

  private:
    DiskFile file_;
    std::size_t room_;
};

std::string Lines(int count) {
    std::string text;
    for (int i = 0; i < count; ++i) text += WithChecksum(kSample) + "\r\n";
    return text;
}

TEST_F(ConvertFileTest, AFullDiskKeepsTheOlderFile) {
    const auto source = Write("cast.raw", Lines(3000));
    Write("cast.dat", "older");
    for (const std::size_t room : {0, 70000, 200000}) {
        ConversionHost host;
        host.makeFile = [room] { return std::make_unique<SmallDisk>(room); };
        const ConversionResult result = ToDat(source, host);
        EXPECT_EQ(result.outcome, Outcome::Failed);
        EXPECT_EQ(result.message, "Error writing " + In("cast.dat").string() + ": " +
                                      std::generic_category().message(ENOSPC));
        EXPECT_EQ(TextOf(In("cast.dat")), "older");
        EXPECT_EQ(Names(), (std::set<std::string>{"cast.raw", "cast.dat"}));
    }
}

TEST_F(ConvertFileTest, AnOlderFileIsReplacedWhole) {
    Write("cast.dat", std::string(100000, 'x'));
    EXPECT_EQ(ToDat(Write("cast.raw", Lines(1))).outcome, Outcome::Written);
    EXPECT_EQ(DataOf(In("cast.dat")), kRow);
}

TEST_F(ConvertFileTest, AFolderInTheWayIsAnError) {
    fs::create_directory(In("cast.dat"));
    const ConversionResult result = ToDat(Write("cast.raw", Lines(1)));
    EXPECT_EQ(result.outcome, Outcome::Failed);
    EXPECT_EQ(Names(), (std::set<std::string>{"cast.raw", "cast.dat"}));
}

TEST_F(ConvertFileTest, AFolderThatVanishesMeanwhileIsAnError) {
    const auto source = Write("cast.raw", Lines(1000));
    fs::create_directory(In("out"));
    ConversionHost host;
    host.progress = [this](const ReadProgress&) {
        fs::remove_all(In("out"));
        return true;
    };
    const ConversionResult result =
        ConvertRawToDat(source, In("out") / "cast.dat", {}, Corvane2(), FixedModel(), NoWater(), host);
    EXPECT_EQ(result.outcome, Outcome::Failed);
    EXPECT_EQ(result.message, "Error writing " + (In("out") / "cast.dat").string() + ": " +
                                  std::generic_category().message(ENOENT));
}

TEST_F(ConvertFileTest, ASourceThatVanishesOrGrowsMeanwhileIsReadToItsEnd) {
    const auto source = Write("cast.raw", Lines(1000));
    ConversionHost host;
    host.progress = [&](const ReadProgress&) {
        if (fs::exists(source)) std::ofstream(source, std::ios::app) << Lines(5);
        fs::remove(source);
        return true;
    };
    const ConversionResult result = ToDat(source, host);
    EXPECT_EQ(result.outcome, Outcome::Written);
    EXPECT_GE(result.counts.samples, 1000U);
    EXPECT_LE(result.counts.samples, 1005U);
    EXPECT_EQ(result.counts.PassedOver(), 0U);
}

TEST_F(ConvertFileTest, ProgressComesEvery300LinesAndCanStop) {
    const auto source = Write("cast.raw", Lines(1000));
    std::vector<std::uint64_t> places;
    ConversionHost host;
    host.progress = [&](const ReadProgress& progress) {
        EXPECT_EQ(progress.size, 62000U);
        places.push_back(progress.done);
        return true;
    };
    EXPECT_EQ(ToDat(source, host).outcome, Outcome::Written);
    // 60 characters and the line end, 300 lines at a time.
    EXPECT_EQ(places, (std::vector<std::uint64_t>{18600, 37200, 55800}));

    Write("cast.dat", "older");
    host.progress = [](const ReadProgress&) { return false; };
    const ConversionResult result = ToDat(source, host);
    EXPECT_EQ(result.outcome, Outcome::Cancelled);
    EXPECT_EQ(result.counts.lines, 300U);
    EXPECT_EQ(TextOf(In("cast.dat")), "older");
    EXPECT_EQ(Names(), (std::set<std::string>{"cast.raw", "cast.dat"}));
}

TEST_F(ConvertFileTest, NamesWithBlanksAndLettersOfAnyAlphabet) {
    for (const std::string name : {"two words", "Tiefe \xC3\xA4", "Tiefe \xE4", "a;b", "x.y"}) {
        const auto source = Write(name + ".raw", Lines(1));
        EXPECT_EQ(ToDat(source).outcome, Outcome::Written) << name;
        EXPECT_EQ(DataOf(In(name + ".dat")), kRow);
    }
}

TEST_F(ConvertFileTest, RawNumbersByTheModelThatTheFileTells) {
    const auto source =
        Write("cast.raw", Header() + WithChecksum(kSample) + "\r\n" + WithChecksum(kHousekeeping) + "\r\n");
    const ConversionResult result = ConvertRawToDec(source, In("cast.dec"), false, InstTypeCode::XTidal);
    EXPECT_EQ(result.outcome, Outcome::Written);
    EXPECT_EQ(result.counts, (LineCounts{.lines = 2, .samples = 1, .housekeeping = 1}));
    EXPECT_EQ(TextOf(In("cast.dec")),
              "Time,Pressure,Snorm1,Snorm2,Snorm3,Gain1,Bgnd1,Gain2,Bgnd2,Gain3,Bgnd3,Temp,Error\r\n"
              "39817.50361111111,8000,1000,2000,3000,1,0,2,0,3,0,2,2\r\n");
}

TEST_F(ConvertFileTest, RawNumbersOfAFileThatTellsNoModel) {
    const auto source = Write("cast.raw", Record(19) + "\r\n");
    const ConversionResult refused = ConvertRawToDec(source, In("cast.dec"), true);
    EXPECT_EQ(refused.outcome, Outcome::Failed);
    EXPECT_EQ(refused.message,
              "Error opening " + source.string() + ": it holds no data of a known instrument");
    const ConversionResult assumed = ConvertRawToDec(source, In("cast.dec"), false, InstTypeCode::XTidal);
    EXPECT_EQ(assumed.outcome, Outcome::Written);
    EXPECT_EQ(TextOf(In("cast.dec")), "Time,Beta,Gain,Trans,Pressure,Temp\r\n");
}

TEST(ConvertedPathTest, TheExtensionIsReplacedOrAppended) {
    EXPECT_EQ(ConvertedPath("cast.raw", ".dat"), "cast.dat");
    EXPECT_EQ(ConvertedPath("leg.2/cast", ".dat"), "leg.2/cast.dat");
    EXPECT_EQ(ConvertedPath("leg.2/cast.one.raw", ".dec"), "leg.2/cast.one.dec");
    EXPECT_EQ(ConvertedPath("in/cast.raw", ".dat", "out.d"), "out.d/cast.dat");
    EXPECT_EQ(ConvertedPath("in/cast", ".dat", "out"), "out/cast.dat");
}

}  // namespace
}  // namespace marisonde
