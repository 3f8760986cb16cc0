// Decodes the lines of standard input into one sample, as a stream does, and prints for each line: its kind,
// whether it made a sample, the model it tells, then every field of the sample, or of the housekeeping block
// for such a line. Usage: decode_dump MODEL-CODE < lines

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>

#include "decode/Decoders.h"

namespace {

using namespace marisonde;

void Print(double value) {
    std::printf(" %a", value);
}

template <typename Values>
void PrintAll(const Values& values) {
    for (const auto value : values) Print(static_cast<double>(value));
}

void PrintSample(const RawSample& sample) {
    for (const double value :
         {static_cast<double>(sample.Format), sample.Time, static_cast<double>(sample.Hundredths),
          sample.DayFraction, static_cast<double>(sample.ElapsedCount), static_cast<double>(sample.Error),
          static_cast<double>(sample.Pressure), static_cast<double>(sample.Temp),
          static_cast<double>(sample.Voltage), static_cast<double>(sample.VSubB),
          static_cast<double>(sample.VBack), static_cast<double>(sample.Trans),
          static_cast<double>(sample.TBgnd), static_cast<double>(sample.LEDDrive),
          static_cast<double>(sample.Temp2), static_cast<double>(sample.Temp3), sample.ElapsedHundredths})
        Print(value);
    PrintAll(sample.Gain);
    PrintAll(sample.Sig);
    PrintAll(sample.SigOff);
    PrintAll(sample.Ref);
    PrintAll(sample.RefOff);
    PrintAll(sample.Snorm);
    PrintAll(sample.SnormF);
    PrintAll(sample.Bgnd);
}

void PrintBlock(const HousekeepingBlock& block) {
    for (const float value : {block.VoltageA, block.VoltageB, block.Status3, block.Status4})
        Print(static_cast<double>(value));
    Print(block.Time);
    for (const auto& words : block.Words) PrintAll(words);
}

}  // namespace

int main(int argc, char** argv) {
    const auto model = static_cast<InstTypeCode>(argc > 1 ? std::atoi(argv[1]) : 10);
    RawSample sample;
    HousekeepingBlock block;
    std::string line;
    while (std::getline(std::cin, line)) {
        const LineKind kind = ClassifyLine(line);
        const bool decoded = ParseRawLine(line, model, sample);
        std::printf("%d %d %d", static_cast<int>(kind), decoded ? 1 : 0,
                    static_cast<int>(InstTypeFromLine(line)));
        if (DecodeHousekeeping(line, block))
            PrintBlock(block);
        else
            PrintSample(sample);
        std::printf("\n");
    }
}
