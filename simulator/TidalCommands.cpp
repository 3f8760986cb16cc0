#include <array>

#include "simulator/FieldText.h"
#include "simulator/Tidal.h"

namespace marisonde::simulator {

namespace {

using Kind = SettingRow::Kind;
constexpr double kLongest = 65535;  // s

constexpr SettingRow kFormat{"Data format", &SampleSettings::hexadecimal, 0, 1, Kind::Format};
constexpr SettingRow kPeriod{"Period", &SampleSettings::period, 0.1, kLongest};
constexpr SettingRow kStartDelay{"Start delay", &SampleSettings::startDelay, 0, kLongest};
constexpr std::array kBurst{
    SettingRow{"Burst mode", &SampleSettings::burst, 0, 1, Kind::OnOff},
    SettingRow{"Burst length", &SampleSettings::burstLength, 1, kLongest},
    SettingRow{"Burst cycle", &SampleSettings::burstCycle, 1, kLongest},
};

std::span<const SettingRow> One(const SettingRow& row) {
    return {&row, 1};
}

}  // namespace

std::span<const Instrument::Command> Tidal::FamilyCommands() const {
    static const std::array commands{
        Row("DUMPCFG", &Tidal::DumpCal),       Row("DATAFORMAT", &Tidal::DataFormat),
        Row("PERIOD", &Tidal::Period),         Row("STARTDELAY", &Tidal::StartDelay),
        Row("BURST", &Tidal::Burst),           Row("BURSTLENGTH", &Tidal::BurstLength),
        Row("BURSTCYCLE", &Tidal::BurstCycle), Row("POWER", &Tidal::Power),
        Row("LOADCFG", &Tidal::LoadCal),       Row("GAIN", &Tidal::Gain),
    };
    return commands;
}

void Tidal::DumpCal(std::string_view /*argument*/) {
    // An image has no mark for the x-Tidal.
    if (Settings().dumpAsText || Info().model == Model::XTidal) return ReplyText(CalText());
    SendBlock(image_.empty() ? TidalCalImage(cal_, CalInfo(), Config(), CalibratedAt()) : image_);
}

void Tidal::DataFormat(std::string_view argument) {
    SetOrReply(One(kFormat), argument);
}
void Tidal::Period(std::string_view argument) {
    SetOrReply(One(kPeriod), argument);
}
void Tidal::StartDelay(std::string_view argument) {
    SetOrReply(One(kStartDelay), argument);
}
void Tidal::Burst(std::string_view argument) {
    SetOrReply(kBurst, argument);
}
void Tidal::BurstLength(std::string_view argument) {
    SetOrReply(One(kBurst[1]), argument);
}
void Tidal::BurstCycle(std::string_view argument) {
    SetOrReply(One(kBurst[2]), argument);
}

void Tidal::Power(std::string_view /*argument*/) {}

void Tidal::LoadCal(std::string_view /*argument*/) {
    ReceiveBlock([this](const std::string& image) { return StoreImage(image); });
}

bool Tidal::StoreImage(const std::string& image) {
    if (!ReadTidalImage(image, Info().model, told_)) return false;
    image_ = image;
    return true;
}

void Tidal::Gain(std::string_view argument) {
    constexpr double kSteps = 5;
    const double step = NumberFrom(argument).value_or(-1);
    if (step < 0 || step > kSteps || step != static_cast<int>(step)) return ReplyRefused();
    if (step == 0)
        gain_.Release();
    else
        gain_.Hold(static_cast<int>(step));
    Reply(step == 0 ? "Gain: automatic" : "Gain: " + std::to_string(static_cast<int>(step)));
}

void Tidal::HearEmptyLine() {
    if (gain_.Held() && !Sampling()) ReplyRaw();
}

}  // namespace marisonde::simulator
