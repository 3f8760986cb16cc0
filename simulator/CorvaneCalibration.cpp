#include "simulator/CalWriter.h"
#include "simulator/Corvane.h"

namespace marisonde::simulator {

namespace {

// Real units differ a little in every step; one receiver has one set of gains, so a fluorescence channel
// repeats those of the channel that receives for it.
constexpr GainSteps kGainsA{1, 10.12, 101.7, 1019.4, 10183};
constexpr GainSteps kGainsB{1, 9.873, 98.61, 984.2, 9827};
constexpr GainSteps kGainsC{1, 10.031, 99.87, 1003.6, 10041};

constexpr GainOffsets kDark{2, 3, 5, 21, 180};
constexpr GainOffsets kDarkSmall{1, 2, 4, 14, 122};
constexpr GainOffsets kNominal{2, 3, 4, 19, 175};
constexpr GainOffsets kFluorescence{0, 1, 1, 6, 48};
constexpr GainOffsets kNone{0, 0, 0, 0, 0};

const CorvaneCalibration kSix{
    0.0104,
    12.37,
    20.3,
    500,
    {
        {"bb470", 470, kGainsA, 0.0613, {0.142}, 12150, 6.7858, 0.98, 0.0012, kDark, kNominal, kNone},
        {"bb700",
         700,
         kGainsB,
         1.874,
         {0.151},
         11870,
         6.7858,
         0.98,
         -0.0008,
         kDarkSmall,
         kNominal,
         kFluorescence},
        {"bb420", 420, kGainsC, 0.0548, {0.139}, 12440, 6.7858, 0.975, 0.0019, kDark, kNominal, kNone},
        {"bb510",
         510,
         kGainsA,
         0.3127,
         {0.144},
         12010,
         6.7858,
         0.98,
         0.0007,
         kDarkSmall,
         kNominal,
         kFluorescence},
        {"bb550", 550, kGainsB, 0.5871, {0.146}, 11930, 6.7858, 0.981, 0.0004, kDark, kNominal, kNone},
        {"bb620", 620, kGainsC, 0.8215, {0.148}, 12290, 6.7858, 0.982, -0.0003, kDarkSmall, kNominal, kNone},
        {"fl510", 510, kGainsA, 0.7642, {0}, 12440, 1, 0.9, 0.0021, kDark, kNominal, kFluorescence, 2, 3},
        {"fl700", 700, kGainsB, 0.9386, {0}, 12150, 1, 0.9, -0.0011, kDark, kNominal, kFluorescence, 0, 1},
    }};

const CorvaneCalibration kFour{0.0098,
                               11.02,
                               19.6,
                               600,
                               {
                                   {"bb440",
                                    440,
                                    kGainsB,
                                    0.0702,
                                    {0, 0.137, 0.0121},
                                    11020,
                                    7.03,
                                    0.98,
                                    0.0015,
                                    kDark,
                                    kNominal,
                                    kNone},
                                   {"bb510",
                                    510,
                                    kGainsA,
                                    0.2931,
                                    {0, 0.141, 0.0118},
                                    11240,
                                    7.03,
                                    0.98,
                                    0.0009,
                                    kDark,
                                    kNominal,
                                    kNone},
                                   {"bb620",
                                    620,
                                    kGainsC,
                                    0.7624,
                                    {0, 0.146, 0.0124},
                                    10970,
                                    7.03,
                                    0.98,
                                    -0.0002,
                                    kDarkSmall,
                                    kNominal,
                                    kNone},
                                   {"bb700",
                                    700,
                                    kGainsA,
                                    1.693,
                                    {0, 0.149, 0.0131},
                                    11110,
                                    7.03,
                                    0.98,
                                    -0.0006,
                                    kDarkSmall,
                                    kNominal,
                                    kNone},
                               }};

const CorvaneCalibration kTwo{
    0.0051,
    10.84,
    21.1,
    300,
    {
        {"bb470", 470, kGainsC, 0.0587, {0.141}, 12020, 6.7858, 0.98, 0.0011, kDark, kNominal, kNone},
        {"bb700", 700, kGainsA, 1.792, {0.15}, 12180, 6.7858, 0.98, -0.0007, kDarkSmall, kNominal, kNone},
        {"fl700", 700, kGainsA, 0.8873, {0}, 12020, 1, 0.9, -0.0013, kDarkSmall, kNominal, kNone, 0, 1},
    }};

void WriteChannel(CalWriter& out, const CorvaneChannel& channel, int number, bool withFluorescenceOffsets) {
    out.Empty();
    out.Section("Channel " + std::to_string(number));
    out.Text("Name", channel.name);
    out.Numbered("Gain", 1, channel.gains);
    out.Six("Mu", channel.Mu);
    out.Sigma(channel.sigma, Sigma0(channel));
    out.Six("RNominal", channel.RNominal);
    if (channel.rOutOff != 0) out.Six("ROutOff", channel.rOutOff);
    if (channel.bb2c != 0) out.Six("Bb2c", channel.bb2c);
    out.Six("Beta2Bb", channel.beta2bb);
    out.Six("MuRho", channel.MuRho);
    out.Six("TempCoeff", channel.tempCoeff);
    out.Numbered("Offset", 1, channel.dark);
    out.Numbered("NomOffset", 1, channel.nominal);
    if (withFluorescenceOffsets) out.Numbered("FlOffset", 1, channel.fluorescence);
}

}  // namespace

double Sigma0(const CorvaneChannel& channel) {
    return channel.sigma0.value_or(OldSigma(channel.lambdaNm, channel.sigma));
}

const CorvaneCalibration& CorvaneCalibrationOf(Model model) {
    if (model == Model::Corvane4) return kFour;
    return model == Model::Corvane2 ? kTwo : kSix;
}

std::string CorvaneCalText(const CorvaneCalibration& cal, const ModelInfo& info, std::string_view config,
                           std::int64_t calibratedAt) {
    CalWriter out;
    out.General(info.name, info.serial, config, cal.maxDepthM);
    out.CalTime(calibratedAt, false);
    out.Six("DepthCal", cal.depthCal);
    out.Six("DepthOff", cal.depthOff);
    out.Six("CalTemp", cal.calTemp);
    int number = 0;
    for (const CorvaneChannel& channel : cal.channels)
        WriteChannel(out, channel, ++number, info.model == Model::Corvane6);
    out.Section("End");
    return out.Take();
}

}  // namespace marisonde::simulator
