#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "calibration/CalibratedSample.h"
#include "calibration/CalibrationDataClass.h"
#include "decode/RawSample.h"

namespace marisonde {

/// Turns decoded samples into physical values. Everything that depends only on calibration and parameters is
/// computed when it is made; make a new one when they change.
class Converter {
  public:
    /// Handles no sample.
    Converter() = default;
    Converter(const CalibrationDataClass& cal, const SigmaParams& sigma, const PureWaterParams& water);

    /// Converts one sample; a Snorm computed here is stored back in `raw`. False, and nothing changed, when
    /// the model is of no known family.
    bool Apply(RawSample& raw, CalibratedSample& out) const;

  private:
    enum class Family { None, Corvane, Tidal, Delph };

    /// sigma against K.
    struct SigmaTerms {
        double s0 = 1, s1 = 0, s2 = 0;
        double exponent = 0;
        bool exponential = false;
        [[nodiscard]] double At(double K) const;
    };
    /// K from the uncorrected bb.
    struct ModelTerms {
        double water = 0;   ///< bb of water that is taken off, without water in K
        double offset = 0;  ///< a, with the water's own where that belongs to K
        double bbTilde = 0;
        [[nodiscard]] double At(double bbUncorr, bool withWater) const;
    };
    struct ScatterTerms {
        std::array<double, 6> gain{};
        std::array<double, 6> dark{};
        double Mu = 0, RNominal = 1, bTempCoeff = 0;
        double beta2bb = 0;
        BetaToBbTerms toBb;
        ModelTerms model;
        SigmaTerms sigma;
    };
    static constexpr std::size_t kLanes = 8;
    template <class T>
    using PerLane = std::array<T, kLanes>;

    /// The scattering terms of all channels side by side: loops over them fill the vector registers.
    struct LaneTerms {
        // By the low bits of the gain. A product that failed is not a number, one that is not used is 1.
        std::array<PerLane<bool>, 8> usable{};
        std::array<PerLane<double>, 8> gainRNominal{};
        PerLane<double> Mu{}, bTempCoeff{};
        PerLane<double> c{}, betaWater{}, bbWater{};
        PerLane<double> beta2bb{};
        PerLane<double> modelWater{}, modelOffset{}, bbTilde{};
        std::size_t backscatter = 0;  ///< lanes from here on are fluorescence channels
        std::size_t count = 0;        ///< lanes from here on are not used
    };
    /// The results of all channels for one sample.
    struct LaneValues {
        PerLane<double> betaUncorr, bbUncorr, K, sigma, beta, bb;
    };
    /// Counts and gain products that go into the lanes, and which lanes have a usable gain.
    struct LaneInputs {
        PerLane<double> snorm, gainRNominal;
        PerLane<bool> usable;
    };

    struct TransmissionTerms {
        std::array<double, 6> temp{};
        double tempNorm = 0;
        double dark = 0, pureLessDark = 0, path = 0;
        double threshold = 0, depth0 = 0, depthStep = 0, thresholdLessOff = 0, topLessThreshold = 0;
        double chi1 = 0, chi2 = 0, chi3 = 0, betaPure = 0;
        bool replaceK = false;  ///< n-Tidal: K for sigma is the model's or p times k
        bool useModel = false;
        double p = 0;
    };
    struct BeamTerms {
        double darkSignal = 0, darkReference = 0;
        double p1 = 0, p2 = 0, pSpan = 0, tauPX = 0, onePlusTauPX = 1;
        std::array<double, 6> tauP{};
        std::array<double, 6> kT{};
        double tau0 = 0, path = 0;
        [[nodiscard]] double PressureFactor(double pressure) const;
    };
    struct DepthTerms {
        double slope = 0, offset = 0;
        double P0 = 0, kp1 = 0, kp2 = 0, atTP0 = 0, kD1 = 0, kD2 = 0;
    };

    void PrepareScatter(const CalibrationDataClass& cal, int ch, const PureWaterParams& water);
    void PrepareLane(std::size_t ch);
    void PrepareTransmission(const CalibrationDataClass& cal, const SigmaParams& sigma,
                             const PureWaterParams& water);
    void PrepareBeam(const CalibrationDataClass& cal, int ch);
    void PrepareDepth(const CalibrationDataClass& cal);

    void ApplyClock(const RawSample& raw, CalibratedSample& out) const;
    void ApplyCorvane(RawSample& raw, CalibratedSample& out) const;
    [[nodiscard]] std::int32_t NormalizedSignal(std::size_t ch, std::size_t gain, const RawSample& raw) const;
    [[nodiscard]] bool TakeInputs(std::size_t ch, RawSample& raw, LaneInputs& in,
                                  CalibratedSample& out) const;
    static void ClearChannel(std::size_t ch, std::size_t gain, CalibratedSample& out);
    template <bool careful>
    bool ScatterLanes(const LaneInputs& __restrict in, double warmth, LaneValues& __restrict values) const;
    void StoreLanes(const PerLane<bool>& usable, const LaneValues& __restrict values,
                    CalibratedSample& __restrict out) const;
    void ApplyFluorescence(CalibratedSample& out) const;
    void ApplyVirtualChannel(std::size_t ch, CalibratedSample& out) const;
    void ApplySigma(std::size_t ch, double betaUncorr, double K, CalibratedSample& out) const;
    void ApplyTidal(const RawSample& raw, CalibratedSample& out) const;
    void ApplyTransmission(const RawSample& raw, CalibratedSample& out) const;
    void ApplyDelph(const RawSample& raw, CalibratedSample& out) const;

    Family family_ = Family::None;
    InstTypeCode type_ = InstTypeCode::Unknown;
    int channels_ = 0;
    double epoch_ = 0;
    double calTemp_ = 0;
    bool withWater_ = false;
    DepthTerms depth_;
    std::array<ScatterTerms, kLanes> scatter_;
    LaneTerms lanes_;
    std::array<int, kChannelSlots> excitation_{};  ///< ChEx
    TransmissionTerms transmission_;
    std::array<BeamTerms, 6> beams_;
};

/// One sample without a prepared converter: for single samples. False as Converter::Apply.
bool ApplyCalibration(RawSample& raw, const CalibrationDataClass& cal, const SigmaParams& sigma,
                      const PureWaterParams& water, CalibratedSample& out);
/// Decodes a line into the stream's samples and converts it. False: no sample in it. `instType` is the model
/// in use.
bool ParseAndConvert(std::string_view line, InstTypeCode instType, const Converter& converter, RawSample& raw,
                     CalibratedSample& out);

}  // namespace marisonde
