#include <gtest/gtest.h>
#include <string>
#include <string_view>

#include "calibration/CalibrationDataClass.h"
#include "common/ConversionUtils.h"
#include "files/DatFile.h"

namespace marisonde {
namespace {

HeaderStamp Stamp(std::string userHeader = "") {
    return {std::move(userHeader), DateFromCivil(2011, 7, 4, 9, 15, 22)};
}

/// Channels n0, n1, and so on.
CalibrationDataClass CalibrationOf(InstTypeCode type) {
    CalibrationDataClass cal;
    cal.InstType = type;
    cal.Serial = "HS970312";
    cal.Config = "FT";
    for (int ch = 0; ch < kChannelSlots; ++ch)
        cal.EditChannel(ch).name = std::string("n").append(std::to_string(ch));
    return cal;
}

PureWaterParams Water(PureWaterChoice choice = PureWaterChoice::Custom) {
    PureWaterParams water;
    water.Choice = choice;
    water.bb0 = 0.5F;
    water.beta0 = 0.25F;
    water.lambda0 = 525;
    water.gammaLambda = 4.32F;
    water.chi = 1.08F;
    return water;
}

SigmaParams Sigma() {
    SigmaParams sigma;
    sigma.aStarValue = 0.0625;
    return sigma;
}

std::string DatHeader(const HeaderStamp& stamp, std::string_view dataSource, const CalibrationDataClass& cal,
                      const SigmaParams& sigma, const PureWaterParams& water) {
    std::string out;
    WriteDatHeader(out, stamp, dataSource, cal, sigma, water);
    return out;
}

TEST(DatHeaderTest, Corvane2OfALiveInstrument) {
    CalibrationDataClass cal = CalibrationOf(InstTypeCode::Corvane2);
    EXPECT_EQ(DatHeader(Stamp("Leg 2"), "", cal, Sigma(), Water(PureWaterChoice::MorelFresh)),
              "[UserHeader]\r\n"
              "Leg 2\r\n"
              "[Header]\r\n"
              "MarisondeVersion=2.85\r\n"
              "CreationDate=07/04/11 09:15:22\r\n"
              "FileType=dat\r\n"
              "DeviceType=Corvane-2\r\n"
              "DataSource=Corvane-2\r\n"
              "CalSource=Corvane-2\r\n"
              "Serial=HS970312\r\n"
              "Config=FT\r\n"
              "[SigmaParams]\r\n"
              "ad400=0.01\r\n"
              "aStarValue=0.0625\r\n"
              "awFile=Marisonde.exe\r\n"
              "bbTildeValue=0.015\r\n"
              "C=0.1\r\n"
              "gammad=0.011\r\n"
              "gammay=0.014\r\n"
              "ExponentialFit=False\r\n"
              "[bbParams]\r\n"
              "PureWaterModel=MorelFresh\r\n"
              "bb0=0.5\r\n"
              "beta0=0.25\r\n"
              "lambda0=525\r\n"
              "gammaLambda=4.32\r\n"
              "chi=1.08\r\n"
              "[Channels]\r\n"
              "\"n0\"\r\n"
              "\"n1\"\r\n"
              "\"n2\"\r\n"
              "[ColumnHeadings]\r\n"
              "Time,Depth,n0,n1,n2,n0uncorr,n1uncorr,n2uncorr\r\n"
              "\r\n"
              "[Data]\r\n");
}

TEST(DatHeaderTest, NTidalOfAFileWithTablesWithoutPureWater) {
    CalibrationDataClass cal = CalibrationOf(InstTypeCode::NTidal);
    cal.NoteSource("/cals/nt.cal");
    cal.SetSigmaExp(0, 0.14);
    SigmaParams sigma = Sigma();
    sigma.cUseCV = true;
    sigma.aStarValue = kSentinel;
    sigma.aStarFile = "/tables/aStar.csv";
    sigma.bbTildeValue = kSentinel;
    sigma.bbTildeFile = "/tables/tilde.csv";
    PureWaterParams water = Water(PureWaterChoice::NoPure);
    water.bb0 = 0;
    water.beta0 = 0;
    water.UseCalChi = true;
    water.WriteBetaColumns = true;
    EXPECT_EQ(DatHeader(Stamp(), "/data/cast 1.raw", cal, sigma, water),
              "[Header]\r\n"
              "MarisondeVersion=2.85\r\n"
              "CreationDate=07/04/11 09:15:22\r\n"
              "FileType=dat\r\n"
              "DeviceType=n-Tidal\r\n"
              "DataSource=/data/cast 1.raw\r\n"
              "CalSource=/cals/nt.cal\r\n"
              "Serial=HS970312\r\n"
              "Config=FT\r\n"
              "[SigmaParams]\r\n"
              "ad400=0.01\r\n"
              "aStarFile=/tables/aStar.csv\r\n"
              "awFile=Marisonde.exe\r\n"
              "bbTildeFile=/tables/tilde.csv\r\n"
              "C=0.1\r\n"
              "gammad=0.011\r\n"
              "gammay=0.014\r\n"
              "ExponentialFit=True\r\n"
              "[bbParams]\r\n"
              "PureWaterModel=bb0=0\r\n"
              "beta0=0\r\n"
              "lambda0=525\r\n"
              "gammaLambda=4.32\r\n"
              "chi=FromCalFile\r\n"
              "[Channels]\r\n"
              "\"n0\"\r\n"
              "\"n1\"\r\n"
              "\"n2\"\r\n"
              "[ColumnHeadings]\r\n"
              "Time,Depth,n0,n0u,n1\r\n"
              ",betan0,betan0u,\r\n"
              "\r\n"
              "[Data]\r\n");
}

TEST(DatHeaderTest, XTidalHasNoSigmaSectionAndNoColumnsBehindDepth) {
    PureWaterParams water = Water();
    water.WriteBetaColumns = true;
    EXPECT_EQ(DatHeader(Stamp(), "", CalibrationOf(InstTypeCode::XTidal), Sigma(), water),
              "[Header]\r\n"
              "MarisondeVersion=2.85\r\n"
              "CreationDate=07/04/11 09:15:22\r\n"
              "FileType=dat\r\n"
              "DeviceType=x-Tidal\r\n"
              "DataSource=x-Tidal\r\n"
              "CalSource=x-Tidal\r\n"
              "Serial=HS970312\r\n"
              "Config=FT\r\n"
              "ExponentialFit=False\r\n"
              "[bbParams]\r\n"
              "PureWaterModel=Custom\r\n"
              "bb0=0.5\r\n"
              "beta0=0.25\r\n"
              "lambda0=525\r\n"
              "gammaLambda=4.32\r\n"
              "chi=1.08\r\n"
              "[Channels]\r\n"
              "[ColumnHeadings]\r\n"
              "Time,Depth\r\n"
              "\r\n"
              "[Data]\r\n");
}

TEST(DatHeaderTest, NumbersAreTheGeneralTextOfTheStoredValue) {
    PureWaterParams water = Water();
    // beta0 of fresh water at 525 nm and 140 degrees, halved, is held in 32 bits: 0.000056 x (1 + 0.835 x
    // cos^2 140) = 8.343989E-05 to seven digits; bb0 is given here as a plain number that needs the exponent
    // form.
    water.beta0 = 8.343989e-5F;
    water.bb0 = 1.234568e-3F;
    SigmaParams sigma = Sigma();
    sigma.ad400 = 0.1 + 0.2;  // a 64-bit value keeps all its digits
    const std::string header = DatHeader(Stamp(), "", CalibrationOf(InstTypeCode::Corvane6), sigma, water);
    EXPECT_NE(header.find("\r\nad400=0.30000000000000004\r\n"), std::string::npos) << header;
    EXPECT_NE(header.find("\r\nbb0=1.234568E-03\r\nbeta0=8.343989E-05\r\n"), std::string::npos) << header;
}

/// What differs by model: the kind of sigma section, the names of [Channels], the headings.
struct ModelCase {
    InstTypeCode type;
    bool sigmaModel;        ///< has the parameters of the model
    bool sigmaModelIfUsed;  ///< has them when the n-Tidal uses the model, otherwise p
    bool bbParams;
    const char* channels;
    const char* headings;
    const char* headingsWithBeta;
};

const ModelCase kModels[] = {
    {InstTypeCode::Corvane6, true, false, true,
     "\"n0\"\r\n\"n1\"\r\n\"n2\"\r\n\"n3\"\r\n\"n4\"\r\n\"n5\"\r\n\"n6\"\r\n\"n7\"\r\n",
     ",n0,n1,n2,n3,n4,n5,n6,n7"
     ",n0uncorr,n1uncorr,n2uncorr,n3uncorr,n4uncorr,n5uncorr,n6uncorr,n7uncorr",
     ",n0,n1,n2,n3,n4,n5,n6,n7"
     ",n0uncorr,n1uncorr,n2uncorr,n3uncorr,n4uncorr,n5uncorr,n6uncorr,n7uncorr"
     ",betan0,betan1,betan2,betan3,betan4,betan5,betan6,betan7"
     ",betan0uncorr,betan1uncorr,betan2uncorr,betan3uncorr,betan4uncorr,betan5uncorr,betan6uncorr"
     ",betan7uncorr"},
    {InstTypeCode::Corvane4, true, false, true, "\"n0\"\r\n\"n1\"\r\n\"n2\"\r\n\"n3\"\r\n",
     ",n0,n1,n2,n3,n0uncorr,n1uncorr,n2uncorr,n3uncorr",
     ",n0,n1,n2,n3,n0uncorr,n1uncorr,n2uncorr,n3uncorr"
     ",betan0,betan1,betan2,betan3,betan0uncorr,betan1uncorr,betan2uncorr,betan3uncorr"},
    {InstTypeCode::Corvane2, true, false, true, "\"n0\"\r\n\"n1\"\r\n\"n2\"\r\n",
     ",n0,n1,n2,n0uncorr,n1uncorr,n2uncorr",
     ",n0,n1,n2,n0uncorr,n1uncorr,n2uncorr,betan0,betan1,betan2,betan0uncorr,betan1uncorr,betan2uncorr"},
    {InstTypeCode::LTidal, false, false, true, "\"n0\"\r\n\"n1\"\r\n\"n2\"\r\n", ",n0,n0u,n2,n1",
     ",n0,n0u,n2,n1,betan0,betan0u,"},
    {InstTypeCode::NTidal, false, true, true, "\"n0\"\r\n\"n1\"\r\n\"n2\"\r\n", ",n0,n0u,n1",
     ",n0,n0u,n1\r\n,betan0,betan0u,"},
    {InstTypeCode::XTidal, false, false, true, "", "", ""},
    {InstTypeCode::Fathom2, false, false, false, "\"n0\"\r\n\"n1\"\r\n", ",n0,n1,IntT", ",n0,n1,IntT"},
    {InstTypeCode::Delph2, false, false, false, "\"n0\"\r\n\"n1\"\r\n", ",n0,n1,IntT", ",n0,n1,IntT"},
    {InstTypeCode::Delph4, false, false, false, "\"n0\"\r\n\"n1\"\r\n\"n2\"\r\n\"n3\"\r\n",
     ",n0,n1,n2,n3,IntT", ",n0,n1,n2,n3,IntT"},
    {InstTypeCode::Delph6, false, false, false,
     "\"n0\"\r\n\"n1\"\r\n\"n2\"\r\n\"n3\"\r\n\"n4\"\r\n\"n5\"\r\n", ",n0,n1,n2,n3,n4,n5,IntT",
     ",n0,n1,n2,n3,n4,n5,IntT"},
    {InstTypeCode::Unknown, false, false, false, "", "", ""},
};

/// One way to set the parameters: each bit of `bits` is one of the switches below.
struct Setting {
    unsigned bits;
    PureWaterChoice choice;
    [[nodiscard]] bool aStarByFile() const { return (bits & 1) != 0; }
    [[nodiscard]] bool tildeByFile() const { return (bits & 2) != 0; }
    [[nodiscard]] bool useModel() const { return (bits & 4) != 0; }
    [[nodiscard]] bool calChi() const { return (bits & 8) != 0; }
    [[nodiscard]] bool betaColumns() const { return (bits & 16) != 0; }
    [[nodiscard]] bool userHeader() const { return (bits & 32) != 0; }
    [[nodiscard]] bool exponential() const { return (bits & 64) != 0; }
};

std::string ExpectedSigmaSection(const ModelCase& model, const Setting& setting) {
    if (model.sigmaModelIfUsed && !setting.useModel()) return "[SigmaParams]\r\np=0.6\r\n";
    if (!model.sigmaModel && !model.sigmaModelIfUsed) return "";
    return std::string("[SigmaParams]\r\nad400=0.01\r\n") +
           (setting.aStarByFile() ? "aStarFile=a b.csv" : "aStarValue=0.0625") +
           "\r\nawFile=Marisonde.exe\r\n" +
           (setting.tildeByFile() ? "bbTildeFile=t.csv" : "bbTildeValue=0.015") +
           "\r\nC=0.1\r\ngammad=0.011\r\ngammay=0.014\r\n";
}

std::string_view ModelLine(PureWaterChoice choice) {
    switch (choice) {
        case PureWaterChoice::MorelFresh:
            return "PureWaterModel=MorelFresh\r\n";
        case PureWaterChoice::MorelSalt:
            return "PureWaterModel=MorelSalt\r\n";
        case PureWaterChoice::VenmarkRecommended:
            return "PureWaterModel=VenmarkRecommended\r\n";
        case PureWaterChoice::Custom:
            return "PureWaterModel=Custom\r\n";
        case PureWaterChoice::NoPure:
            return "PureWaterModel=";
    }
    return "";
}

std::string ExpectedBbSection(const ModelCase& model, const Setting& setting) {
    if (!model.bbParams) return "";
    return "[bbParams]\r\n" + std::string(ModelLine(setting.choice)) +
           "bb0=0.5\r\nbeta0=0.25\r\nlambda0=525\r\ngammaLambda=4.32\r\n" +
           (setting.calChi() ? "chi=FromCalFile\r\n" : "chi=1.08\r\n");
}

std::string Expected(const ModelCase& model, const Setting& setting) {
    const std::string name(InstTypeName(model.type));
    return std::string(setting.userHeader() ? "[UserHeader]\r\nLeg 2\r\n" : "") +
           "[Header]\r\nMarisondeVersion=2.85\r\nCreationDate=07/04/11 "
           "09:15:22\r\nFileType=dat\r\nDeviceType=" +
           name + "\r\nDataSource=" + name + "\r\nCalSource=" + name +
           "\r\nSerial=HS970312\r\nConfig=FT\r\n" + ExpectedSigmaSection(model, setting) +
           (setting.exponential() ? "ExponentialFit=True\r\n" : "ExponentialFit=False\r\n") +
           ExpectedBbSection(model, setting) + "[Channels]\r\n" + model.channels +
           "[ColumnHeadings]\r\nTime,Depth" +
           (setting.betaColumns() ? model.headingsWithBeta : model.headings) + "\r\n\r\n[Data]\r\n";
}

std::string Written(const ModelCase& model, const Setting& setting) {
    SigmaParams sigma = Sigma();
    if (setting.aStarByFile()) sigma.aStarValue = kSentinel;
    sigma.aStarFile = "a b.csv";
    if (setting.tildeByFile()) sigma.bbTildeValue = kSentinel;
    sigma.bbTildeFile = "t.csv";
    sigma.cUseCV = setting.useModel();
    PureWaterParams water = Water(setting.choice);
    water.UseCalChi = setting.calChi();
    water.WriteBetaColumns = setting.betaColumns();
    CalibrationDataClass cal = CalibrationOf(model.type);
    // 0.0001 is not yet an exponential fit, and only channel 0 counts.
    cal.SetSigmaExp(0, setting.exponential() ? 0.00011 : 0.0001);
    cal.SetSigmaExp(1, 0.2);
    return DatHeader(Stamp(setting.userHeader() ? "Leg 2" : ""), "", cal, sigma, water);
}

TEST(DatHeaderTest, EveryModelWithEverySetting) {
    ASSERT_EQ(std::size(kModels), kInstTypeCount);
    for (const ModelCase& model : kModels) {
        for (int choice = 0; choice < 5; ++choice) {
            for (unsigned bits = 0; bits < 128; ++bits) {
                const Setting setting{bits, static_cast<PureWaterChoice>(choice)};
                ASSERT_EQ(Written(model, setting), Expected(model, setting))
                    << InstTypeName(model.type) << " choice " << choice << " bits " << bits;
            }
        }
    }
}

}  // namespace
}  // namespace marisonde
