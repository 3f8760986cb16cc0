#pragma once

#include <filesystem>
#include <optional>

#include "files/DataFiles.h"
#include "support/FileFixture.h"

namespace marisonde {

inline constexpr auto kRaw = DataFileKind::Raw;
inline constexpr auto kDat = DataFileKind::Dat;

inline CalibratedSample SampleAt(double time) {
    CalibratedSample sample;
    sample.Time = time;
    sample.Depth = 2;
    return sample;
}

/// A folder for temporary files, and one of the user.
class DataFilesTest : public FileFixture {
  protected:
    DataFilesTest() {
        std::filesystem::create_directories(Temporary());
        std::filesystem::create_directories(User());
    }
    [[nodiscard]] std::filesystem::path Temporary() const { return In("temporary"); }
    [[nodiscard]] std::filesystem::path User() const { return In("user.data"); }
    [[nodiscard]] DataFilesRequest Both() const {
        return {Temporary(), {}, "raw header\r\n", "dat header\r\n"};
    }
    /// A sample of a model whose line is time and depth alone.
    static std::optional<DataFileTrouble> WriteTimeOf(DataFiles& files, double time, Millis now) {
        return files.WriteSample(SampleAt(time), InstTypeCode::XTidal, false, now);
    }
};

}  // namespace marisonde
