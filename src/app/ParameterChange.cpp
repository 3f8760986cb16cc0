#include "app/ParameterChange.h"

#include <utility>

#include "app/DataWindow.h"
#include "app/Recalculate.h"

namespace marisonde {

namespace {

void UpdateCalibrations(AppContext& app, bool tables) {
    for (DataWindow* window : app.windows) {
        if (window == nullptr || !window->Link.State.CalReady) continue;
        CalibrationDataClass& cal = window->Link.CalData;
        if (!tables) {
            cal.UpdateSigmas(app.sigma, app.pureWater.MorelSalt());
        } else {
            for (std::string& message : cal.CheckAndUpdateAll(app.sigma, app.pureWater))
                window->Ask().ShowError(std::move(message));
        }
    }
    RecalculateAllWindows(app);
}

}  // namespace

void TakeSigmaParams(AppContext& app, SigmaParams params) {
    app.sigma = std::move(params);
    SaveSigmaParams(app.settings, app.sigma);
    // The older model has never renewed the channels' own absorption and backscatter probability here.
    UpdateCalibrations(app, !app.sigma.includePurewater);
}

void TakePureWaterParams(AppContext& app, const PureWaterParams& params) {
    app.pureWater = params;
    SavePureWaterParams(app.settings, app.pureWater);
    UpdateCalibrations(app, true);
}

}  // namespace marisonde
