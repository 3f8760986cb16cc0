#include "simulator/Arithmetic.h"
#include "simulator/CalWriter.h"
#include "simulator/Delph.h"

namespace marisonde::simulator {

namespace {

DelphChannel Beam(std::string_view name, double lambdaNm, double pathM, double tau0) {
    return {.name = name,
            .lambdaNm = lambdaNm,
            .bandNm = 12,
            .pathM = pathM,
            .darkSignal = 118,
            .darkReference = 143,
            .tempPoly = {1.0094, -0.00052, 3.1e-06, 0, 0, 0},
            .P1 = 1500,
            .P2 = 36000,
            .pressureScale = -0.0062,
            .pressurePoly = {1.0036, -1.0e-07, 0, 0, 0, 0},
            .tau0 = tau0,
            .tempPureWater = 20.6};
}

const DelphCalibration kDelph{
    .maxDepthM = 500,
    .kp1 = 1.42,
    .kp2 = -0.011,
    .P0 = 812,
    .TP0 = 20,
    .kD1 = 0.0103,
    .kD2 = 1.7e-09,
    .channels = {Beam("c(470)", 470, 0.25, 0.8731), Beam("c(650)", 650, 0.25, 0.9142)},
};

const DelphCalibration kFathom{
    .maxDepthM = 300,
    .kp1 = -0.87,
    .kp2 = 0.006,
    .P0 = 655,
    .TP0 = 20,
    .kD1 = 0.0087,
    .kD2 = -0.9e-09,
    .channels = {Beam("c(470)", 470, 0.1, 0.8924), Beam("c(530)", 530, 0.1, 0.9017)},
};

void WriteBeam(CalWriter& out, const DelphChannel& channel, int number) {
    out.Section("Attenuation " + std::to_string(number));
    out.Text("Name", channel.name);
    out.Double("Lambda", channel.lambdaNm);
    out.Double("DeltaLambda", channel.bandNm);
    out.Single("L", channel.pathM);
    out.Integer("S0", channel.darkSignal);
    out.Integer("R0", channel.darkReference);
    for (std::size_t i = 0; i < channel.tempPoly.size(); ++i)
        out.Double("kT" + std::to_string(i), channel.tempPoly[i]);
    out.Single("P1", channel.P1);
    out.Single("P2", channel.P2);
    out.Single("kTauPX", channel.pressureScale);
    for (std::size_t i = 0; i < channel.pressurePoly.size(); ++i)
        out.Double("kTauP" + std::to_string(i), channel.pressurePoly[i]);
    out.Double("Tau0", channel.tau0);
    out.Single("TPW", channel.tempPureWater);
    out.Empty();
}

}  // namespace

const DelphCalibration& DelphCalibrationOf(Model model) {
    return model == Model::Fathom2 ? kFathom : kDelph;
}

double ClearRatio(const DelphChannel& channel, double tempC, double pressure) {
    const double byTemp =
        Polynomial(channel.tempPoly, tempC) / Polynomial(channel.tempPoly, channel.tempPureWater);
    double byPressure = 1;
    if (pressure > channel.P2)
        byPressure = (1 + channel.pressureScale) * Polynomial(channel.pressurePoly, pressure) /
                     Polynomial(channel.pressurePoly, channel.P2);
    else if (pressure > channel.P1)
        byPressure = 1 + channel.pressureScale * (pressure - channel.P1) / (channel.P2 - channel.P1);
    return channel.tau0 * byPressure * byTemp;
}

std::string DelphCalText(const DelphCalibration& cal, const ModelInfo& info, std::string_view config,
                         std::int64_t calibratedAt) {
    CalWriter out;
    out.General(info.name, info.serial, config, cal.maxDepthM);
    out.CalTime(calibratedAt, false);
    out.Empty();
    out.Section("Depth");
    out.Single("kp1", cal.kp1);
    out.Single("kp2", cal.kp2);
    out.Single("P0", cal.P0);
    out.Integer("TP0", cal.TP0);
    out.Single("kD1", cal.kD1);
    out.Single("kD2", cal.kD2);
    out.Empty();
    int number = 0;
    for (const DelphChannel& channel : cal.channels) WriteBeam(out, channel, ++number);
    out.Section("End");
    return out.Take();
}

}  // namespace marisonde::simulator
