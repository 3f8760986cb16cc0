#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "simulator/HostOptics.h"

namespace marisonde::simulator {

/// Puts a `.cal` text together: "[section]" and "key=value" lines in CR LF.
class CalWriter {
  public:
    void Section(std::string_view name) { Line("[" + std::string(name) + "]"); }
    void Empty() { Line(""); }
    void Text(std::string_view key, std::string_view value);
    void Integer(std::string_view key, std::int64_t value);
    /// Six significant digits.
    void Six(std::string_view key, double value);
    /// All digits of a value that a host holds in 32 bits.
    void Single(std::string_view key, double value);
    /// All digits of a value that a host holds in 64 bits.
    void Double(std::string_view key, double value);
    /// `prefix` and a number counted from `first`, one key for each value.
    template <class Values>
    void Numbered(std::string_view prefix, int first, const Values& values) {
        for (const auto value : values) Six(std::string(prefix) + std::to_string(first++), value);
    }
    /// "[General]" and what stands in it for every model.
    void General(std::string_view model, std::string_view serial, std::string_view config, double maxDepthM);
    /// Seconds since 1970, written on the base 1970 with a day without leading zero, or on the base 1980.
    void CalTime(std::int64_t secondsUnix, bool base1980);
    /// Sigma1 of older readers (see OldSigma), then the law's own coefficients.
    void Sigma(const SigmaLaw& law, double old);

    [[nodiscard]] std::string Take() { return std::move(text_); }

  private:
    void Line(std::string_view line);

    std::string text_;
};

}  // namespace marisonde::simulator
