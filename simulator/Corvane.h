#pragma once

#include "simulator/AutoGain.h"
#include "simulator/HostOptics.h"
#include "simulator/Instrument.h"

namespace marisonde::simulator {

inline constexpr int kCorvaneSlots = 8;
/// Offsets of the gain steps 1 to 5, counts.
using GainOffsets = std::array<int, 5>;

/// Calibration of one channel. beta = Mu Snorm / (gain RNominal), corrected for temperature and by sigma.
struct CorvaneChannel {
    std::string_view name;  ///< "bb" or "fl" and the wavelength
    double lambdaNm;
    GainSteps gains;
    double Mu;
    SigmaLaw sigma;
    double RNominal;
    double beta2bb;
    double MuRho;
    double tempCoeff;  ///< fractional change of beta per deg C
    GainOffsets dark, nominal, fluorescence;
    /// Fluorescence channels: the channels whose losses the light suffers, by index; -1 on others.
    int lit = -1, received = -1;
};

struct CorvaneCalibration {
    double depthCal;  ///< m per count
    double depthOff;  ///< m
    double calTemp;   ///< deg C
    double maxDepthM;
    std::vector<CorvaneChannel> channels;
};

/// Backscattering sensors with two, four or six wavelengths; two of them with fluorescence too.
class Corvane final : public Instrument {
  public:
    Corvane(Model model, const Options& options);
    [[nodiscard]] const CorvaneCalibration& Cal() const { return cal_; }
    [[nodiscard]] std::string CalText() const override;
    [[nodiscard]] Truth TruthAt(Millis now) const override;

  protected:
    void AppendSample(std::string& out, const Moment& moment) override;
    void AppendExtra(std::string& out, const Moment& moment) override;

  private:
    struct Slot {
        int gain = 0;
        int snorm = 0;
        int sig = 0, sigOff = 0, ref = 0, refOff = 0;
        int background = 0;
    };
    struct Sample {
        std::array<Slot, kCorvaneSlots> slots{};
        int pressure = 0;
        int tempByte = 0;
        int tenthsOfVolt = 0;
    };

    [[nodiscard]] double TrueBb(std::size_t ch, const WaterState& water) const;
    void Measure(const Moment& moment);
    /// The reading of one channel at `tempC` as the host will know it.
    void MeasureSlot(std::size_t ch, double betaUncorrected, double tempC, const WaterState& water);
    void AppendShort(std::string& out, const Moment& moment);
    void AppendVerbose(std::string& out, const Moment& moment);
    void AppendDecimal(std::string& out, const Moment& moment);

    const CorvaneCalibration& cal_;
    std::vector<HostView> views_;  ///< by channel
    std::array<AutoGain, kCorvaneSlots> gains_;
    Sample sample_;
};

/// The calibration of a Corvane model.
const CorvaneCalibration& CorvaneCalibrationOf(Model model);
/// Its `.cal` text. `calibratedAt` in seconds since 1970.
std::string CorvaneCalText(const CorvaneCalibration& cal, const ModelInfo& info, std::string_view config,
                           std::int64_t calibratedAt);

}  // namespace marisonde::simulator
