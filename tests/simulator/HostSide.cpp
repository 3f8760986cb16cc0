#include "simulator/HostSide.h"

#include <algorithm>
#include <cmath>
#include <sstream>

namespace marisonde::simulator::host {

namespace {

constexpr double kChi = 1.08;

// Half of fresh water at 525 nm: beta(140) = 0.000112 (1 + 0.835 cos^2 140), bb = 0.000112 * 8.03.
double WaterBeta(double lambda) {
    const double cosine = std::cos(140 * 3.1415926 / 180);
    return 0.000112 * (1 + 0.835 * cosine * cosine) / 2 * std::pow(525 / lambda, 4.32);
}
double WaterBb(double lambda) {
    return 0.000112 * 8.03 / 2 * std::pow(525 / lambda, 4.32);
}
double FreshBb(double lambda) {
    return 2 * WaterBb(lambda);
}

double Bb(double beta, double lambda) {
    return (beta - WaterBeta(lambda)) * kChi * 6.2832 + WaterBb(lambda);
}

double AStar(double lambda) {
    static const std::map<int, double> table{{420, 0.913}, {440, 1},     {470, 0.87},  {510, 0.618},
                                             {530, 0.474}, {550, 0.357}, {620, 0.276}, {700, 0.215}};
    return table.at(static_cast<int>(lambda));
}

double ClearA(double lambda) {
    return 0.06 * AStar(lambda) * std::pow(0.1, 0.65) * (1 + 0.2 * std::exp(-0.014 * (lambda - 440))) +
           0.01 * std::exp(-0.011 * (lambda - 400));
}

double Sigma(const Cal& cal, const std::string& section, double lambda, double K) {
    const double exponent = cal.Value(section, "SigmaExp");
    const double s1 = cal.Value(section, "Sigma2");
    const double s2 = cal.Value(section, "Sigma3");
    const double K0 = 0.8 * FreshBb(lambda);
    const auto threeDecimals = [](double v) { return std::round(v * 1000) / 1000; };
    if (exponent > 0.0001) return threeDecimals(std::exp(-exponent * K0)) * std::exp(exponent * K);
    return threeDecimals(1 - s1 * K0 - s2 * K0 * K0) + s1 * K + s2 * K * K;
}

std::string Numbered(const std::string& prefix, long number) {
    return prefix + std::to_string(number);
}

struct CorvaneCounts {
    double pressure = 0, tempC = 0;
    std::vector<int> gains;
    std::vector<double> snorm;
};

CorvaneCounts FromShort(const std::string& line, int channels) {
    const std::size_t d = line[1] == 'T' ? 2 : 0;
    CorvaneCounts counts;
    for (int i = 0; i < channels; ++i) {
        counts.snorm.push_back(static_cast<double>(HexAt(line, 11 + d + 4 * static_cast<std::size_t>(i), 4)));
        counts.gains.push_back(static_cast<int>(HexAt(line, 43 + d + static_cast<std::size_t>(i), 1)));
    }
    counts.pressure = static_cast<double>(HexAt(line, 51 + d, 4));
    counts.tempC = static_cast<double>(HexAt(line, 55 + d, 2)) / 5.0 - 10;
    return counts;
}

double Normalised(const Cal& cal, const std::string& section, int gain, const double* words) {
    const double dark = cal.Value(section, Numbered("Offset", gain));
    return std::round(cal.Value(section, "RNominal") * (words[0] - words[1] - dark) / (words[2] - words[3]));
}

CorvaneCounts FromVerbose(const std::string& line, const Cal& cal, int channels) {
    CorvaneCounts counts;
    for (int i = 0; i < channels; ++i) {
        const auto at = 11 + 18 * static_cast<std::size_t>(i);
        double words[4];
        for (std::size_t w = 0; w < 4; ++w) words[w] = static_cast<double>(HexAt(line, at + 4 * w, 4));
        counts.gains.push_back(static_cast<int>(HexAt(line, 155 + static_cast<std::size_t>(i), 1)));
        counts.snorm.push_back(Normalised(cal, Numbered("Channel ", i + 1), counts.gains.back(), words));
    }
    counts.pressure = static_cast<double>(HexAt(line, 163, 4));
    counts.tempC = static_cast<double>(HexAt(line, 167, 2));
    return counts;
}

CorvaneCounts FromDecimal(const std::string& line, const Cal& cal, int channels) {
    const auto numbers = Numbers(line);
    CorvaneCounts counts;
    for (std::size_t i = 0; i < static_cast<std::size_t>(channels); ++i) {
        counts.gains.push_back(static_cast<int>(numbers[1 + 32 + 8 + i]));
        counts.snorm.push_back(Normalised(cal, Numbered("Channel ", static_cast<long>(i) + 1),
                                          counts.gains.back(), &numbers[1 + 4 * i]));
    }
    counts.tempC = numbers[49] / 5 - 10;
    counts.pressure = numbers[50];
    return counts;
}

/// Fluorescence loses light on its way to and from the channels that lit and received it.
void CorrectFluorescence(Shown& shown, const std::vector<double>& sigma) {
    if (shown.bb.size() == 3) shown.bb[2] *= std::sqrt(sigma[0]) * std::sqrt(sigma[1]);
    if (shown.bb.size() != 8) return;
    shown.bb[6] *= std::sqrt(sigma[2]) * std::sqrt(sigma[3]);
    shown.bb[7] *= std::sqrt(sigma[0]) * std::sqrt(sigma[1]);
}

}  // namespace

Cal::Cal(const std::string& text) {
    std::istringstream lines(text);
    std::string section;
    for (std::string line; std::getline(lines, line);) {
        if (line.find('[') != std::string::npos) {
            section = line.substr(1, line.find(']') - 1);
            sections_.push_back(section);
            continue;
        }
        const auto equals = line.find('=');
        if (equals == std::string::npos) continue;
        const auto key = line.substr(0, equals);
        fields_[section][key] = line.substr(equals + 1, line.find_first_of("\t\r", equals) - equals - 1);
        keys_[section].push_back(key);
    }
}

bool Cal::Has(const std::string& section, const std::string& key) const {
    const auto found = fields_.find(section);
    return found != fields_.end() && found->second.count(key) != 0;
}

std::string Cal::Text(const std::string& section, const std::string& key) const {
    return Has(section, key) ? fields_.at(section).at(key) : std::string();
}

double Cal::Value(const std::string& section, const std::string& key) const {
    return std::strtod(Text(section, key).c_str(), nullptr);
}

std::vector<std::string> Cal::Keys(const std::string& section) const {
    const auto found = keys_.find(section);
    return found == keys_.end() ? std::vector<std::string>() : found->second;
}

Shown ConvertCorvane(const std::string& line, const Cal& cal, int channels) {
    CorvaneCounts counts;
    if (line[0] != '*')
        counts = FromDecimal(line, cal, channels);
    else
        counts = line[1] == 'V' ? FromVerbose(line, cal, channels) : FromShort(line, channels);

    Shown shown;
    shown.depthM = cal.Value("General", "DepthCal") * counts.pressure - cal.Value("General", "DepthOff");
    shown.tempC = counts.tempC;
    shown.gains = counts.gains;
    std::vector<double> sigmas;
    for (std::size_t ch = 0; ch < static_cast<std::size_t>(channels); ++ch) {
        const auto section = Numbered("Channel ", static_cast<long>(ch) + 1);
        const auto value = [&](const std::string& key) { return cal.Value(section, key); };
        const double gain = value(Numbered("Gain", counts.gains[ch]));
        const double warm = 1 + value("TempCoeff") * (counts.tempC - cal.Value("General", "CalTemp"));
        const double beta = value("Mu") * counts.snorm[ch] / (gain * value("RNominal")) / warm;
        const std::string name = cal.Text(section, "Name");
        const double lambda = std::strtod(name.c_str() + 2, nullptr);
        if (name.substr(0, 2) == "fl") {
            shown.bb.push_back(value("Beta2Bb") * beta);
            continue;
        }
        const double K = (Bb(beta, lambda) - FreshBb(lambda)) * 0.4 / 0.015 + ClearA(lambda);
        sigmas.push_back(Sigma(cal, section, lambda, K));
        shown.bb.push_back(Bb(beta * sigmas.back(), lambda));
    }
    CorrectFluorescence(shown, sigmas);
    return shown;
}

Shown ConvertTidal(const std::string& line, const Cal& cal, Model model) {
    double beta = 0, trans = 0, pressure = 0;
    Shown shown;
    if (line[0] == '*') {
        beta = static_cast<double>(HexAt(line, 13, 4));
        shown.gains = {static_cast<int>(HexAt(line, 17, 1))};
        trans = static_cast<double>(HexAt(line, 18, 6));
        if (trans >= 8388608) trans -= 16777216;
        pressure = static_cast<double>(HexAt(line, 24, 4));
        shown.tempC = static_cast<double>(HexAt(line, 28, 3)) / 10.0 - 10;
    } else {
        const auto numbers = Numbers(line);
        beta = numbers[1];
        shown.gains = {static_cast<int>(numbers[2])};
        trans = numbers[3];
        pressure = numbers[4];
        shown.tempC = numbers[5];
    }
    const auto s = [&](const std::string& key) { return cal.Value("Scattering", key); };
    const auto t = [&](const std::string& key) { return cal.Value("Attenuation", key); };
    const double depthOff = cal.Value("General", "DepthOff");
    shown.depthM = (pressure - depthOff) * cal.Value("General", "DepthCal");
    double P = 0, norm = 0;
    for (int i = 0; i < 6; ++i) {
        P += t(Numbered("TempCoeff", i)) * std::pow(shown.tempC, i);
        norm += t(Numbered("TempCoeff", i)) * std::pow(t("CalTemp"), i);
    }
    const double ratio = (t("TrPure") - t("TrNought")) / (trans / (P / norm) - t("TrNought"));
    double K = std::log(ratio) / t("Path");
    if (pressure >= depthOff)
        K -= (pressure - depthOff) * t("KDepthCoeff0") / (t("KDepthThreshold") - depthOff);
    shown.k = {K};
    const double lambda = s("Lambda");
    const double warm = 1 + s("TempCoeff") * (shown.tempC - s("CalTemp"));
    const double uncorrected = (beta - s(Numbered("Offset", shown.gains[0]))) * s("Mu") /
                               (warm * s(Numbered("Gain", shown.gains[0])));
    const double corrected =
        uncorrected * Sigma(cal, "Scattering", lambda, model == Model::NTidal ? 0.6 * K : K);
    shown.bb = {Bb(corrected, lambda)};
    const double x = corrected - WaterBeta(t("Lambda"));
    if (model == Model::LTidal) shown.a = K - t("Chi1") * x - t("Chi2") * x * x - t("Chi3") * x * x * x;
    return shown;
}

Shown ConvertDelph(const std::string& line, const Cal& cal) {
    const auto numbers = Numbers(line);
    Shown shown;
    const double T = numbers[6] / 100;
    shown.tempC = T;
    const auto d = [&](const std::string& key) { return cal.Value("Depth", key); };
    const double Pc = numbers[5] - d("P0") - (d("kp2") * T * T + d("kp1") * T) +
                      (d("kp2") * d("TP0") * d("TP0") + d("kp1") * d("TP0"));
    shown.depthM = d("kD2") * Pc * Pc + d("kD1") * Pc;
    for (std::size_t ch = 0; ch < 2; ++ch) {
        const auto section = Numbered("Attenuation ", static_cast<long>(ch) + 1);
        const auto c = [&](const std::string& key) { return cal.Value(section, key); };
        const double ratio = (numbers[1 + ch] - c("S0")) / (numbers[3 + ch] - c("R0"));
        double F = 1;
        if (Pc > c("P1")) F = 1 + c("kTauPX") * (Pc - c("P1")) / (c("P2") - c("P1"));
        double G = 0, norm = 0;
        for (int i = 0; i < 6; ++i) {
            G += c(Numbered("kT", i)) * std::pow(T, i);
            norm += c(Numbered("kT", i)) * std::pow(c("TPW"), i);
        }
        shown.k.push_back(std::log(c("Tau0") * F * (G / norm) / ratio) / c("L"));
    }
    return shown;
}

std::vector<std::string> LinesOf(Instrument& instrument, Millis until) {
    std::string text;
    for (Millis now{0}; now <= until; now += Millis{50}) text += instrument.TakeOutput(now);
    std::vector<std::string> lines;
    std::size_t begin = 0;
    for (auto end = text.find("\r\n"); end != std::string::npos; end = text.find("\r\n", begin)) {
        lines.push_back(text.substr(begin, end - begin));
        begin = end + 2;
    }
    return lines;
}

long HexAt(std::string_view line, std::size_t position, std::size_t width) {
    return std::stol(std::string(line.substr(position - 1, width)), nullptr, 16);
}

std::vector<double> Numbers(const std::string& line) {
    std::vector<double> numbers;
    std::istringstream fields(line);
    for (std::string field; std::getline(fields, field, ',');)
        numbers.push_back(std::strtod(field.c_str(), nullptr));
    return numbers;
}

long Commas(std::string_view line) {
    return std::count(line.begin(), line.end(), ',');
}

bool ChecksumFits(std::string_view line, bool withStar) {
    unsigned sum = 0;
    for (std::size_t i = withStar ? 0 : 1; i + 2 < line.size(); ++i)
        sum += static_cast<unsigned char>(line[i]);
    return HexAt(line, line.size() - 1, 2) == static_cast<long>(sum % 256);
}

}  // namespace marisonde::simulator::host
