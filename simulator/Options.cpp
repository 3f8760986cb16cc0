#include "simulator/Options.h"

#include <algorithm>
#include <array>

namespace marisonde::simulator {

namespace {

struct FormRow {
    std::string_view text;
    LineForm form;
    bool corvane, tidal, delph;
};

constexpr std::array kForms{
    FormRow{"natural", LineForm::Natural, true, true, true},
    FormRow{"hex", LineForm::Hex, true, true, false},
    FormRow{"hundredths", LineForm::HexHundredths, true, false, false},
    FormRow{"verbose", LineForm::HexVerbose, true, false, false},
    FormRow{"decimal", LineForm::Decimal, true, true, true},
    FormRow{"decimal-timed", LineForm::DecimalTimed, true, true, false},
    FormRow{"short", LineForm::DecimalShort, false, true, true},
    FormRow{"short-timed", LineForm::DecimalShortTimed, false, true, false},
};

}  // namespace

std::optional<LineForm> LineFormFromText(std::string_view text) {
    const auto* row =
        std::find_if(kForms.begin(), kForms.end(), [&](const FormRow& r) { return r.text == text; });
    if (row == kForms.end()) return std::nullopt;
    return row->form;
}

bool OffersForm(Model model, LineForm form) {
    const auto* row =
        std::find_if(kForms.begin(), kForms.end(), [&](const FormRow& r) { return r.form == form; });
    if (row == kForms.end()) return false;
    switch (InfoOf(model).family) {
        case Family::Corvane:
            return row->corvane;
        case Family::Tidal:
            return row->tidal;
        case Family::Delph:
            return row->delph;
    }
    return false;
}

}  // namespace marisonde::simulator
