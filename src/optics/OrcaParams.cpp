#include "optics/OrcaParams.h"

#include <cmath>

#include "common/Numbers.h"

namespace marisonde {

double OrcaDistance(double K, const OrcaSettings& settings) {
    if (settings.CThreshold >= 1 || !(K > 0) || !(settings.X > 0)) return kSentinel;
    return std::log(settings.X) / K;
}

}  // namespace marisonde
