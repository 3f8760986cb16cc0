#include <algorithm>
#include <cmath>

#include "simulator/Corvane.h"
#include "simulator/FieldText.h"

namespace marisonde::simulator {

namespace {

// Bandwidth of the lamps, nm.
constexpr int kBandNm = 20;

/// Numbers of the texts; nothing for an empty one. False when one is no number, or there are more than
/// `most`.
bool ReadNumbers(std::span<const std::string_view> texts, std::size_t most,
                 std::vector<std::optional<double>>& numbers) {
    if (texts.size() > most) return false;
    numbers.assign(most, std::nullopt);
    for (std::size_t i = 0; i < texts.size(); ++i) {
        if (texts[i].empty()) continue;
        numbers[i] = NumberFrom(texts[i]);
        if (!numbers[i]) return false;
    }
    return true;
}

std::string Heading(const CorvaneCalibration& cal, std::size_t index) {
    return "'Channel " + std::to_string(index + 1) + " (" + std::string(cal.channels[index].name) + ")\r\n";
}

std::string ValueLine(std::string_view name, double value) {
    return "' " + std::string(name) + ": " + AllDigits(value) + "\r\n";
}

std::string GainLine(const CorvaneChannel& channel, std::size_t step) {
    std::string line = "' G" + std::to_string(step + 1) + ": " + AllDigits(channel.gains[step]);
    for (const GainOffsets* offsets : {&channel.dark, &channel.nominal, &channel.fluorescence})
        line += ": " + std::to_string((*offsets)[step]);
    return line + "\r\n";
}

/// Splits a value whose fraction stands for another one.
struct Split {
    double whole, fraction;
};
Split SplitOf(double value) {
    constexpr double kResolution = 1e7;  // behind the point nothing finer survives the sum
    const double whole = std::trunc(value);
    return {whole, std::round(std::abs(value - whole) * kResolution) / kResolution};
}

}  // namespace

int ExcitedBy(const CorvaneCalibration& cal, std::size_t index) {
    const CorvaneChannel& channel = cal.channels[index];
    if (channel.received >= 0) return channel.received + 1;
    for (const CorvaneChannel& other : cal.channels)
        if (other.received == static_cast<int>(index)) return other.lit + 1;
    return 0;
}

int ReportedBy(const CorvaneCalibration& cal, std::size_t index) {
    for (std::size_t i = 0; i < cal.channels.size(); ++i)
        if (cal.channels[i].received == static_cast<int>(index)) return static_cast<int>(i) + 1;
    return 0;
}

bool SetChannel(CorvaneChannel& channel, std::span<const std::string_view> texts) {
    constexpr std::size_t kValues = 9;
    constexpr double kRhoScale = 10;
    std::vector<std::optional<double>> n;
    if (!ReadNumbers(texts, kValues + channel.gains.size(), n)) return false;
    if (n[0]) channel.Mu = *n[0];
    if (n[1]) channel.RNominal = *n[1];
    if (n[2]) {
        channel.rOutOff = SplitOf(*n[2]).whole;
        channel.sigma.exponent = SplitOf(*n[2]).fraction;
    }
    if (n[3]) channel.beta2bb = *n[3];
    if (n[4]) {
        channel.bb2c = SplitOf(*n[4]).whole;
        channel.MuRho = SplitOf(*n[4]).fraction * kRhoScale;
    }
    if (n[5]) channel.sigma0 = *n[5];
    channel.sigma.linear = n[6].value_or(channel.sigma.linear);
    channel.sigma.square = n[7].value_or(channel.sigma.square);
    channel.tempCoeff = n[8].value_or(channel.tempCoeff);
    for (std::size_t i = 0; i < channel.gains.size(); ++i)
        channel.gains[i] = n[kValues + i].value_or(channel.gains[i]);
    return true;
}

bool SetOffsets(CorvaneChannel& channel, std::span<const std::string_view> texts) {
    constexpr std::size_t kSteps = 5;
    constexpr double kLargest = 32767;
    std::vector<std::optional<double>> n;
    if (!ReadNumbers(texts, 3 * kSteps, n)) return false;
    std::size_t next = 0;
    for (GainOffsets* offsets : {&channel.dark, &channel.nominal, &channel.fluorescence})
        for (int& offset : *offsets) {
            const auto value = n[next++];
            if (value) offset = static_cast<int>(std::lround(std::clamp(*value, -kLargest, kLargest)));
        }
    return true;
}

std::string ChannelListing(const CorvaneCalibration& cal, std::size_t index) {
    const CorvaneChannel& channel = cal.channels[index];
    std::string text = Heading(cal, index);
    text += ValueLine("muRho", channel.MuRho);
    text += ValueLine("mu", channel.Mu);
    text += ValueLine("Rnom", channel.RNominal);
    text += ValueLine("Roo", channel.rOutOff + channel.sigma.exponent);
    text += ValueLine("kbb", channel.beta2bb);
    text += ValueLine("kc", channel.bb2c);
    text += "' kSigma0: " + SixDigits(Sigma0(channel)) + "\r\n";
    text += ValueLine("kSigma1", channel.sigma.linear);
    text += ValueLine("kSigma2", channel.sigma.square);
    text += ValueLine("Kt", channel.tempCoeff);
    for (std::size_t step = 0; step < channel.gains.size(); ++step) text += GainLine(channel, step);
    return text;
}

std::string FactoryListing(const CorvaneCalibration& cal, std::size_t index) {
    std::string text = Heading(cal, index);
    text += ValueLine("lambda", cal.channels[index].lambdaNm);
    text += ValueLine("deltaLambda", kBandNm);
    text += ValueLine("ChEx", ExcitedBy(cal, index));
    text += ValueLine("ChRep", ReportedBy(cal, index));
    return text;
}

}  // namespace marisonde::simulator
