#include "app/Preferences.h"

#include <algorithm>
#include <array>
#include <variant>

#include "common/ConversionUtils.h"
#include "common/Numbers.h"
#include "graphs/LivePlot.h"

namespace marisonde {

namespace {

using PrefField = std::variant<std::string Preferences::*, bool Preferences::*, std::int32_t Preferences::*,
                               double Preferences::*>;

/// How a flag is written: as a number, or as one of the two spellings that stored settings use.
enum class FlagText { Number, Upper, Mixed };

struct PrefRow {
    std::string_view section;
    std::string_view key;
    std::string_view missing;
    PrefField field;
    FlagText flagText = FlagText::Number;
};

const std::array kRows{
    PrefRow{"App", "ConnectOnStartup", "0", &Preferences::ConnectOnStartup},
    PrefRow{"App", "NameFilesOnOpen", "0", &Preferences::NameFilesOnOpen},
    PrefRow{"App", "UserHeader", "", &Preferences::UserHeader},
    PrefRow{"App", "RecallLastCal", "1", &Preferences::RecallLastCal},
    PrefRow{"App", "SavePath", "", &Preferences::SavePath},
    PrefRow{"App", "OpenPath", "", &Preferences::OpenPath},
    PrefRow{"App", "OpenCalPath", "", &Preferences::OpenCalPath},
    PrefRow{"App", "CalFile", "", &Preferences::CalFile},
    PrefRow{"App", "ORCA", "False", &Preferences::ORCA, FlagText::Mixed},
    PrefRow{"App", "MaxGraphPoints", "50000", &Preferences::MaxGraphPoints},
    PrefRow{"App", "OrcaX", "2.7", &Preferences::OrcaX},
    PrefRow{"App", "OrcaCThreshold", ".02", &Preferences::OrcaCThreshold},
    PrefRow{"App", "OrcaInherentC", ".2", &Preferences::OrcaInherentC},
    PrefRow{"App", "OrcaVertical", "False", &Preferences::OrcaVertical, FlagText::Mixed},
    PrefRow{"Connection", "Port", "", &Preferences::Port},
    PrefRow{"Connection", "Baud", "9600", &Preferences::Baud},
    PrefRow{"Connection", "LoadCal", "1", &Preferences::LoadCal},
    PrefRow{"GraphDefaults", "Sigma", "True", &Preferences::Sigma, FlagText::Mixed},
    PrefRow{"GraphDefaults", "VsTime", "FALSE", &Preferences::VsTime, FlagText::Upper},
};

std::string TextOfFlag(bool flag, FlagText style) {
    switch (style) {
        case FlagText::Upper:
            return flag ? "TRUE" : "FALSE";
        case FlagText::Mixed:
            return flag ? "True" : "False";
        case FlagText::Number:
            break;
    }
    return flag ? "1" : "0";
}

struct ReadInto {
    Preferences& prefs;
    const std::string& text;
    void operator()(std::string Preferences::*field) const { prefs.*field = text; }
    void operator()(bool Preferences::*field) const { prefs.*field = FlagFromText(text); }
    void operator()(std::int32_t Preferences::*field) const { prefs.*field = ToInt32(SafeVal(text)); }
    void operator()(double Preferences::*field) const { prefs.*field = SafeVal(text); }
};

struct TextOf {
    const Preferences& prefs;
    FlagText flagText;
    std::string operator()(std::string Preferences::*field) const { return prefs.*field; }
    std::string operator()(bool Preferences::*field) const { return TextOfFlag(prefs.*field, flagText); }
    std::string operator()(std::int32_t Preferences::*field) const {
        return NumberText(static_cast<double>(prefs.*field));
    }
    std::string operator()(double Preferences::*field) const { return NumberText(prefs.*field); }
};

}  // namespace

bool FlagFromText(std::string_view text) {
    return EqualIgnoringCase(Trim(text), "true") || SafeVal(text) != 0;
}

bool LoadPreferences(Settings& settings, std::string_view programFolder, Preferences& prefs) {
    std::string folder(programFolder);
    if (folder.empty() || folder.back() != '/') folder += '/';
    prefs.Path = settings.GetSetting("App", "Path");
    const bool newUser = prefs.Path.empty();
    if (newUser) {
        prefs.Path = folder;
        settings.SaveSetting("App", "Path", folder);
    }
    for (const PrefRow& row : kRows) {
        const std::string text = settings.GetSetting(row.section, row.key, row.missing);
        std::visit(ReadInto{prefs, text}, row.field);
    }
    for (std::string* last : {&prefs.SavePath, &prefs.OpenPath, &prefs.OpenCalPath})
        if (last->empty()) *last = prefs.Path;
    return newUser;
}

void SavePreferences(Settings& settings, const Preferences& prefs) {
    for (const PrefRow& row : kRows) {
        const bool portNeverChosen = row.key == "Port" && prefs.Port == 0;
        if (portNeverChosen) continue;
        settings.SaveSetting(row.section, row.key, std::visit(TextOf{prefs, row.flagText}, row.field));
    }
}

void SavePreference(Settings& settings, const Preferences& prefs, std::string_view key) {
    for (const PrefRow& row : kRows)
        if (row.section == "App" && row.key == key)
            settings.SaveSetting(row.section, row.key, std::visit(TextOf{prefs, row.flagText}, row.field));
}

std::string NewUserNotice() {
    return "The current user profile does not yet have Marisonde preferences.  "
           "This is OK, but note that each user's Marisonde settings are independent.  "
           "This user's settings will be set to their defaults.";
}

std::int32_t ClampGraphPoints(double typed) {
    return std::clamp(ToInt32(typed), kLeastGraphPoints, kMostGraphPoints);
}

}  // namespace marisonde
