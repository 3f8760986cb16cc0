#include "simulator/Corvane.h"

#include <algorithm>
#include <cmath>

#include "simulator/Arithmetic.h"
#include "simulator/FieldText.h"

namespace marisonde::simulator {

namespace {

constexpr double kSignalNoise = 0.004;  // of the signal
constexpr double kCountNoise = 2;
constexpr int kFullScale = 0x7FFF;  // of the converter, counts
constexpr int kRefOff = 905;
constexpr int kSigOff = 512;
constexpr int kBackupTenthsOfVolt = 31;

/// Light of the day falls off with depth and reaches the receivers a little.
int Background(const WaterState& water) {
    return Rounded(140 * std::exp(-water.depthM / 12));
}

int BatteryTenths(Nanos sinceOn) {
    const double hours = std::chrono::duration<double, std::ratio<3600>>(sinceOn).count();
    return Rounded(10 * std::max(9.5, 12.6 - 0.03 * hours));
}

}  // namespace

Corvane::Corvane(Model model, const Options& options)
    : Instrument(model, options),
      cal_(CorvaneCalibrationOf(model)),
      told_{cal_, CalibratedAt()},
      stored_(told_) {
    for (const CorvaneChannel& channel : cal_.channels) {
        views_.emplace_back(channel.lambdaNm, channel.sigma);
        if (channel.lit >= 0) fluorescence_.push_back(0);
    }
    storedFluorescence_ = fluorescence_;
}

std::string Corvane::CalText() const {
    return CorvaneCalText(told_.cal, CalInfo(), Config(), told_.calTime);
}

Truth Corvane::TruthAt(Millis now) const {
    const WaterState water = Water().At(now);
    Truth truth{water.depthM, water.tempC, {}, {}, 0};
    for (std::size_t ch = 0; ch < cal_.channels.size(); ++ch) truth.bb.push_back(TrueBb(ch, water));
    return truth;
}

double Corvane::TrueBb(std::size_t ch, const WaterState& water) const {
    const CorvaneChannel& channel = cal_.channels[ch];
    if (channel.lit >= 0) return Fluorescence(water, channel.lambdaNm);
    return ParticleBb(water, channel.lambdaNm) + views_[ch].WaterBb();
}

void Corvane::Measure(const Moment& moment, LineForm form) {
    const WaterState water = Water().At(moment.sinceOn);
    const double tempC = water.tempC + 0.02 * Noise().Normal();
    // The verbose hexadecimal line carries whole degrees, all others fifths of a degree above -10.
    const bool wholeDegrees = form == LineForm::HexVerbose;
    sample_.tempByte = wholeDegrees ? Rounded(tempC) : Rounded((tempC + 10) * 5);
    const double tempSent = wholeDegrees ? sample_.tempByte : sample_.tempByte / 5.0 - 10;
    sample_.pressure = Rounded((water.depthM + cal_.depthOff) / cal_.depthCal + Noise().Normal());
    sample_.tenthsOfVolt = BatteryTenths(moment.sinceOn);

    std::array<double, kCorvaneSlots> sigma{};
    for (std::size_t ch = 0; ch < cal_.channels.size(); ++ch) {
        const CorvaneChannel& channel = cal_.channels[ch];
        const double bb = TrueBb(ch, water);
        double uncorrected = 0;
        if (channel.lit >= 0) {
            const double losses = sigma[static_cast<std::size_t>(channel.lit)] *
                                  sigma[static_cast<std::size_t>(channel.received)];
            uncorrected = bb / channel.beta2bb / std::sqrt(losses);
        } else {
            uncorrected = views_[ch].Uncorrected(views_[ch].BetaFor(bb));
            sigma[ch] = views_[ch].SigmaOf(uncorrected);
        }
        MeasureSlot(ch, uncorrected, tempSent, water);
    }
}

void Corvane::MeasureSlot(std::size_t ch, double betaUncorrected, double tempC, const WaterState& water) {
    const CorvaneChannel& channel = cal_.channels[ch];
    Slot& slot = sample_.slots[ch];
    const double atOne =
        betaUncorrected * (1 + channel.tempCoeff * (tempC - cal_.calTemp)) * channel.RNominal / channel.Mu;
    slot.gain = gains_[ch].StepFor(atOne, channel.gains);
    const auto step = static_cast<std::size_t>(slot.gain - 1);
    const double clean = atOne * channel.gains[step];
    const double noisy = clean * (1 + kSignalNoise * Noise().Normal()) + kCountNoise * Noise().Normal();
    slot.snorm = std::clamp(Rounded(noisy), 1, kFullScale);
    slot.sigOff = kSigOff + static_cast<int>(Noise().Below(5));
    slot.refOff = kRefOff + static_cast<int>(Noise().Below(5));
    slot.ref = slot.refOff + Rounded(channel.RNominal * (1 + 0.01 * Noise().Normal()));
    const double signal = noisy * (slot.ref - slot.refOff) / channel.RNominal;
    slot.sig = std::clamp(Rounded(signal) + slot.sigOff + channel.dark[step], 0, kFullScale);
    slot.background = Background(water);
}

void Corvane::AppendSample(std::string& out, const Moment& moment) {
    Append(out, moment, Form());
}

void Corvane::AppendRaw(std::string& out, const Moment& moment) {
    const bool decimal = Form() == LineForm::Decimal || Form() == LineForm::DecimalTimed;
    Append(out, moment, decimal ? Form() : LineForm::HexVerbose);
}

void Corvane::Append(std::string& out, const Moment& moment, LineForm form) {
    Measure(moment, form);
    switch (form) {
        case LineForm::HexVerbose:
            return AppendVerbose(out, moment);
        case LineForm::Decimal:
        case LineForm::DecimalTimed:
            return AppendDecimal(out, moment, form);
        default:
            return AppendShort(out, moment, form);
    }
}

void Corvane::AppendShort(std::string& out, const Moment& moment, LineForm form) {
    const bool withHundredths = form == LineForm::HexHundredths;
    const std::size_t begin = out.size();
    out += withHundredths ? "*T" : "*D";
    AppendHex(out, moment.secondsUnix, 8);
    if (withHundredths) AppendHex(out, moment.hundredths, 2);
    for (const Slot& slot : sample_.slots) AppendHex(out, slot.snorm, 4);
    for (const Slot& slot : sample_.slots) AppendHex(out, slot.gain, 1);
    AppendHex(out, sample_.pressure, 4);
    AppendHex(out, sample_.tempByte, 2);
    AppendHex(out, 0, 2);  // no error
    AppendChecksum(out, begin, Settings().checksum);
}

void Corvane::AppendVerbose(std::string& out, const Moment& moment) {
    const std::size_t begin = out.size();
    out += "*V";
    AppendHex(out, moment.secondsUnix, 8);
    for (const Slot& slot : sample_.slots) {
        for (const int word : {slot.sig, slot.sigOff, slot.ref, slot.refOff}) AppendHex(out, word, 4);
        AppendHex(out, slot.background, 2);
    }
    for (const Slot& slot : sample_.slots) AppendHex(out, slot.gain, 1);
    AppendHex(out, sample_.pressure, 4);
    AppendHex(out, sample_.tempByte, 2);
    AppendHex(out, sample_.tenthsOfVolt, 2);
    AppendHex(out, 50, 2);  // the regulated 5 V
    AppendHex(out, kBackupTenthsOfVolt, 2);
    AppendChecksum(out, begin, Settings().checksum);
}

void Corvane::AppendDecimal(std::string& out, const Moment& moment, LineForm form) {
    const auto hundredthsOn = moment.sinceOn.count() / 10'000'000;
    if (form == LineForm::DecimalTimed) {
        AppendFixed(out, static_cast<double>(hundredthsOn) / 100, 2);
        out += ',';
    }
    AppendInteger(out, hundredthsOn);
    for (const Slot& slot : sample_.slots)
        for (const int word : {slot.sig, slot.sigOff, slot.ref, slot.refOff}) AppendCsv(out, word);
    for (const Slot& slot : sample_.slots) AppendCsv(out, slot.background);
    for (const Slot& slot : sample_.slots) AppendCsv(out, slot.gain);
    AppendCsv(out, sample_.tempByte);
    AppendCsv(out, sample_.pressure);
    AppendCsv(out, sample_.tenthsOfVolt);
    AppendCsv(out, kBackupTenthsOfVolt);
    AppendCsv(out, 0);  // no error
}

void Corvane::AppendExtra(std::string& out, const Moment& moment) {
    const WaterState water = Water().At(moment.sinceOn);
    const std::size_t begin = out.size();
    out += "*H";
    AppendHex(out, moment.secondsUnix, 8);
    for (std::size_t ch = 0; ch < kCorvaneSlots; ++ch) {
        const bool fitted = ch < cal_.channels.size();
        AppendHex(out, fitted ? Rounded(cal_.channels[ch].RNominal) + kRefOff : 0, 4);
        AppendHex(out, fitted ? 2048 + 16 * static_cast<int>(ch) : 0, 4);
        AppendHex(out, fitted ? Background(water) : 0, 4);
        // How much warmer the lamp is than the calibration bench, deg C.
        AppendSignedHex(out, fitted ? Rounded(water.tempC - cal_.calTemp) : 0, 2);
    }
    AppendHex(out, BatteryTenths(moment.sinceOn), 2);
    AppendHex(out, kBackupTenthsOfVolt, 2);
    AppendHex(out, 0, 2);
    AppendHex(out, SampleCount() % 0x10000, 4);
    AppendChecksum(out, begin, Settings().checksum);
}

}  // namespace marisonde::simulator
