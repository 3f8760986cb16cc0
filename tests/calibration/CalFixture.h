#pragma once

#include <string>
#include <string_view>

#include "calibration/CalibrationDataClass.h"
#include "common/ConversionUtils.h"

namespace marisonde {

using Cal = CalibrationDataClass;

/// Sigma parameters that need no table.
inline SigmaParams FixedModel() {
    SigmaParams params;
    params.aStarValue = 0.05;
    return params;
}

inline std::string WithCrLf(std::string_view text) {
    std::string out;
    for (const char c : text) out += c == '\n' ? std::string("\r\n") : std::string(1, c);
    return out;
}

/// Without lambda everything about water is 0, and Sigma1 of a polynomial is 1 - Sigma2 x a - Sigma3 x a^2
/// with the a of the table's first row, 0.01137.
inline Cal Corvane2Cal() {
    Cal cal;
    cal.InstType = InstTypeCode::Corvane2;
    cal.Comment = "after service";
    cal.Serial = "CV2-7";
    cal.Label = "bow";
    cal.Config = "F";
    cal.CalTime = DateFromCivil(2009, 1, 3, 17, 5, 0);
    cal.ModificationTime = DateFromCivil(2010, 11, 4, 8, 7, 6);
    cal.DepthCal = 0.01234567F;
    cal.DepthOff = 3.5F;
    cal.CalTemp = 18.25F;
    cal.EditChannel(0).name = "bb";
    cal.SetMu(0, 0.123456789);
    cal.SetSigma(0, 1, 2);
    cal.SetSigma(0, 2, 3);
    cal.SetRNominal(0, 4000);
    cal.EditChannel(0).beta2bb = 1.1;
    cal.EditChannel(0).MuRho = 0.98;
    cal.EditChannel(0).bTempCoeff = 0.000123;
    cal.SetSigmaExp(1, 0.25);
    return cal;
}

/// A channel that has nothing but gains and a sigma.
inline std::string BareChannelText(const char* number, const char* sigma1, const char* sigmaExp) {
    std::string text = R"(
[Channel NUMBER]
Name=
Gain1=1
Gain2=10
Gain3=100
Gain4=1000
Gain5=10000
Mu=0
Sigma1=SIGMA_1	//not used by v2.7 and later
Sigma2=0
Sigma3=0
SigmaExp=SIGMA_EXP
RNominal=1
Beta2Bb=0
MuRho=0
TempCoeff=0
)";
    text.replace(text.find("NUMBER"), 6, number);
    text.replace(text.find("SIGMA_1"), 7, sigma1);
    text.replace(text.find("SIGMA_EXP"), 9, sigmaExp);
    return text;
}

// Sigma1 of channel 1: 1 - 2 x 0.01137 - 3 x 0.01137^2 = 0.976872169 -> 0.976872;
// of channel 2: exp(-0.25 x 0.01137) = 0.997161536 -> 0.997162.
inline const std::string kCorvane2Text =
    R"([Comment]
after service
[General]          //Saved by Marisonde 2.85
DeviceType=Corvane-2
Serial=CV2-7
Label=bow
Config=F
CalTime=1231002300 (01/3/09 17:05:00)
ModificationTime=11/04/10 08:07:06
DepthCal=0.0123457
DepthOff=3.5
CalTemp=18.25

[Channel 1]
Name=bb
Gain1=1
Gain2=10
Gain3=100
Gain4=1000
Gain5=10000
Mu=0.123457
Sigma1=0.976872	//not used by v2.7 and later
Sigma2=2
Sigma3=3
SigmaExp=0
RNominal=4000
Beta2Bb=1.1
MuRho=0.98
TempCoeff=0.000123
)" + BareChannelText("2", "0.997162", "0.25") +
    BareChannelText("3", "1", "0") + "[End]\n";

}  // namespace marisonde
