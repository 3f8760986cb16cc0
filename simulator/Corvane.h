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
    // What users may set, beside the above.
    double rOutOff = 0;              ///< whole
    double bb2c = 0;                 ///< whole
    std::optional<double> sigma0{};  ///< unset: in clear water
};

struct CorvaneCalibration {
    double depthCal;  ///< m per count
    double depthOff;  ///< m
    double calTemp;   ///< deg C
    double maxDepthM;
    std::vector<CorvaneChannel> channels;
};

/// As told: what was set, or else the sigma in clear water.
double Sigma0(const CorvaneChannel& channel);
/// Number from 1 of the channel that lights for channel `index`, and of the fluorescence channel that its
/// receiver serves too; 0 none.
int ExcitedBy(const CorvaneCalibration& cal, std::size_t index);
int ReportedBy(const CorvaneCalibration& cal, std::size_t index);
/// Values in the order of "ccl": Mu, RNominal, ROutOff with SigmaExp as its fraction, beta to bb, bb to c
/// with a tenth of MuRho as its fraction, sigma 0 to 2, temperature coefficient, gains 1 to 5. Empty texts
/// leave a value as it is. False, and nothing changed, when one cannot be read or there are too many.
bool SetChannel(CorvaneChannel& channel, std::span<const std::string_view> texts);
/// In the order of "cof": five dark offsets, five nominal ones, five of fluorescence. As SetChannel.
bool SetOffsets(CorvaneChannel& channel, std::span<const std::string_view> texts);
/// What "ccl" says of a channel, lines in CR LF.
std::string ChannelListing(const CorvaneCalibration& cal, std::size_t index);
/// What "CCF" says of a channel.
std::string FactoryListing(const CorvaneCalibration& cal, std::size_t index);

/// Backscattering sensors with two, four or six wavelengths; two of them with fluorescence too.
class Corvane final : public Instrument {
  public:
    Corvane(Model model, const Options& options);
    [[nodiscard]] const CorvaneCalibration& Cal() const { return cal_; }
    [[nodiscard]] std::string CalText() const override;
    [[nodiscard]] Truth TruthAt(Millis now) const override;

  protected:
    void AppendSample(std::string& out, const Moment& moment) override;
    void AppendRaw(std::string& out, const Moment& moment) override;
    void AppendExtra(std::string& out, const Moment& moment) override;
    [[nodiscard]] std::span<const Command> FamilyCommands() const override;
    [[nodiscard]] double MaxDepthM() const override { return cal_.maxDepthM; }
    void LoadStoredCal() override;
    [[nodiscard]] bool KeepsFiles() const override { return GivesFile(); }

  private:
    /// What the instrument tells of its calibration.
    struct Told {
        CorvaneCalibration cal;
        std::int64_t calTime;  ///< seconds since 1970
    };
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

    [[nodiscard]] bool GivesChannels() const { return Settings().calStore != CalStore::File; }
    [[nodiscard]] bool GivesFile() const { return Settings().calStore != CalStore::Channels; }
    /// The index of the channel whose number comes first, or nothing.
    [[nodiscard]] std::optional<std::size_t> ChannelIn(std::span<const std::string_view> texts) const;
    void SendCalFile(std::string_view argument);
    void MakeIniFile(std::string_view argument);
    void Gcf(std::string_view argument);
    void Ccl(std::string_view argument);
    void Cof(std::string_view argument);
    void Ccf(std::string_view argument);
    void StoreChannels(std::string_view argument);
    void StoreGlobal(std::string_view argument);
    void Log(std::string_view argument);
    void StoreLog(std::string_view argument);
    void Shutter(std::string_view argument);
    void Fl(std::string_view argument);
    void StoreFl(std::string_view argument);
    // On the bench, with a target before the instrument.
    void Gain(std::string_view argument);
    void AutomaticGain(std::string_view argument);
    void Mode(std::string_view argument);
    void Averaging(std::string_view argument);
    void RawSample(std::string_view argument);
    void Clear(std::string_view argument);
    bool SetGlobal(std::span<const std::string_view> texts);
    [[nodiscard]] std::string GlobalListing() const;
    [[nodiscard]] bool SetFl(std::string_view argument);
    [[nodiscard]] double TrueBb(std::size_t ch, const WaterState& water) const;
    void Append(std::string& out, const Moment& moment, LineForm form);
    void Measure(const Moment& moment, LineForm form);
    /// The reading of one channel at `tempC` as the host will know it.
    void MeasureSlot(std::size_t ch, double betaUncorrected, double tempC, const WaterState& water);
    void AppendShort(std::string& out, const Moment& moment, LineForm form);
    void AppendVerbose(std::string& out, const Moment& moment);
    void AppendDecimal(std::string& out, const Moment& moment, LineForm form);

    const CorvaneCalibration& cal_;
    Told told_, stored_;
    std::vector<HostView> views_;                         ///< by channel
    std::vector<int> fluorescence_, storedFluorescence_;  ///< sharing by fluorescence channel, 0 to 2
    std::array<AutoGain, kCorvaneSlots> gains_;
    Sample sample_;
};

/// The calibration of a Corvane model.
const CorvaneCalibration& CorvaneCalibrationOf(Model model);
/// Its `.cal` text. `calibratedAt` in seconds since 1970.
std::string CorvaneCalText(const CorvaneCalibration& cal, const ModelInfo& info, std::string_view config,
                           std::int64_t calibratedAt);

}  // namespace marisonde::simulator
