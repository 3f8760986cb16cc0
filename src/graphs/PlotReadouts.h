#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "common/InstTypes.h"
#include "common/Numbers.h"

namespace marisonde {

/// A short text in place, made without touching the heap.
class ReadoutText {
  public:
    [[nodiscard]] std::string_view View() const { return {text_.data(), length_}; }
    void Clear() { length_ = 0; }
    void Set(std::string_view text);
    /// The value cut downward to `decimals` and written as short as it reads; 1E+308 when it is not finite.
    void SetCut(double value, int decimals);
    /// Elapsed time: "12.3 min" below 1000 minutes, "1234 min" from there on.
    void SetMinutes(double minutes);

  private:
    std::array<char, kMaxNumberText + 8> text_{};
    std::size_t length_ = 0;
};

inline constexpr std::string_view kNoData = "No Data";

/// What the window shows as text beside the graph.
struct PlotReadouts {
    /// By channel: from 0 for the Corvane and Tidal families, from 1 for the Delph family.
    std::array<ReadoutText, kChannelSlots> DataBox;
    ReadoutText Elapsed;  ///< since the first sample plotted; empty before it
};

/// Index of the first DataBox that a model uses, and how many it uses in a row.
int FirstDataBox(InstTypeCode type);
int DataBoxCount(InstTypeCode type);

}  // namespace marisonde
