#include "simulator/Delph.h"

#include <algorithm>
#include <cmath>

#include "simulator/Arithmetic.h"
#include "simulator/FieldText.h"

namespace marisonde::simulator {

namespace {

constexpr double kReference = 1'842'000;  // counts
constexpr double kSignalNoise = 0.0004;
constexpr int kHundredthsOfVolt = 1184;
constexpr int kIgnoredFields = 5;

}  // namespace

Delph::Delph(Model model, const Options& options)
    : Instrument(model, options), cal_(DelphCalibrationOf(model)) {}

std::string Delph::CalText() const {
    return DelphCalText(cal_, CalInfo(), Config(), CalibratedAt());
}

Truth Delph::TruthAt(Millis now) const {
    const WaterState water = Water().At(now);
    Truth truth{water.depthM, water.tempC, {}, {}, 0};
    for (const DelphChannel& channel : cal_.channels) truth.c.push_back(ParticleC(water, channel.lambdaNm));
    return truth;
}

double Delph::PressureCounts(double depthM, double tempC) const {
    // Depth is nearly linear in the compensated counts, so that the square term settles at once.
    double compensated = depthM / cal_.kD1;
    for (int round = 0; round < 4; ++round)
        compensated = (depthM - cal_.kD2 * compensated * compensated) / cal_.kD1;
    return compensated - Compensated(0, tempC);
}

double Delph::Compensated(int pressure, double tempC) const {
    const double atTemp = cal_.kp2 * tempC * tempC + cal_.kp1 * tempC;
    const double atZero = cal_.kp2 * cal_.TP0 * cal_.TP0 + cal_.kp1 * cal_.TP0;
    return pressure - cal_.P0 - atTemp + atZero;
}

void Delph::Measure(const Moment& moment) {
    const WaterState water = Water().At(moment.sinceOn);
    sample_.hundredthsOfDegree = Rounded(100 * (water.tempC + 0.01 * Noise().Normal()));
    const double tempC = sample_.hundredthsOfDegree / 100.0;
    sample_.pressure = Rounded(PressureCounts(water.depthM, tempC) + Noise().Normal());
    const double pressure = Compensated(sample_.pressure, tempC);
    for (std::size_t ch = 0; ch < kDelphChannels; ++ch) {
        const DelphChannel& channel = cal_.channels[ch];
        const double through = std::exp(-ParticleC(water, channel.lambdaNm) * channel.pathM);
        const double lit = Rounded(kReference * (1 + 0.002 * Noise().Normal()));
        const double clean = lit * ClearRatio(channel, tempC, pressure) * through;
        sample_.ref[ch] = static_cast<int>(lit) + channel.darkReference;
        sample_.sig[ch] = Rounded(clean * (1 + kSignalNoise * Noise().Normal())) + channel.darkSignal;
    }
}

void Delph::AppendSample(std::string& out, const Moment& moment) {
    Measure(moment);
    AppendInteger(out, moment.secondsUnix);
    out += moment.hundredths < 10 ? ".0" : ".";
    AppendInteger(out, moment.hundredths);
    for (const int sig : sample_.sig) AppendCsv(out, sig);
    for (const int ref : sample_.ref) AppendCsv(out, ref);
    AppendCsv(out, sample_.pressure);
    AppendCsv(out, sample_.hundredthsOfDegree);
    AppendCsv(out, sample_.hundredthsOfDegree + 120);  // inside the lamp housing
    AppendCsv(out, sample_.hundredthsOfDegree + 210);  // inside the receiver housing
    if (Form() == LineForm::DecimalShort) return;
    AppendCsv(out, kHundredthsOfVolt);
    AppendCsv(out, 0);  // status
    for (int i = 0; i < kIgnoredFields; ++i) AppendCsv(out, 0);
}

void Delph::AppendExtra(std::string& /*out*/, const Moment& /*moment*/) {}

}  // namespace marisonde::simulator
