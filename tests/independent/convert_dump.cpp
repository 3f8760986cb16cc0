// Converts samples given as numbers on standard input and prints every calibrated field as an exact
// hexadecimal number. Input lines: "CAL <n>" and n lines of calibration text; "SIGMA ..." and "WATER ..."
// with the parameters; "SAMPLE ..." with one sample, which gives one line of output. See Read... below for
// the order of the numbers.

#include <cstdio>
#include <iostream>
#include <sstream>
#include <string>

#include "calibration/Converter.h"
#include "common/Numbers.h"

namespace {

using namespace marisonde;

double Next(std::istream& in) {
    std::string word;
    in >> word;
    return Val(word);
}

template <typename T>
void Take(std::istream& in, T& field) {
    field = static_cast<T>(Next(in));
}

SigmaParams ReadSigma(std::istream& in) {
    SigmaParams params;
    std::string aStar;
    in >> aStar;
    if (aStar.ends_with(".csv")) {
        params.aStarFile = aStar;
    } else {
        params.aStarValue = Val(aStar);
    }
    for (double* field :
         {&params.bbTildeValue, &params.gammay, &params.gammad, &params.C, &params.ad400, &params.p}) {
        Take(in, *field);
    }
    Take(in, params.cUseCV);
    Take(in, params.includePurewater);
    LoadSigmaTables(params);
    return params;
}

PureWaterParams ReadWater(std::istream& in) {
    PureWaterParams water;
    Take(in, water.UseCalChi);
    water.Choice = Next(in) != 0 ? PureWaterChoice::MorelSalt : PureWaterChoice::Custom;
    for (float* field : {&water.chi, &water.lambda0, &water.beta0, &water.bb0, &water.gammaLambda})
        Take(in, *field);
    return water;
}

RawSample ReadSample(std::istream& in) {
    RawSample raw;
    Take(in, raw.Format);
    Take(in, raw.Time);
    Take(in, raw.Hundredths);
    Take(in, raw.DayFraction);
    Take(in, raw.ElapsedCount);
    Take(in, raw.Pressure);
    Take(in, raw.Temp);
    Take(in, raw.Trans);
    for (std::size_t ch = 0; ch < 8; ++ch) {
        Take(in, raw.Gain[ch]);
        Take(in, raw.Sig[ch]);
        Take(in, raw.SigOff[ch]);
        Take(in, raw.Ref[ch]);
        Take(in, raw.RefOff[ch]);
        Take(in, raw.Snorm[ch]);
    }
    return raw;
}

void Print(double value) {
    std::printf(" %a", value);
}

template <typename Values>
void PrintAll(const Values& values) {
    for (const auto value : values) Print(static_cast<double>(value));
}

void PrintSample(const RawSample& raw, const CalibratedSample& out) {
    for (const double value :
         {static_cast<double>(out.SampleNo), static_cast<double>(out.Depth), static_cast<double>(out.Temp),
          static_cast<double>(out.Aux), out.Time, out.Elapsed, static_cast<double>(out.TransNorm),
          static_cast<double>(out.K), static_cast<double>(out.a)}) {
        Print(value);
    }
    PrintAll(out.Valid);
    PrintAll(out.bbUncorr);
    PrintAll(out.bb);
    PrintAll(out.betaUncorr);
    PrintAll(out.beta);
    PrintAll(out.Sigma);
    PrintAll(out.k);
    PrintAll(raw.Snorm);
    std::printf("\n");
}

std::string ReadLines(int count) {
    std::string text;
    std::string line;
    for (int i = 0; i < count && std::getline(std::cin, line); ++i) text += line + "\r\n";
    return text;
}

}  // namespace

int main() {
    CalibrationDataClass cal;
    SigmaParams sigma;
    PureWaterParams water;
    CalibratedSample out;
    std::string line;
    while (std::getline(std::cin, line)) {
        std::istringstream in(line);
        std::string what;
        in >> what;
        if (what == "SIGMA") sigma = ReadSigma(in);
        if (what == "WATER") water = ReadWater(in);
        if (what == "CAL") {
            (void)cal.LoadText(ReadLines(static_cast<int>(Next(in))), sigma, water);
            out = CalibratedSample();
        }
        if (what != "SAMPLE") continue;
        RawSample raw = ReadSample(in);
        std::printf("%d", ApplyCalibration(raw, cal, sigma, water, out) ? 1 : 0);
        PrintSample(raw, out);
    }
}
