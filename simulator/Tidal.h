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

/// What an image of the calibration says.
struct TidalImageContent {
    TidalCalibration cal;
    std::string serial, config;
    std::int64_t calibratedAt = 0;   ///< seconds since 1970
    std::optional<double> sigma0{};  ///< sigma in clear water; unset: by its law
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
    void HearEmptyLine() override;
    void LoadStoredCal() override { gain_.Release(); }

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
    /// Takes an image from its host.
    void LoadCal(std::string_view argument);
    bool StoreImage(const std::string& image);
    /// On the bench: 1 to 5 holds the gain, and each empty line is answered with a sample; 0 ends both.
    void Gain(std::string_view argument);
    void AppendHexSample(std::string& out, const Moment& moment);
    void AppendDecimalSample(std::string& out, const Moment& moment);

    const TidalCalibration& cal_;
    TidalImageContent told_;  ///< what the instrument tells of its calibration
    std::string image_;       ///< as its host stored it; empty: as it left the factory
    HostView view_;
    HostView transmissionView_;  ///< at the wavelength of the transmission
    AutoGain gain_;
    Sample sample_;
};

const TidalCalibration& TidalCalibrationOf(Model model);
/// Its `.cal` text, with serial and configuration of `content`.
std::string TidalCalText(const TidalImageContent& content, const ModelInfo& info);

/// 12 bits of mantissa times 10 to the power of 3 less the upper 4 bits; too small values give 0 and too
/// large ones the largest.
std::uint16_t PackedDecimal(double value);
/// The same as the image of 128 bytes that an l-Tidal or n-Tidal holds. Words of 16 bits have their low byte
/// first; most numbers are packed decimals of 12 bits and a power of ten, exact to 0.05 %. The letters of the
/// serial come from the model; a date of production that the serial lacks is 12/98.
std::string TidalCalImage(const TidalCalibration& cal, const ModelInfo& info, std::string_view config,
                          std::int64_t calibratedAt);
/// Reads such an image over `content`, of which stays what an image does not hold. False, and nothing
/// changed: it has not 128 bytes, or it is one of another model.
bool ReadTidalImage(std::string_view image, Model model, TidalImageContent& content);

}  // namespace marisonde::simulator
