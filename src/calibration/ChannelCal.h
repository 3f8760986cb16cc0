#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace marisonde {

/// Offsets in counts, by gain step; index 0 is not used.
using GainOffsets = std::array<std::int16_t, 6>;

/// Coefficients of one channel that may be written freely.
struct ChannelPlain {
    std::string name;    ///< such as "bb(470)"
    double MuRho = 0;    ///< reflectance of the Mu target
    double beta2bb = 0;  ///< backscatter factor
    double bb2c = 0;
    double bTempCoeff = 0;          ///< fractional change of beta per degree C
    std::int16_t lambda = 0;        ///< nm
    std::int16_t bDeltaLambda = 0;  ///< bandwidth, nm
    GainOffsets DarkOffset{};
    GainOffsets NomOffset{};
    GainOffsets FlOffset{};

    bool operator==(const ChannelPlain&) const = default;
};

/// One channel. What stands here is written only through CalibrationDataClass, which keeps the rules between
/// fields.
struct ChannelCal : ChannelPlain {
    std::array<double, 6> gain{0, 1, 10, 100, 1000, 10000};  ///< relative gain of steps 1 to 5
    double Mu = 0;                                           ///< from normalised signal to beta
    std::int16_t MuGain = 1;  ///< gain step at which Mu was measured and gain is 1
    std::array<double, 3> Sigma{1, 0, 0};
    double SigmaExp = 0;
    bool UseSigmaExp = false;                 ///< SigmaExp is above 0.0001
    double ROutOff = 0;                       ///< whole number
    double RNominal = 1;                      ///< nominal reference level
    double a = 0;                             ///< absorption by the sigma model, 1/m
    double bbTilde = 0.015;                   ///< backscatter probability by the sigma model
    std::int16_t ChEx = 0;                    ///< excitation channel, from 1; 0 none
    std::int16_t ChRep = 0;                   ///< channel that this receiver also reports, from 1; 0 none
    std::int16_t IsExcitationForChannel = 0;  ///< channel excited by this one, from 1
    bool IsSharedReceiver = false;
    bool IsVirtualChannel = false;

    bool operator==(const ChannelCal&) const = default;
};

/// A polynomial of degree 5 that is read divided by its value at a reference point, so that it is 1 there.
class NormalizedPolynomial {
  public:
    static constexpr int kUpperBound = 5;

    /// The coefficient divided by the norm when that is above 0, otherwise as stored.
    [[nodiscard]] double operator[](int i) const {
        return norm_ > 0 ? stored_[static_cast<std::size_t>(i)] / norm_
                         : stored_[static_cast<std::size_t>(i)];
    }
    [[nodiscard]] double Norm() const { return norm_; }
    void Set(int i, double value, double reference);
    void UpdateNorm(double reference);

    bool operator==(const NormalizedPolynomial&) const = default;

  private:
    std::array<double, kUpperBound + 1> stored_{};
    double norm_ = 0;
};

/// Coefficients of one attenuation channel that may be written freely. Transmissions and dark values are
/// counts.
struct AttenuationPlain {
    std::int16_t KLambda = 0;                     ///< nm
    std::int16_t KDeltaLambda = 0;                ///< nm
    float KPath = 0;                              ///< m
    std::int32_t TrNought = 0;                    ///< dark
    std::int32_t TrPure = 0;                      ///< in pure water
    std::int32_t TrAir = 0;                       ///< in air
    std::array<float, 5> KChi{};                  ///< correction polynomial in beta
    std::array<std::int32_t, 11> KDepthThresh{};  ///< pressure counts
    std::array<float, 7> KDepthCoeff{};           ///< 1/m at those thresholds
    float aPure = 0;
    float betaPure = 0;
    float KL = 0;          ///< path of the Delph and Fathom channels, m
    std::int32_t KS0 = 0;  ///< dark signal
    std::int32_t KR0 = 0;  ///< dark reference
    float KkTauPX = 0;     ///< pressure scale factor
    double KTau0 = 0;      ///< transmission of the reference

    bool operator==(const AttenuationPlain&) const = default;
};

/// One attenuation channel. What stands here is written only through CalibrationDataClass.
struct AttenuationCal : AttenuationPlain {
    float KCalTemp = 0;                 ///< degrees C
    std::array<float, 7> KTempCoeff{};  ///< transmission against temperature; 0 to 5 are used
    double KTempNormCoeff = 0;          ///< that polynomial at KCalTemp
    NormalizedPolynomial KkT;           ///< in temperature, 1 at KTPW
    std::array<double, 3> KPStored{};   ///< pressure break points 1 and 2
    NormalizedPolynomial KkTauP;        ///< in pressure, 1 at KP(2)
    float KTPW = 0;                     ///< temperature of the pure-water measurement

    [[nodiscard]] float KP(int i) const { return static_cast<float>(KPStored[static_cast<std::size_t>(i)]); }

    bool operator==(const AttenuationCal&) const = default;
};

}  // namespace marisonde
