#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace marisonde::simulator {

/// One recording in the instrument's memory.
struct Cast {
    int number = 0;
    std::int64_t startUnix = 0;  ///< seconds since 1970 by the instrument's clock
    long lines = 0;
    double period = 0.5;  ///< s from line to line
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
    void Clear() { casts_.clear(); }
    /// A heading, a line for each recording and what memory is free, each behind an apostrophe, in CR LF.
    [[nodiscard]] std::string Listing() const;

  private:
    std::vector<Cast> casts_;
};

}  // namespace marisonde::simulator
