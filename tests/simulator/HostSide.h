#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/Instrument.h"

/// The host's half of the arithmetic, written for the tests from the published formulas and reading only the
/// calibration text, so that an instrument's lines can be checked against the water they were made from.
namespace marisonde::simulator::host {

using Fields = std::map<std::string, std::string>;

/// Sections of a calibration text by name; keys before the tab or "//" of their line.
class Cal {
  public:
    explicit Cal(const std::string& text);
    [[nodiscard]] bool Has(const std::string& section, const std::string& key) const;
    [[nodiscard]] std::string Text(const std::string& section, const std::string& key) const;
    [[nodiscard]] double Value(const std::string& section, const std::string& key) const;
    /// Keys of a section in the order of the file.
    [[nodiscard]] std::vector<std::string> Keys(const std::string& section) const;
    [[nodiscard]] const std::vector<std::string>& Sections() const { return sections_; }

  private:
    std::map<std::string, Fields> fields_;
    std::map<std::string, std::vector<std::string>> keys_;
    std::vector<std::string> sections_;
};

/// What the host shows for one line.
struct Shown {
    double depthM = 0;
    double tempC = 0;
    std::vector<double> bb;
    std::vector<double> k;
    double a = 0;
    std::vector<int> gains;
};

/// "*D", "*T", "*V" or the plain decimal record, of `channels` channels.
Shown ConvertCorvane(const std::string& line, const Cal& cal, int channels);
/// "*A", "*C" or the plain decimal records; `model` decides about K and a.
Shown ConvertTidal(const std::string& line, const Cal& cal, Model model);
/// The records of 15 and 8 commas.
Shown ConvertDelph(const std::string& line, const Cal& cal);

/// All that comes until `until`, asked for every 50 ms, cut at CR LF; the last piece without an end is left
/// out.
std::vector<std::string> LinesOf(Instrument& instrument, Millis until);
/// Value of `width` hexadecimal digits from `position`, counted from 1.
long HexAt(std::string_view line, std::size_t position, std::size_t width);
std::vector<double> Numbers(const std::string& line);
long Commas(std::string_view line);
/// Whether the last two digits are the sum of all before them, with or without the first character.
bool ChecksumFits(std::string_view line, bool withStar);

}  // namespace marisonde::simulator::host
