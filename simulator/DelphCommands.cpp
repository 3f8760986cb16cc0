#include <array>

#include "simulator/Delph.h"

namespace marisonde::simulator {

namespace {

using Kind = SettingRow::Kind;
constexpr double kLongest = 65535;  // s

// In the order of the values of LOG.
constexpr std::array kLog{
    SettingRow{"Period", &SampleSettings::period, 0.1, kLongest},
    SettingRow{"Start delay", &SampleSettings::startDelay, 0, kLongest},
    SettingRow{"Start on power", &SampleSettings::startOnPower, 0, 1},
    SettingRow{"Burst mode", &SampleSettings::burst, 0, 1, Kind::OnOff},
    SettingRow{"Warmup time", &SampleSettings::warmup, 0, kLongest},
    SettingRow{"Burst length", &SampleSettings::burstLength, 1, kLongest},
    SettingRow{"Burst cycle", &SampleSettings::burstCycle, 1, kLongest},
};

}  // namespace

std::span<const Instrument::Command> Delph::FamilyCommands() const {
    static const std::array commands{
        Row("SENDCAL", &Delph::SendCal),
        Row("MAKEINI", &Delph::MakeIni),
        Row("LOG", &Delph::Log),
        Row("STORELOG", &Delph::StoreLog),
    };
    return commands;
}

void Delph::Log(std::string_view argument) {
    SetOrReply(kLog, argument);
}

void Delph::StoreLog(std::string_view /*argument*/) {
    StoreLater("parameters", [this] { StoreSettings(); });
}

}  // namespace marisonde::simulator
