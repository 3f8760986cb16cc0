#include "graphs/PlotReadouts.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace marisonde {

void ReadoutText::Set(std::string_view text) {
    length_ = std::min(text.size(), text_.size());
    std::copy_n(text.begin(), length_, text_.begin());
}

void ReadoutText::SetCut(double value, int decimals) {
    double scale = 1;
    for (int i = 0; i < decimals; ++i) scale *= 10;
    const char* const end = WriteNumber(text_.data(), std::floor(value * scale) / scale);
    length_ = static_cast<std::size_t>(end - text_.data());
}

void ReadoutText::SetMinutes(double minutes) {
    Set(FixedText(minutes, minutes < 1000 ? 1 : 0).substr(0, kMaxNumberText) + " min");
}

int FirstDataBox(InstTypeCode type) {
    return IsDelphFamily(type) ? 1 : 0;
}

int DataBoxCount(InstTypeCode type) {
    switch (type) {
        case InstTypeCode::LTidal:
            return 3;
        case InstTypeCode::NTidal:
            return 2;
        default:
            return IsDelphFamily(type) ? DelphChannels(type) : IsCorvaneFamily(type) ? ChannelSlots(type) : 0;
    }
}

}  // namespace marisonde
