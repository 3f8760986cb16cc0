#pragma once

#include <cstdint>
#include <limits>
#include <string_view>

#include "common/Numbers.h"

namespace marisonde::detail {

/// Walks the comma-separated numbers of a record. An empty or unreadable field is 0.
class DecimalFields {
  public:
    explicit DecimalFields(std::string_view record)
        : next_(record.data()), end_(record.data() + record.size()), more_(true) {}

    /// Whether a field is left: the record itself counts as one, so has each comma one behind it.
    [[nodiscard]] bool More() const { return more_; }

    /// The next number; 0 behind the last field.
    double Next() {
        if (!more_) return 0;
        const LeadingNumber number = ReadNumber(next_, end_);
        FindComma(number.end);
        return number.value;
    }

    void Skip(int fields) {
        for (; fields > 0 && more_; --fields) FindComma(next_);
    }

  private:
    void FindComma(const char* from) {
        const char* comma = from;
        while (comma != end_ && *comma != ',') ++comma;
        more_ = comma != end_;
        next_ = more_ ? comma + 1 : end_;
    }

    const char* next_;
    const char* end_;
    bool more_;
};

/// Nearest whole number, halves to even; 0 when it does not fit the type.
template <typename Int>
Int FitWhole(double value) {
    const double whole = RoundHalfEven(value);
    const bool fits = whole >= static_cast<double>(std::numeric_limits<Int>::min()) &&
                      whole <= static_cast<double>(std::numeric_limits<Int>::max());
    return fits ? static_cast<Int>(whole) : Int{0};
}

}  // namespace marisonde::detail
