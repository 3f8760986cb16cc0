#pragma once

#include "app/AppContext.h"

namespace marisonde {

/// The user's new sigma parameters: keeps them, and has the calibration and the data of every open window
/// follow them. Each window tells which tables have no value for its channels.
void TakeSigmaParams(AppContext& app, SigmaParams params);

/// The same for the parameters of pure water.
void TakePureWaterParams(AppContext& app, const PureWaterParams& params);

}  // namespace marisonde
