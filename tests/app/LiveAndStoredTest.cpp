// What a window shows and records live, what its calibrated file gives when it is read back, and what the
// conversion of its raw file gives are the same numbers.
#include "app/WindowFixture.h"
#include "files/ConvertFile.h"
#include "files/DatFile.h"
#include "files/DatFileReader.h"
#include "files/RawFileReader.h"

namespace marisonde {
namespace {

class LiveAndStoredTest : public WindowFixture, public testing::WithParamInterface<int> {
  protected:
    static std::vector<CalibratedSample> SamplesOf(SampleReader& reader, const std::filesystem::path& path) {
        std::vector<CalibratedSample> samples;
        EXPECT_FALSE(reader.Open(path));
        while (reader.NextLine())
            if (reader.HasSample()) samples.push_back(reader.Sample());
        return samples;
    }
    static std::string DataOf(const std::string& text) {
        const std::size_t place = text.find("[Data]\r\n");
        return place == std::string::npos ? "no data" : text.substr(place + 8);
    }
};

/// What a line of the calibrated file can hold of a sample.
CalibratedSample AsWritten(const CalibratedSample& sample, InstTypeCode type, bool betas) {
    std::string line;
    WriteDatLine(line, sample, type, betas);
    CalibratedSample back;
    DatLineReader(type).Read(std::string_view(line).substr(0, line.size() - 2), back);
    return back;
}

TEST_P(LiveAndStoredTest, AreTheSameBitForBit) {
    const auto model = static_cast<simulator::Model>(GetParam());
    const auto type = static_cast<InstTypeCode>(GetParam());
    app.pureWater.WriteBetaColumns = true;
    const auto window = Simulated(model, {});
    std::vector<CalibratedSample> live;
    for (Millis t{0}; t < std::chrono::minutes(2); t += kTick) {
        const auto before = window->Link.State.Counted.samples;
        Run(*window, kTick);
        // A tick takes no more than one sample at these rates, so that none is missed here.
        ASSERT_LE(window->Link.State.Counted.samples, before + 1);
        if (window->Link.State.Counted.samples > before) live.push_back(window->Link.State.CurrentSample);
    }
    ASSERT_GT(live.size(), 50U);
    const auto raw = folder / "cast.raw";
    const auto dat = folder / "live.dat";
    ASSERT_FALSE(window->Files.SaveCopy(DataFileKind::Raw, raw));
    ASSERT_FALSE(window->Files.SaveCopy(DataFileKind::Dat, dat));

    const ConversionResult converted =
        ConvertRawToDat(raw, folder / "cast.dat", {}, window->Link.CalData, app.sigma, app.pureWater);
    ASSERT_EQ(converted.message, "");
    EXPECT_EQ(converted.counts.samples, live.size());
    EXPECT_EQ(DataOf(TestFolder::Read(folder / "cast.dat")), DataOf(TestFolder::Read(dat)));

    const Converter converter(window->Link.CalData, app.sigma, app.pureWater);
    RawFileReader rawReader(type, converter);
    DatFileReader datReader;
    const auto fromRaw = SamplesOf(rawReader, raw);
    const auto fromDat = SamplesOf(datReader, dat);
    EXPECT_EQ(datReader.Type(), type);
    ASSERT_EQ(fromRaw.size(), live.size());
    ASSERT_EQ(fromDat.size(), live.size());
    for (std::size_t i = 0; i < live.size(); ++i) {
        ASSERT_EQ(fromRaw[i], live[i]) << i;
        ASSERT_EQ(fromDat[i], AsWritten(live[i], type, true)) << i;
        ASSERT_EQ(fromDat[i].Time, live[i].Time) << i;
        ASSERT_EQ(fromDat[i].Depth, live[i].Depth) << i;
    }
}

INSTANTIATE_TEST_SUITE_P(EveryModel, LiveAndStoredTest, testing::Range(0, 10), [](const auto& info) {
    std::string name(InstTypeName(static_cast<InstTypeCode>(info.param)));
    std::erase(name, '-');
    return name;
});

}  // namespace
}  // namespace marisonde
