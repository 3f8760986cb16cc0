#include "simulator/CalWriter.h"

#include <chrono>

#include "simulator/Dates.h"
#include "simulator/FieldText.h"
#include "simulator/Models.h"

namespace marisonde::simulator {

namespace {

std::string TwoDigits(std::int64_t value) {
    return (value < 10 ? "0" : "") + std::to_string(value);
}

}  // namespace

void CalWriter::Line(std::string_view line) {
    text_ += line;
    text_ += "\r\n";
}

void CalWriter::Text(std::string_view key, std::string_view value) {
    Line(std::string(key) + "=" + std::string(value));
}

void CalWriter::Integer(std::string_view key, std::int64_t value) {
    Text(key, std::to_string(value));
}
void CalWriter::Six(std::string_view key, double value) {
    Text(key, SixDigits(value));
}
void CalWriter::Single(std::string_view key, double value) {
    Text(key, AllDigits(static_cast<float>(value)));
}
void CalWriter::Double(std::string_view key, double value) {
    Text(key, AllDigits(value));
}

void CalWriter::General(std::string_view model, std::string_view serial, std::string_view config,
                        double maxDepthM) {
    Line("[General]          //Saved by Marisonde 2.85");
    Text("DeviceType", model);
    Text("Serial", serial);
    Text("Label", kLabel);
    Text("Config", config);
    Six("MaxDepth", maxDepthM);
}

void CalWriter::CalTime(std::int64_t secondsUnix, bool base1980) {
    using namespace std::chrono;
    const sys_seconds time{seconds{secondsUnix}};
    const auto day = floor<days>(time);
    const year_month_day date{day};
    const hh_mm_ss clock{time - day};
    const auto dayOfMonth = static_cast<unsigned>(date.day());
    const std::string dayText = base1980 ? TwoDigits(dayOfMonth) : std::to_string(dayOfMonth);
    const std::string written = TwoDigits(static_cast<unsigned>(date.month())) + "/" + dayText + "/" +
                                TwoDigits(static_cast<int>(date.year()) % 100) + " " +
                                TwoDigits(clock.hours().count()) + ":" + TwoDigits(clock.minutes().count()) +
                                ":" + TwoDigits(clock.seconds().count());
    const auto count = base1980 ? secondsUnix - kFrom1970To1980 : secondsUnix;
    Text("CalTime", std::to_string(count) + " (" + written + ")");
}

void CalWriter::Sigma(const SigmaLaw& law, double old) {
    Text("Sigma1", SixDigits(old) + "\t//not used by v2.7 and later");
    Six("Sigma2", law.linear);
    Six("Sigma3", law.square);
    Six("SigmaExp", law.exponent);
}

}  // namespace marisonde::simulator
