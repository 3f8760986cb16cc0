#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>

#include "CorvaneCast.h"
#include "files/RawFile.h"

namespace marisonde::bench {

/// A raw file of a Corvane-6 that the conversions of a benchmark share, and a folder for what they write;
/// gone at the end of the run.
class RawCast {
  public:
    RawCast()
        : folder_(std::filesystem::temp_directory_path() /
                  ("conversion-bench-" + std::to_string(std::random_device{}()))) {
        std::filesystem::create_directories(folder_);
        const char* size = std::getenv("MARISONDE_BENCH_MB");
        const std::size_t bytes = (size ? std::strtoul(size, nullptr, 10) : 50) * 1000000;
        constexpr std::size_t kBlock = std::size_t{1} << 20;
        std::FILE* file = std::fopen(Source().c_str(), "wb");
        std::string text;
        const CalibrationDataClass cal = Calibration();
        WriteRawHeader(text, {"", 45000}, "raw", cal.InstType, &cal);
        std::mt19937 random(1);
        for (std::size_t written = 0; written < bytes; ++lines_) {
            text += CorvaneLine(static_cast<std::uint32_t>(lines_), random) + "\r\n";
            if (text.size() < kBlock) continue;
            written += std::fwrite(text.data(), 1, text.size(), file);
            text.clear();
        }
        std::fwrite(text.data(), 1, text.size(), file);
        std::fclose(file);
    }
    ~RawCast() { std::filesystem::remove_all(folder_); }
    RawCast(const RawCast&) = delete;
    RawCast& operator=(const RawCast&) = delete;

    [[nodiscard]] std::filesystem::path Source() const { return folder_ / "cast.raw"; }
    [[nodiscard]] std::filesystem::path Destination(const char* name) const { return folder_ / name; }
    /// The product writes beside a file of the same name and replaces it at the end. Whoever is compared with
    /// it does too: memory is taken and given back at the same moments, which matters more than one would
    /// think where the machine is a virtual one.
    [[nodiscard]] std::filesystem::path Beside(const char* name) const {
        return folder_ / (name + std::string(".new"));
    }
    void Replace(const char* name) const { std::filesystem::rename(Beside(name), Destination(name)); }
    [[nodiscard]] std::int64_t Lines() const { return static_cast<std::int64_t>(lines_); }

  private:
    std::filesystem::path folder_;
    std::size_t lines_ = 0;
};

inline const RawCast& Cast() {
    static const RawCast cast;
    return cast;
}

}  // namespace marisonde::bench
