#include <array>

#include "common/Numbers.h"
#include "files/DatColumns.h"
#include "files/DatFile.h"

namespace marisonde {

namespace {

constexpr std::size_t kMaxLine = kMaxDatColumns * (kMaxNumberText + 1) + 2;

template <class T>
char* WriteValues(char* end, const T* values, int count) {
    for (int i = 0; i < count; ++i) {
        end = WriteNumber(end, static_cast<float>(values[i]));
        *end++ = ',';
    }
    return end;
}

char* WriteRun(char* end, const CalibratedSample& sample, const DatRun& run) {
    switch (run.field) {
        case DatField::bb:
            return WriteValues(end, sample.bb.data(), run.count);
        case DatField::bbUncorr:
            return WriteValues(end, sample.bbUncorr.data(), run.count);
        case DatField::beta:
            return WriteValues(end, sample.beta.data(), run.count);
        case DatField::betaUncorr:
            return WriteValues(end, sample.betaUncorr.data(), run.count);
        case DatField::k:
            return WriteValues(end, sample.k.data(), run.count);
        case DatField::K:
            return WriteValues(end, &sample.K, 1);
        case DatField::a:
            return WriteValues(end, &sample.a, 1);
        case DatField::Temp:
            return WriteValues(end, &sample.Temp, 1);
    }
    return end;
}

}  // namespace

void WriteDatLine(std::string& out, const CalibratedSample& sample, InstTypeCode type,
                  bool writeBetaColumns) {
    const DatLayout& layout = DatLayoutOf(type);
    std::array<char, kMaxLine> line;
    char* end = WriteNumber(line.data(), sample.Time != 0 ? sample.Time : sample.Elapsed);
    *end++ = ',';
    end = WriteValues(end, &sample.Depth, 1);
    for (const DatRun& run : layout.columns) end = WriteRun(end, sample, run);
    if (writeBetaColumns)
        for (const DatRun& run : layout.betaColumns) end = WriteRun(end, sample, run);
    if (!layout.lineEndsInComma) --end;
    *end++ = '\r';
    *end++ = '\n';
    out.append(line.data(), end);
}

}  // namespace marisonde
