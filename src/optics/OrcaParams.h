#pragma once

namespace marisonde {

/// Parameters of the estimate of visibility from the attenuation that an l-Tidal measures.
struct OrcaSettings {
    double X = 2.7;            ///< ratio whose logarithm is the range in units of 1/K
    double CThreshold = 0.02;  ///< least contrast that an eye makes out
};

/// How far one sees, ln(X) / K, in the unit of 1 / K. kSentinel when K or X is not above 0, or when no
/// contrast reaches the threshold, from 1 on.
double OrcaDistance(double K, const OrcaSettings& settings);

}  // namespace marisonde
