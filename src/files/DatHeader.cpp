#include "calibration/CalibrationDataClass.h"
#include "common/Numbers.h"
#include "files/DatColumns.h"
#include "files/DatFile.h"

namespace marisonde {

namespace {

template <class T>
void AppendNumberKey(std::string& out, std::string_view key, T value) {
    out += key;
    AppendNumber(out, value);
    out += kLineEnd;
}

/// A parameter is a fixed value or, when that is the sentinel, a table in a file.
void AppendValueOrFile(std::string& out, std::string_view name, double value, std::string_view file) {
    out += name;
    if (value != kSentinel)
        AppendNumberKey(out, "Value=", value);
    else
        AppendKey(out, "File=", file);
}

void AppendSigmaModel(std::string& out, const SigmaParams& sigma) {
    AppendKey(out, "[SigmaParams]", "");
    AppendNumberKey(out, "ad400=", sigma.ad400);
    AppendValueOrFile(out, "aStar", sigma.aStarValue, sigma.aStarFile);
    // The absorption of water is built in; the key names its place for programs that read older files.
    AppendKey(out, "awFile=", "Marisonde.exe");
    AppendValueOrFile(out, "bbTilde", sigma.bbTildeValue, sigma.bbTildeFile);
    AppendNumberKey(out, "C=", sigma.C);
    AppendNumberKey(out, "gammad=", sigma.gammad);
    AppendNumberKey(out, "gammay=", sigma.gammay);
}

void AppendSigmaSection(std::string& out, InstTypeCode type, const SigmaParams& sigma) {
    if (IsCorvaneFamily(type) || (type == InstTypeCode::NTidal && sigma.cUseCV)) {
        AppendSigmaModel(out, sigma);
    } else if (type == InstTypeCode::NTidal) {
        AppendKey(out, "[SigmaParams]", "");
        AppendNumberKey(out, "p=", sigma.p);
    }
}

void AppendPureWaterModel(std::string& out, PureWaterChoice choice) {
    out += "PureWaterModel=";
    switch (choice) {
        case PureWaterChoice::MorelFresh:
            return AppendKey(out, "MorelFresh", "");
        case PureWaterChoice::MorelSalt:
            return AppendKey(out, "MorelSalt", "");
        case PureWaterChoice::VenmarkRecommended:
            return AppendKey(out, "VenmarkRecommended", "");
        case PureWaterChoice::Custom:
            return AppendKey(out, "Custom", "");
        case PureWaterChoice::NoPure:
            return;  // not even a line end: readers of these files expect the next key on this line
    }
}

void AppendBbSection(std::string& out, const PureWaterParams& water) {
    AppendKey(out, "[bbParams]", "");
    AppendPureWaterModel(out, water.Choice);
    AppendNumberKey(out, "bb0=", water.bb0);
    AppendNumberKey(out, "beta0=", water.beta0);
    AppendNumberKey(out, "lambda0=", water.lambda0);
    AppendNumberKey(out, "gammaLambda=", water.gammaLambda);
    if (water.UseCalChi)
        AppendKey(out, "chi=", "FromCalFile");
    else
        AppendNumberKey(out, "chi=", water.chi);
}

void AppendChannels(std::string& out, const CalibrationDataClass& cal, const DatLayout& layout) {
    AppendKey(out, "[Channels]", "");
    for (int ch = 0; ch < layout.channelNames; ++ch) AppendKey(out, "\"", cal.Channel(ch).name + "\"");
}

void AppendHeadingsOf(std::string& out, const CalibrationDataClass& cal, std::span<const DatRun> runs) {
    for (const DatRun& run : runs) {
        for (int i = 0; i < run.count; ++i) {
            out.append(",").append(run.prefix);
            if (run.firstName != kNoName) out += cal.Channel(run.firstName + i).name;
            out += run.suffix;
        }
    }
}

void AppendColumnHeadings(std::string& out, const CalibrationDataClass& cal, const DatLayout& layout,
                          bool writeBetaColumns) {
    AppendKey(out, "[ColumnHeadings]", "");
    out += "Time,Depth";
    AppendHeadingsOf(out, cal, layout.columns);
    if (writeBetaColumns) {
        if (layout.headingBreaksBeforeBeta) out += kLineEnd;
        AppendHeadingsOf(out, cal, layout.betaColumns);
    }
    out += kLineEnd;
}

}  // namespace

void WriteDatHeader(std::string& out, const HeaderStamp& stamp, std::string_view dataSource,
                    const CalibrationDataClass& cal, const SigmaParams& sigma, const PureWaterParams& water) {
    const DatLayout& layout = DatLayoutOf(cal.InstType);
    AppendCommonHeader(out, stamp,
                       {"dat", cal.InstType, dataSource, cal.SourceFile(), cal.Serial, cal.Config});
    AppendSigmaSection(out, cal.InstType, sigma);
    AppendKey(out, "ExponentialFit=", cal.Channel(0).UseSigmaExp ? "True" : "False");
    if (cal.bChannels() > 0) AppendBbSection(out, water);
    AppendChannels(out, cal, layout);
    AppendColumnHeadings(out, cal, layout, water.WriteBetaColumns);
    AppendKey(out, "", "");
    AppendKey(out, "[Data]", "");
}

}  // namespace marisonde
