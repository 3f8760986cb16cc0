#include "simulator/CalWriter.h"
#include "simulator/Tidal.h"

namespace marisonde::simulator {

namespace {

const TidalCalibration kAbsorptionMeter{
    .depthCal = 0.0092,
    .depthOff = 1312,
    .maxDepthM = 500,
    .lambdaNm = 470,
    .bandNm = 20,
    .gains = {1, 9.962, 99.41, 992.7, 9915},
    .dark = {3, 5, 9, 30, 212},
    .Mu = 7.214e-6,
    .sigma = {0, 0.152, 0.0143},
    .beta2bb = 6.79,
    .MuRho = 0.98,
    .tempCoeff = 0.0009,
    .calTemp = 20.4,
    .kLambdaNm = 470,
    .kBandNm = 20,
    .dark24 = 1180,
    .pure24 = 5213400,
    .air24 = 5687200,
    .kCalTemp = 20.9,
    .pathM = 0.2,
    .chi = {0, 11.3, -92, 1400},
    .betaPure = 0.0001342,
    .kTempCoeff = {1.031, -0.00162, 8.1e-06, 0, 0, 0},
    .depthCoeff0 = 0.0124,
    .depthCoeff1 = 0.0391,
    .depthThreshold = 21500,
};

const TidalCalibration kAttenuationMeter{
    .depthCal = 0.0088,
    .depthOff = 1274,
    .maxDepthM = 500,
    .lambdaNm = 530,
    .bandNm = 16,
    .gains = {1, 10.044, 100.92, 1012.1, 10130},
    .dark = {2, 4, 8, 27, 190},
    .Mu = 1.883e-5,
    .sigma = {0.138},
    .beta2bb = 6.79,
    .MuRho = 0.98,
    .tempCoeff = 0.0006,
    .calTemp = 19.8,
    .kLambdaNm = 530,
    .kBandNm = 16,
    .dark24 = 940,
    .pure24 = 4876100,
    .air24 = 5301900,
    .kCalTemp = 20.2,
    .pathM = 0.15,
    .chi = {0, 0, 0, 0},
    .betaPure = 8.01e-05,
    .kTempCoeff = {1.018, -0.00091, 2.3e-06, 0, 0, 0},
    .depthCoeff0 = 0.0087,
    .depthCoeff1 = 0.0302,
    .depthThreshold = 22300,
};

void WriteScattering(CalWriter& out, const TidalImageContent& content) {
    const TidalCalibration& cal = content.cal;
    out.Section("Scattering");
    out.Six("Lambda", cal.lambdaNm);
    out.Six("DeltaLambda", cal.bandNm);
    out.Numbered("Gain", 1, cal.gains);
    out.Numbered("Offset", 1, cal.dark);
    out.Six("Mu", cal.Mu);
    out.Sigma(cal.sigma, content.sigma0.value_or(OldSigma(cal.lambdaNm, cal.sigma)));
    out.Six("ChiBb", cal.beta2bb);
    out.Six("TempCoeff", cal.tempCoeff);
    out.Six("CalTemp", cal.calTemp);
    out.Six("MuRho", cal.MuRho);
    out.Empty();
}

void WriteAttenuation(CalWriter& out, const TidalCalibration& cal) {
    out.Section("Attenuation");
    out.Six("Lambda", cal.kLambdaNm);
    out.Six("DeltaLambda", cal.kBandNm);
    out.Integer("TrNought", cal.dark24);
    out.Integer("TrPure", cal.pure24);
    out.Integer("TrAir", cal.air24);
    out.Single("CalTemp", cal.kCalTemp);
    out.Single("Path", cal.pathM);
    for (std::size_t i = 0; i < cal.chi.size(); ++i) out.Single("Chi" + std::to_string(i), cal.chi[i]);
    out.Single("BetaPure", cal.betaPure);
    for (std::size_t i = 0; i < cal.kTempCoeff.size(); ++i)
        out.Single("TempCoeff" + std::to_string(i), cal.kTempCoeff[i]);
    out.Single("KDepthCoeff0", cal.depthCoeff0);
    out.Integer("KDepthThreshold", cal.depthThreshold);
    out.Single("KDepthCoeff1", cal.depthCoeff1);
}

}  // namespace

const TidalCalibration& TidalCalibrationOf(Model model) {
    return model == Model::LTidal ? kAbsorptionMeter : kAttenuationMeter;
}

std::string TidalCalText(const TidalImageContent& content, const ModelInfo& info) {
    const TidalCalibration& cal = content.cal;
    CalWriter out;
    out.General(info.name, content.serial, content.config, cal.maxDepthM);
    out.CalTime(content.calibratedAt, true);
    out.Six("DepthCal", cal.depthCal);
    out.Six("DepthOff", cal.depthOff);
    out.Empty();
    WriteScattering(out, content);
    WriteAttenuation(out, cal);
    out.Section("End");
    return out.Take();
}

}  // namespace marisonde::simulator
