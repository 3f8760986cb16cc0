#include "simulator/Tidal.h"

#include <algorithm>
#include <cmath>

#include "simulator/Arithmetic.h"
#include "simulator/Dates.h"
#include "simulator/FieldText.h"

namespace marisonde::simulator {

namespace {

constexpr double kSignalNoise = 0.004;
constexpr double kTransNoise = 120;  // counts of 24 bits
constexpr double kScale = 0.00382;   // degrees or volts per count of the extra values
constexpr double kVolts = 11.8;
constexpr double kDriveVolts = 2.65;

int BetaBackground(const WaterState& water) {
    return Rounded(90 * std::exp(-water.depthM / 12));
}
int TransBackground(const WaterState& water) {
    return Rounded(60 * std::exp(-water.depthM / 12));
}

}  // namespace

Tidal::Tidal(Model model, const Options& options)
    : Instrument(model, options),
      cal_(TidalCalibrationOf(model)),
      told_{cal_, std::string(CalInfo().serial), Config(), CalibratedAt()},
      view_(cal_.lambdaNm, cal_.sigma),
      transmissionView_(cal_.kLambdaNm, cal_.sigma) {}

std::string Tidal::CalText() const {
    return TidalCalText(told_, Info());
}

Truth Tidal::TruthAt(Millis now) const {
    return TruthIn(Water().At(now));
}

Truth Tidal::TruthIn(const WaterState& water) const {
    Truth truth{water.depthM, water.tempC, {}, {}, 0};
    truth.bb = {ParticleBb(water, cal_.lambdaNm) + view_.WaterBb()};
    if (Info().model != Model::LTidal) {
        truth.c = {ParticleC(water, cal_.kLambdaNm)};
        return truth;
    }
    // Its wide detector takes in what is scattered forward; the rest is known from beta and added to a.
    truth.a = ParticleA(water, cal_.kLambdaNm);
    const double x = view_.BetaFor(truth.bb[0]) - transmissionView_.WaterBeta();
    truth.c = {truth.a + x * (cal_.chi[1] + x * (cal_.chi[2] + x * cal_.chi[3]))};
    return truth;
}

double Tidal::UncorrectedBeta(const Truth& truth) const {
    // Beam attenuation overstates what the wide backscatter path loses: 0.6 of it counts there.
    const double K = Info().model == Model::NTidal ? 0.6 * truth.c[0] : truth.c[0];
    return view_.BetaFor(truth.bb[0]) / view_.SigmaAt(K);
}

double Tidal::DepthEffect(int pressure) const {
    if (pressure < cal_.depthOff) return 0;
    if (pressure <= cal_.depthThreshold)
        return (pressure - cal_.depthOff) * cal_.depthCoeff0 / (cal_.depthThreshold - cal_.depthOff);
    const double above = static_cast<double>(pressure - cal_.depthThreshold) / (65535 - cal_.depthThreshold);
    return cal_.depthCoeff0 + (cal_.depthCoeff1 - cal_.depthCoeff0) * above;
}

double Tidal::TransmissionCounts(double k, double tempC, int pressure) const {
    const double lost = std::exp((k + DepthEffect(pressure)) * cal_.pathM);
    const double atCalTemp = cal_.dark24 + (cal_.pure24 - cal_.dark24) / lost;
    return atCalTemp * Polynomial(cal_.kTempCoeff, tempC) / Polynomial(cal_.kTempCoeff, cal_.kCalTemp);
}

void Tidal::Measure(const Moment& moment) {
    const WaterState water = Water().At(moment.sinceOn);
    const Truth truth = TruthIn(water);
    sample_.tempC = Rounded((water.tempC + 0.02 * Noise().Normal()) * 10) / 10.0;
    sample_.pressure =
        std::clamp(Rounded(water.depthM / cal_.depthCal + cal_.depthOff + Noise().Normal()), 0, 0xFFFF);
    const double clean = TransmissionCounts(truth.c[0], sample_.tempC, sample_.pressure);
    sample_.trans = Rounded(clean + kTransNoise * Noise().Normal());

    const double atOne =
        UncorrectedBeta(truth) * (1 + cal_.tempCoeff * (sample_.tempC - cal_.calTemp)) / cal_.Mu;
    sample_.gain = gain_.StepFor(atOne, cal_.gains);
    const auto step = static_cast<std::size_t>(sample_.gain - 1);
    const double signal = atOne * cal_.gains[step] * (1 + kSignalNoise * Noise().Normal()) + Noise().Normal();
    sample_.beta = std::clamp(Rounded(signal) + cal_.dark[step], 0, 0xFFFF);
}

void Tidal::AppendSample(std::string& out, const Moment& moment) {
    Measure(moment);
    if (Form() == LineForm::Hex)
        AppendHexSample(out, moment);
    else
        AppendDecimalSample(out, moment);
}

void Tidal::AppendHexSample(std::string& out, const Moment& moment) {
    const std::size_t begin = out.size();
    out += Info().model == Model::LTidal ? "*A" : "*C";
    AppendHex(out, moment.secondsUnix - kFrom1970To1980, 8);
    AppendHex(out, moment.hundredths, 2);
    AppendHex(out, sample_.beta, 4);
    AppendHex(out, sample_.gain, 1);
    AppendSignedHex(out, sample_.trans, 6);
    AppendHex(out, sample_.pressure, 4);
    AppendHex(out, Rounded((sample_.tempC + 10) * 10), 3);
    AppendChecksum(out, begin, Settings().checksum);
}

void Tidal::AppendDecimalSample(std::string& out, const Moment& moment) {
    const bool timed = Form() == LineForm::DecimalTimed || Form() == LineForm::DecimalShortTimed;
    const bool full = Form() == LineForm::Decimal || Form() == LineForm::DecimalTimed;
    const WaterState water = Water().At(moment.sinceOn);
    if (timed) {
        AppendFixed(out, std::chrono::duration<double>(moment.sinceOn).count(), 2);
        out += ',';
    }
    AppendInteger(out, moment.secondsUnix - kFrom1970To1980);
    out += '.';
    if (moment.hundredths < 10) out += '0';
    AppendInteger(out, moment.hundredths);
    for (const int value : {sample_.beta, sample_.gain, sample_.trans, sample_.pressure})
        AppendCsv(out, value);
    out += ',';
    AppendFixed(out, sample_.tempC, 1);
    if (!full) return;
    const std::array<double, 2> supply{kVolts, kDriveVolts};
    for (const double value : supply) {
        out += ',';
        AppendFixed(out, value, 2);
    }
    for (const int value : {BetaBackground(water), TransBackground(water)}) AppendCsv(out, value);
    for (const double value : {water.tempC + 1.2, water.tempC + 2.1}) {
        out += ',';
        AppendFixed(out, value, 2);
    }
    // The record behind a leading time ends in one more field, so that it cannot be taken for the plain one.
    if (timed) out += ",0";
}

void Tidal::AppendExtra(std::string& out, const Moment& moment) {
    const WaterState water = Water().At(moment.sinceOn);
    const std::size_t begin = out.size();
    out += "*I";
    AppendHex(out, Rounded(kVolts * 10), 2);
    AppendHex(out, Rounded(kDriveVolts / kScale), 4);
    AppendHex(out, BetaBackground(water), 2);
    AppendHex(out, TransBackground(water), 2);
    AppendHex(out, Rounded((water.tempC + 1.2 + 50) / kScale), 4);
    AppendHex(out, Rounded((water.tempC + 2.1 + 50) / kScale), 4);
    AppendChecksum(out, begin, Settings().checksum);
}

}  // namespace marisonde::simulator
