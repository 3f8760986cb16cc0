// The text of a calibration file in each layout.
#include <gtest/gtest.h>
#include <string>
#include <string_view>

#include "CalFixture.h"
#include "common/ConversionUtils.h"

namespace marisonde {
namespace {

TEST(CalLayout, Corvane) {
    EXPECT_EQ(Corvane2Cal().CalText({}), WithCrLf(kCorvane2Text));
}

TEST(CalLayout, CorvaneWithOffsetsAndDepthRating) {
    Cal cal = Corvane2Cal();
    cal.EditChannel(1).DarkOffset = {0, 1, 2, 3, 4, -5};
    cal.EditChannel(1).NomOffset = {0, 6, 0, 0, 0, 0};
    cal.MaxDepth = 500;
    cal.Comment.clear();
    const std::string text = cal.CalText({});
    EXPECT_TRUE(text.starts_with("[General]"));
    EXPECT_NE(text.find("Config=F\r\nMaxDepth=500\r\nCalTime="), std::string::npos);
    EXPECT_NE(text.find("TempCoeff=0\r\nOffset1=1\r\nOffset2=2\r\nOffset3=3\r\nOffset4=4\r\nOffset5=-5\r\n"
                        "NomOffset1=6\r\nNomOffset2=0\r\nNomOffset3=0\r\nNomOffset4=0\r\nNomOffset5=0\r\n\r\n"
                        "[Channel 3]\r\n"),
              std::string::npos);
    EXPECT_EQ(text.find("FlOffset"), std::string::npos);
}

TEST(CalLayout, FluorescenceOffsetsAreWrittenForTheCorvane6Only) {
    Cal cal;
    cal.InstType = InstTypeCode::Corvane6;
    cal.EditChannel(7).FlOffset[5] = 9;
    const std::string text = cal.CalText({});
    EXPECT_NE(
        text.find(
            "NomOffset5=0\r\nFlOffset1=0\r\nFlOffset2=0\r\nFlOffset3=0\r\nFlOffset4=0\r\nFlOffset5=9\r\n"
            "[End]\r\n"),
        std::string::npos);
    EXPECT_NE(text.find("[Channel 8]"), std::string::npos);
    EXPECT_EQ(text.find("[Channel 9]"), std::string::npos);
    EXPECT_EQ(text.find("CalTime"), std::string::npos);
    EXPECT_EQ(text.find("ModificationTime"), std::string::npos);
    cal.InstType = InstTypeCode::Corvane4;
    EXPECT_EQ(cal.CalText({}).find("FlOffset"), std::string::npos);
    EXPECT_EQ(cal.CalText({}).find("[Channel 5]"), std::string::npos);
}

Cal Delph() {
    Cal cal;
    cal.InstType = InstTypeCode::Delph4;
    cal.Comment = "not in this layout";
    cal.Serial = "D4-12";
    cal.CalTime = DateFromCivil(2009, 1, 13, 0, 0, 1);
    cal.kp1 = 0.1234567F;
    cal.kp2 = -1.5e-7F;
    cal.P0 = 10;
    cal.TP0 = 20;
    cal.kD1 = 0.5F;
    cal.kD2 = 1e-8F;
    for (int ch = 0; ch < 2; ++ch) {
        cal.EditChannel(ch).name = "c(" + std::to_string(470 + 10 * ch) + ")";
        AttenuationPlain& beam = cal.EditAttenuation(ch);
        beam.KLambda = static_cast<std::int16_t>(470 + 10 * ch);
        beam.KDeltaLambda = 20;
        beam.KL = 0.1F;
        beam.KS0 = 101;
        beam.KR0 = 102;
        beam.KkTauPX = 0.01234567F;
        beam.KTau0 = 0.123456789012345;
        cal.SetKkT(ch, 0, 1);
        cal.SetKkTauP(ch, 0, 2);
        cal.SetKkTauP(ch, 1, 0.5);
        cal.SetKP(ch, 1, 100);
        cal.SetKP(ch, 2, 4);
        cal.SetKTPW(ch, 19.5F);
    }
    return cal;
}

// The pressure polynomial at P2 = 4 is 2 + 0.5 x 4 = 4: 0.5 and 0.125 are written.
std::string DelphBeamText(const char* number, const char* lambda) {
    std::string text = R"(
[Attenuation NUMBER]
Name=c(LAMBDA_NM)
Lambda=LAMBDA_NM
DeltaLambda=20
L=0.1
S0=101
R0=102
kT0=1
kT1=0
kT2=0
kT3=0
kT4=0
kT5=0
P1=100
P2=4
kTauPX=1.234567E-02
kTauP0=0.5
kTauP1=0.125
kTauP2=0
kTauP3=0
kTauP4=0
kTauP5=0
Tau0=0.123456789012345
TPW=19.5
)";
    text.replace(text.find("NUMBER"), 6, number);
    for (int i = 0; i < 2; ++i) text.replace(text.find("LAMBDA_NM"), 9, lambda);
    return text;
}

const std::string kDelphText =
    R"([General]          //Saved by Marisonde 2.85
DeviceType=Delph-4
Serial=D4-12
Label=
Config=
MaxDepth=0
CalTime=1231804801 (01/13/09 00:00:01)

[Depth]
kp1=0.1234567
kp2=-1.5E-07
P0=10
TP0=20
kD1=0.5
kD2=1E-08
)" + DelphBeamText("1", "470") +
    DelphBeamText("2", "480") + "\n[End]\n";

TEST(CalLayout, Delph) {
    EXPECT_EQ(Delph().CalText({}), WithCrLf(kDelphText));
}

Cal Tidal() {
    Cal cal;
    cal.InstType = InstTypeCode::NTidal;
    cal.Comment = "x";
    cal.Serial = "NT990105";
    cal.CalTime = DateFromCivil(1999, 2, 3, 4, 5, 6);
    cal.DepthCal = 0.25F;
    cal.CalTemp = 20.5F;
    cal.EditChannel(0).bDeltaLambda = 20;
    cal.EditChannel(0).DarkOffset = {0, 1, 2, 3, 4, 5};
    cal.SetMu(0, 1.0 / 3);
    cal.EditChannel(0).beta2bb = 1.1;
    cal.EditChannel(0).MuRho = 0.98;
    AttenuationPlain& beam = cal.EditAttenuation(0);
    beam.KLambda = 660;
    beam.KDeltaLambda = 20;
    beam.TrNought = 12;
    beam.TrPure = 700000;
    beam.TrAir = 800000;
    beam.KPath = 0.1234567F;
    beam.KChi = {0.5F, 1, 2, 3, 9};
    beam.betaPure = 0.0001F;
    beam.KDepthCoeff = {0.25F, 0.5F};
    beam.KDepthThresh[0] = 3000;
    cal.SetKCalTemp(0, 19);
    cal.SetKTempCoeff(0, 0, 1);
    cal.SetKTempCoeff(0, 5, -0.125F);
    return cal;
}

// 3 February 1999 is day 36194, 6973 days after the start of 1980: 6973 x 86400 + 14706 s = 602481906.
constexpr std::string_view kTidalText = R"([Comment]
x
[General]          //Saved by Marisonde 2.85
DeviceType=n-Tidal
Serial=NT990105
Label=
Config=
CalTime=602481906 (02/03/99 04:05:06)
DepthCal=0.25
DepthOff=0

[Scattering]
Lambda=0
DeltaLambda=20
Gain1=1
Gain2=10
Gain3=100
Gain4=1000
Gain5=10000
Offset1=1
Offset2=2
Offset3=3
Offset4=4
Offset5=5
Mu=0.333333
Sigma1=1	//not used by v2.7 and later
Sigma2=0
Sigma3=0
SigmaExp=0
ChiBb=1.1
TempCoeff=0
CalTemp=20.5
MuRho=0.98

[Attenuation]
Lambda=660
DeltaLambda=20
TrNought=12
TrPure=700000
TrAir=800000
CalTemp=19
Path=0.1234567
Chi0=0.5
Chi1=1
Chi2=2
Chi3=3
BetaPure=0.0001
TempCoeff0=1
TempCoeff1=0
TempCoeff2=0
TempCoeff3=0
TempCoeff4=0
TempCoeff5=-0.125
KDepthCoeff0=0.25
KDepthThreshold=3000
KDepthCoeff1=0.5
[End]
)";

TEST(CalLayout, Tidal) {
    EXPECT_EQ(Tidal().CalText({}), WithCrLf(kTidalText));
}

TEST(CalLayout, TidalWithDatesAndDepthRating) {
    Cal cal = Tidal();
    cal.MaxDepth = 1000;
    cal.ModificationTime = DateFromCivil(2001, 2, 3);
    EXPECT_NE(cal.CalText({}).find("Config=\r\nMaxDepth=1000\r\nCalTime=602481906 (02/03/99 04:05:06)\r\n"
                                   "ModificationTime=02/03/01 00:00:00\r\nDepthCal="),
              std::string::npos);
}

TEST(CalLayout, UnknownModelsHaveNone) {
    EXPECT_EQ(Cal().CalText({}), "[End]\r\n");
    Cal cal;
    cal.InstType = InstTypeCode::NoSuchName;
    EXPECT_EQ(cal.CalText({}), "[End]\r\n");
}

}  // namespace
}  // namespace marisonde
