#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace marisonde::simulator {

/// One recording in the instrument's memory.
struct Cast {
    int number = 0;
    std::int64_t startUnix = 0;  ///< seconds since 1970 by the instrument's clock
    long lines = 0;
    double period = 0.5;  ///< s from line to line
    std::vector<std::string>
        text{};  ///< its lines, when it was recorded here; empty for those of the factory
};

/// The recordings and how they are listed.
class CastMemory {
  public:
    /// Three recordings of the days before `startUnix`.
    explicit CastMemory(std::int64_t startUnix);

    [[nodiscard]] int Count() const { return static_cast<int>(casts_.size()); }
    /// nullptr: there is none of that number.
    [[nodiscard]] const Cast* Find(int number) const;
    void Delete(int number);
    /// Erases all and counts from 1 again.
    void Clear();
    /// A new recording, numbered behind all that there ever were.
    void Begin(std::int64_t startUnix, double period);
    /// Adds a line to the newest recording. False: memory is full.
    bool AddLine(std::string_view line);
    /// A heading, a line for each recording and what memory is free, each behind an apostrophe, in CR LF.
    [[nodiscard]] std::string Listing() const;

  private:
    [[nodiscard]] long Used() const;

    std::vector<Cast> casts_;
    int last_ = 0;               ///< number of the newest recording
    std::optional<Cast> begun_;  ///< a recording without a line yet
};

}  // namespace marisonde::simulator
