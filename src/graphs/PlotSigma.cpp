#include "graphs/LivePlot.h"

namespace marisonde {

namespace {

std::int32_t OtherForm(std::int32_t type) {
    if (type == PlotType::BbUncorrected) return PlotType::BbCorrected;
    if (type == PlotType::BbCorrected) return PlotType::BbUncorrected;
    return type;
}

}  // namespace

bool LivePlot::SetSigmaOption(SigmaChoice choice) {
    if (choice == SigmaOption) return false;
    SigmaOption = choice;
    for (std::int32_t& type : contents_[0]) type = OtherForm(type);
    PlotYType = OtherForm(PlotYType);
    if (model_ != InstTypeCode::LTidal) return IsCorvaneFamily(model_) || model_ == InstTypeCode::NTidal;
    Primary().SwapSeries(1, 2);
    return false;
}

}  // namespace marisonde
