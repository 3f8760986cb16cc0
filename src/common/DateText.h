#pragma once

#include <string>

namespace marisonde {

/// A number from 0 on with at least two digits: 7 is "07".
std::string TwoDigits(int number);
/// "07/04/11 09:15:22", as instruments and files write a date (days since 30 December 1899): month, day, year
/// without its century.
std::string DateText(double date);

}  // namespace marisonde
