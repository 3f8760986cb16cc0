#include "common/DateText.h"

#include "common/ConversionUtils.h"

namespace marisonde {

std::string TwoDigits(int number) {
    return (number < 10 ? "0" : "") + std::to_string(number);
}

std::string DateText(double date) {
    const CivilDate civil = CivilFromDate(date);
    const int yearOfCentury = (civil.year % 100 + 100) % 100;
    return TwoDigits(civil.month) + "/" + TwoDigits(civil.day) + "/" + TwoDigits(yearOfCentury) + " " +
           TwoDigits(civil.hour) + ":" + TwoDigits(civil.minute) + ":" + TwoDigits(civil.second);
}

}  // namespace marisonde
