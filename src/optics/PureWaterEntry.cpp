#include "optics/PureWaterEntry.h"

#include <utility>

#include "common/Numbers.h"
#include "optics/EnforceLimits.h"
#include "optics/PurewaterClass.h"

namespace marisonde {

namespace {

/// Decimals of a value in a locked box.
constexpr int kLockedDecimals = 2;

struct BoxRow {
    PureWaterBox box;
    BoxLimits limits;
    float PureWaterParams::*field;
};
constexpr std::array kBoxes{
    BoxRow{PureWaterBox::lambda0, {"reference wavelength", false, 200, 2000}, &PureWaterParams::lambda0},
    BoxRow{PureWaterBox::beta0, {"beta of water", false, 0, 1}, &PureWaterParams::beta0},
    BoxRow{PureWaterBox::bb0, {"bb of water", false, 0, 1}, &PureWaterParams::bb0},
    BoxRow{PureWaterBox::gammaLambda, {"spectral exponent", false, 0, 20}, &PureWaterParams::gammaLambda},
    BoxRow{PureWaterBox::chi, {"chi factor", false, 0.1, 10}, &PureWaterParams::chi},
};
static_assert(kBoxes.size() == kPureWaterBoxes);

bool IsModel(PureWaterChoice choice) {
    return choice != PureWaterChoice::Custom && choice != PureWaterChoice::NoPure;
}

/// A small value of the water, not what it refers to.
bool IsWaterValue(PureWaterBox box) {
    return box == PureWaterBox::beta0 || box == PureWaterBox::bb0;
}

}  // namespace

PureWaterEntry::PureWaterEntry(const PureWaterParams& params) : params_(params) {
    FillTexts();
}

void PureWaterEntry::FillTexts() {
    for (const BoxRow& row : kBoxes) {
        const float value = params_.*row.field;
        const bool rounded = IsWaterValue(row.box) && IsModel(params_.Choice);
        texts_[static_cast<std::size_t>(row.box)] =
            rounded ? ScientificText(static_cast<double>(value), kLockedDecimals) : NumberText(value);
    }
}

void PureWaterEntry::Choose(PureWaterChoice choice) {
    params_ = Params();
    params_.Choice = choice;
    if (const auto water = WaterOfModel(choice)) {
        params_.lambda0 = water->lambda0;
        params_.beta0 = water->beta0;
        params_.bb0 = water->bb0;
        params_.gammaLambda = water->gammaLambda;
    }
    if (choice == PureWaterChoice::NoPure) params_.beta0 = params_.bb0 = 0;
    // A chi that cannot be read is still the user's, who is going to mend it.
    const std::string chi = Text(PureWaterBox::chi);
    FillTexts();
    texts_[static_cast<std::size_t>(PureWaterBox::chi)] = chi;
}

bool PureWaterEntry::Locked(PureWaterBox box) const {
    if (box == PureWaterBox::chi) return params_.UseCalChi;
    return IsModel(params_.Choice) || (params_.Choice == PureWaterChoice::NoPure && IsWaterValue(box));
}

void PureWaterEntry::SetText(PureWaterBox box, std::string text) {
    if (!Locked(box)) texts_[static_cast<std::size_t>(box)] = std::move(text);
}

std::optional<PureWaterBoxError> PureWaterEntry::Validate() const {
    for (const BoxRow& row : kBoxes) {
        if (Locked(row.box)) continue;
        if (auto message = EnforceLimits(Text(row.box), row.limits))
            return PureWaterBoxError{row.box, std::move(*message)};
    }
    return std::nullopt;
}

PureWaterParams PureWaterEntry::Params() const {
    PureWaterParams params = params_;
    for (const BoxRow& row : kBoxes) {
        if (Locked(row.box)) continue;
        if (const auto number = StrictNumber(Text(row.box))) params.*row.field = static_cast<float>(*number);
    }
    return params;
}

}  // namespace marisonde
