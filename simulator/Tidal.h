#pragma once

#include "simulator/AutoGain.h"
#include "simulator/HostOptics.h"
#include "simulator/Instrument.h"

namespace marisonde::simulator {

/// Calibration of a Tidal: one backscatter and one transmission channel.
struct TidalCalibration {
    double depthCal;  ///< m per count
    double depthOff;  ///< counts
    double maxDepthM;
    double lambdaNm, bandNm;
    GainSteps gains;
    std::array<int, 5> dark;
    double Mu;
    SigmaLaw sigma;
    double beta2bb, MuRho;
    double tempCoeff;  ///< fractional change of beta per deg C
    double calTemp;    ///< deg C, backscatter
    double kLambdaNm, kBandNm;
    int dark24, pure24, air24;  ///< transmission counts: no light, pure water, air
    double kCalTemp;            ///< deg C, transmission
    double pathM;
    std::array<double, 4> chi;  ///< attenuation by beta above water's: chi1 x + chi2 x^2 + chi3 x^3
    double betaPure;
    std::array<double, 6> kTempCoeff;  ///< polynomial of the transmission in temperature
    double depthCoeff0, depthCoeff1;   ///< 1/m at the threshold and at full pressure
    int depthThreshold;                ///< pressure counts
};

/// Combined absorption (l-Tidal) or attenuation (n-Tidal, x-Tidal) and backscatter sensors.
class Tidal final : public Instrument {
  public:
    Tidal(Model model, const Options& options);
    [[nodiscard]] const TidalCalibration& Cal() const { return cal_; }
    [[nodiscard]] std::string CalText() const override;
    [[nodiscard]] Truth TruthAt(Millis now) const override;

  protected:
    void AppendSample(std::string& out, const Moment& moment) override;
    void AppendExtra(std::string& out, const Moment& moment) override;
    [[nodiscard]] std::span<const Command> FamilyCommands() const override;
    [[nodiscard]] double MaxDepthM() const override { return cal_.maxDepthM; }

  private:
    struct Sample {
        int beta = 0;
        int gain = 0;
        int trans = 0;
        int pressure = 0;
        double tempC = 0;  ///< as sent
    };

    void Measure(const Moment& moment);
    [[nodiscard]] Truth TruthIn(const WaterState& water) const;
    [[nodiscard]] double UncorrectedBeta(const Truth& truth) const;
    [[nodiscard]] double TransmissionCounts(double k, double tempC, int pressure) const;
    [[nodiscard]] double DepthEffect(int pressure) const;
    void DumpCal(std::string_view argument);
    void DataFormat(std::string_view argument);
    void Period(std::string_view argument);
    void StartDelay(std::string_view argument);
    void Burst(std::string_view argument);
    void BurstLength(std::string_view argument);
    void BurstCycle(std::string_view argument);
    /// Keeps the unit awake; nothing is said.
    void Power(std::string_view argument);
    void AppendHexSample(std::string& out, const Moment& moment);
    void AppendDecimalSample(std::string& out, const Moment& moment);

    const TidalCalibration& cal_;
    HostView view_;
    HostView transmissionView_;  ///< at the wavelength of the transmission
    AutoGain gain_;
    Sample sample_;
};

const TidalCalibration& TidalCalibrationOf(Model model);
/// Its `.cal` text; `calibratedAt` in seconds since 1970.
std::string TidalCalText(const TidalCalibration& cal, const ModelInfo& info, std::string_view config,
                         std::int64_t calibratedAt);

/// 12 bits of mantissa times 10 to the power of 3 less the upper 4 bits; too small values give 0 and too
/// large ones the largest.
std::uint16_t PackedDecimal(double value);
/// The same as the image of 128 bytes that an l-Tidal or n-Tidal holds. Words of 16 bits have their low byte
/// first; most numbers are packed decimals of 12 bits and a power of ten, exact to 0.05 %. The letters of the
/// serial come from the model; a date of production that the serial lacks is 12/98.
std::string TidalCalImage(const TidalCalibration& cal, const ModelInfo& info, std::string_view config,
                          std::int64_t calibratedAt);

}  // namespace marisonde::simulator
