#pragma once

#include <span>
#include <string>
#include <string_view>

namespace marisonde::simulator {

/// How the instrument samples, as its user sets it. Yes is 1, no is 0.
struct SampleSettings {
    double period = 0.5;      ///< s
    double startDelay = 0;    ///< s
    double sleepOnFull = 0;   ///< sleep when the memory is full
    double startOnPower = 0;  ///< sample as soon as power comes on
    double burst = 0;         ///< sample in bursts of burstLength, one in burstCycle
    double warmup = 2;        ///< s
    double burstLength = 10;  ///< s
    double burstCycle = 60;   ///< s
    double total = 0;         ///< s; 0 without end
    double shutterEnabled = 1;
    double shutterAuto = 1;    ///< opens and closes by itself
    double shutterTime = 2.5;  ///< s that it takes to close
    double clockwise = 1;      ///< direction of the shutter, else counterclockwise
    double hexadecimal = 1;    ///< data format, else decimal
};

/// One value: what it is called in replies and what is allowed.
struct SettingRow {
    enum class Kind { Number, OnOff, Direction, Format };
    std::string_view label;
    double SampleSettings::*value;
    double lowest, highest;
    Kind kind = Kind::Number;
};

/// "Burst mode: on".
std::string SettingLine(const SettingRow& row, const SampleSettings& settings);
/// Sets the values of `rows` from comma-separated texts in their order; empty and missing ones stay. False,
/// and nothing changed, when one cannot be read or is not allowed, when there are too many, or when a burst
/// would be longer than its cycle.
bool ApplySettings(std::span<const SettingRow> rows, std::string_view arguments, SampleSettings& settings);

}  // namespace marisonde::simulator
