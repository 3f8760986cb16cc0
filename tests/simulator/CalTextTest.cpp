#include <gtest/gtest.h>

#include "simulator/HostSide.h"

namespace marisonde::simulator {
namespace {

using Words = std::vector<std::string>;

Words operator+(Words a, const Words& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

Words Numbered(const std::string& prefix, int first, int last) {
    Words words;
    for (int i = first; i <= last; ++i) words.push_back(prefix + std::to_string(i));
    return words;
}

const Words kSigma{"Sigma1", "Sigma2", "Sigma3", "SigmaExp"};
const Words kIdentity{"DeviceType", "Serial", "Label", "Config", "MaxDepth", "CalTime"};

TEST(CalText, OfCorvanesHasEveryKeyInOrder) {
    const std::array<std::pair<Model, int>, 3> models{
        {{Model::Corvane6, 8}, {Model::Corvane4, 4}, {Model::Corvane2, 3}}};
    for (const auto& [model, channels] : models) {
        const host::Cal cal(MakeInstrument(model)->CalText());
        EXPECT_EQ(cal.Keys("General"), kIdentity + Words({"DepthCal", "DepthOff", "CalTemp"}));
        Words sections{"General"};
        Words keys = Words({"Name"}) + Numbered("Gain", 1, 5) + Words({"Mu"}) + kSigma +
                     Words({"RNominal", "Beta2Bb", "MuRho", "TempCoeff"}) + Numbered("Offset", 1, 5) +
                     Numbered("NomOffset", 1, 5);
        if (model == Model::Corvane6) keys = keys + Numbered("FlOffset", 1, 5);
        for (int n = 1; n <= channels; ++n) {
            sections.push_back("Channel " + std::to_string(n));
            EXPECT_EQ(cal.Keys(sections.back()), keys);
        }
        EXPECT_EQ(cal.Sections(), sections + Words({"End"}));
        EXPECT_EQ(cal.Text("General", "DeviceType"), InfoOf(model).name);
    }
}

TEST(CalText, OfTidalsHasEveryKeyInOrder) {
    for (const Model model : {Model::LTidal, Model::NTidal, Model::XTidal}) {
        const host::Cal cal(MakeInstrument(model)->CalText());
        EXPECT_EQ(cal.Keys("General"), kIdentity + Words({"DepthCal", "DepthOff"}));
        EXPECT_EQ(cal.Keys("Scattering"), Words({"Lambda", "DeltaLambda"}) + Numbered("Gain", 1, 5) +
                                              Numbered("Offset", 1, 5) + Words({"Mu"}) + kSigma +
                                              Words({"ChiBb", "TempCoeff", "CalTemp", "MuRho"}));
        EXPECT_EQ(cal.Keys("Attenuation"),
                  Words({"Lambda", "DeltaLambda", "TrNought", "TrPure", "TrAir", "CalTemp", "Path"}) +
                      Numbered("Chi", 0, 3) + Words({"BetaPure"}) + Numbered("TempCoeff", 0, 5) +
                      Words({"KDepthCoeff0", "KDepthThreshold", "KDepthCoeff1"}));
        EXPECT_EQ(cal.Sections(), Words({"General", "Scattering", "Attenuation", "End"}));
    }
}

TEST(CalText, OfDelphsHasEveryKeyInOrder) {
    for (const Model model : {Model::Fathom2, Model::Delph2, Model::Delph4, Model::Delph6}) {
        const host::Cal cal(MakeInstrument(model)->CalText());
        EXPECT_EQ(cal.Keys("General"), kIdentity);
        EXPECT_EQ(cal.Keys("Depth"), Words({"kp1", "kp2", "P0", "TP0", "kD1", "kD2"}));
        for (const char* section : {"Attenuation 1", "Attenuation 2"})
            EXPECT_EQ(cal.Keys(section), Words({"Name", "Lambda", "DeltaLambda", "L", "S0", "R0"}) +
                                             Numbered("kT", 0, 5) + Words({"P1", "P2", "kTauPX"}) +
                                             Numbered("kTauP", 0, 5) + Words({"Tau0", "TPW"}));
        EXPECT_EQ(cal.Sections(), Words({"General", "Depth", "Attenuation 1", "Attenuation 2", "End"}));
    }
}

TEST(CalText, BeginsAndEndsAsFilesDo) {
    const std::string text = MakeInstrument(Model::Corvane4)->CalText();
    EXPECT_EQ(text.substr(0, 46), "[General]          //Saved by Marisonde 2.85\r\n");
    EXPECT_EQ(text.substr(text.size() - 7), "[End]\r\n");
    EXPECT_NE(text.find("\t//not used by v2.7 and later\r\n"), std::string::npos);
}

TEST(CalText, WritesTheTimeOnTheBaseOfTheFamily) {
    // 45 days before 17 February 2009 17:05:00 is 3 January 2009 17:05:00: 14247 days after 1970 are
    // 1230940800 s, and 17:05:00 are 61500 s. From 1980 it is 315532800 s less.
    Options options;
    options.startDate = std::chrono::sys_days{std::chrono::year{2009} / 2 / 17} + std::chrono::seconds{61500};
    const auto time = [&](Model model) {
        return host::Cal(MakeInstrument(model, options)->CalText()).Text("General", "CalTime");
    };
    EXPECT_EQ(time(Model::Corvane6), "1231002300 (01/3/09 17:05:00)");
    EXPECT_EQ(time(Model::Delph2), "1231002300 (01/3/09 17:05:00)");
    EXPECT_EQ(time(Model::LTidal), "915469500 (01/03/09 17:05:00)");
}

TEST(CalText, SharesReceiversByWavelengthAndGains) {
    const host::Cal cal(MakeInstrument(Model::Corvane6)->CalText());
    const std::array<std::pair<const char*, const char*>, 2> pairs{
        {{"Channel 2", "Channel 8"}, {"Channel 4", "Channel 7"}}};
    for (const auto& [receiver, fluorescence] : pairs) {
        EXPECT_EQ(cal.Text(receiver, "Name").substr(2), cal.Text(fluorescence, "Name").substr(2));
        for (const std::string& key : Numbered("Gain", 1, 5))
            EXPECT_EQ(cal.Text(receiver, key), cal.Text(fluorescence, key));
    }
}

TEST(CalText, TellsOfTheShutterInTheConfiguration) {
    const auto config = [](Model model, std::optional<bool> shutter) {
        return host::Cal(MakeInstrument(model, {.shutter = shutter})->CalText()).Text("General", "Config");
    };
    EXPECT_EQ(config(Model::Corvane6, {}), "6F2T1");
    EXPECT_EQ(config(Model::Corvane6, false), "6F2T0");
    EXPECT_EQ(config(Model::Corvane4, true), "4T1");
    EXPECT_EQ(config(Model::LTidal, true), "257");
}

}  // namespace
}  // namespace marisonde::simulator
