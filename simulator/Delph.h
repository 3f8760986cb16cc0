#pragma once

#include <array>

#include "simulator/Instrument.h"

namespace marisonde::simulator {

inline constexpr std::size_t kDelphChannels = 2;

/// Calibration of one beam.
struct DelphChannel {
    std::string_view name;
    double lambdaNm, bandNm;
    double pathM;
    int darkSignal, darkReference;
    std::array<double, 6> tempPoly;  ///< transmission by temperature, as a ratio to that at tempPureWater
    double P1, P2;         ///< compensated pressure counts where the pressure effect begins and bends
    double pressureScale;  ///< change of transmission from P1 to P2
    std::array<double, 6> pressurePoly;
    double tau0;           ///< signal by reference in pure water
    double tempPureWater;  ///< deg C
};

struct DelphCalibration {
    double maxDepthM;
    double kp1, kp2;  ///< pressure counts by temperature
    double P0;        ///< counts at the surface
    int TP0;          ///< deg C
    double kD1, kD2;  ///< depth by compensated counts
    std::array<DelphChannel, kDelphChannels> channels;
};

/// Attenuation sensors. Models with more than two beams send the first two: the line has room for no more.
class Delph final : public Instrument {
  public:
    Delph(Model model, const Options& options);
    [[nodiscard]] const DelphCalibration& Cal() const { return cal_; }
    [[nodiscard]] std::string CalText() const override;
    [[nodiscard]] Truth TruthAt(Millis now) const override;

  protected:
    void AppendSample(std::string& out, const Moment& moment) override;
    /// These models send nothing between samples.
    void AppendExtra(std::string& out, const Moment& moment) override;
    [[nodiscard]] std::span<const Command> FamilyCommands() const override;
    [[nodiscard]] double MaxDepthM() const override { return cal_.maxDepthM; }
    [[nodiscard]] bool KeepsFiles() const override { return true; }

  private:
    struct Sample {
        std::array<int, kDelphChannels> sig{};
        std::array<int, kDelphChannels> ref{};
        int pressure = 0;
        int hundredthsOfDegree = 0;
    };

    void Log(std::string_view argument);
    void StoreLog(std::string_view argument);
    void Measure(const Moment& moment);
    [[nodiscard]] double PressureCounts(double depthM, double tempC) const;
    /// Counts less all effects of temperature, as a host compensates them.
    [[nodiscard]] double Compensated(int pressure, double tempC) const;

    const DelphCalibration& cal_;
    Sample sample_;
};

const DelphCalibration& DelphCalibrationOf(Model model);
/// Its `.cal` text; `calibratedAt` in seconds since 1970.
std::string DelphCalText(const DelphCalibration& cal, const ModelInfo& info, std::string_view config,
                         std::int64_t calibratedAt);
/// Signal by reference without attenuation beyond water's, at a temperature and compensated pressure.
double ClearRatio(const DelphChannel& channel, double tempC, double pressure);

}  // namespace marisonde::simulator
