#include "files/DatColumns.h"

#include <algorithm>
#include <array>

namespace marisonde {

namespace {

using enum DatField;

template <int Channels>
constexpr std::array kCorvaneColumns{DatRun{bb, Channels, 0, "", ""},
                                     DatRun{bbUncorr, Channels, 0, "", "uncorr"}};
template <int Channels>
constexpr std::array kCorvaneBetas{DatRun{beta, Channels, 0, "beta", ""},
                                   DatRun{betaUncorr, Channels, 0, "beta", "uncorr"}};

constexpr std::array kLTidalColumns{DatRun{bb, 1, 0, "", ""}, DatRun{bbUncorr, 1, 0, "", "u"},
                                    DatRun{K, 1, 2, "", ""}, DatRun{a, 1, 1, "", ""}};
constexpr std::array kNTidalColumns{DatRun{bb, 1, 0, "", ""}, DatRun{bbUncorr, 1, 0, "", "u"},
                                    DatRun{k, 1, 1, "", ""}};
// The comma at the end of these headings is part of the format; readers count columns in the data.
constexpr std::array kTidalBetas{DatRun{beta, 1, 0, "beta", ""}, DatRun{betaUncorr, 1, 0, "beta", "u,"}};

template <int Channels>
constexpr std::array kDelphColumns{DatRun{k, Channels, 0, "", ""}, DatRun{Temp, 1, kNoName, "", "IntT"}};

constexpr std::array kLayouts{
    DatLayout{InstTypeCode::Corvane6, 8, kCorvaneColumns<8>, kCorvaneBetas<8>, false, true},
    DatLayout{InstTypeCode::Corvane4, 4, kCorvaneColumns<4>, kCorvaneBetas<4>, false, true},
    DatLayout{InstTypeCode::Corvane2, 3, kCorvaneColumns<3>, kCorvaneBetas<3>, false, true},
    DatLayout{InstTypeCode::LTidal, 3, kLTidalColumns, kTidalBetas, false, false},
    DatLayout{InstTypeCode::NTidal, 3, kNTidalColumns, kTidalBetas, true, false},
    DatLayout{InstTypeCode::XTidal, 0, {}, {}, false, true},
    DatLayout{InstTypeCode::Fathom2, 2, kDelphColumns<2>, {}, false, false},
    DatLayout{InstTypeCode::Delph2, 2, kDelphColumns<2>, {}, false, false},
    DatLayout{InstTypeCode::Delph4, 4, kDelphColumns<4>, {}, false, false},
    DatLayout{InstTypeCode::Delph6, 6, kDelphColumns<6>, {}, false, false},
    DatLayout{InstTypeCode::Unknown, 0, {}, {}, false, true},
};

constexpr bool RowsStandAtTheirCodes() {
    for (std::size_t i = 0; i < kLayouts.size(); ++i)
        if (kLayouts[i].type != static_cast<InstTypeCode>(i)) return false;
    return kLayouts.size() == kInstTypeCount;
}
static_assert(RowsStandAtTheirCodes());

constexpr bool NoneHasMoreThanSaid() {
    return std::all_of(kLayouts.begin(), kLayouts.end(), [](const DatLayout& layout) {
        std::size_t columns = kTimeAndDepth;
        std::size_t longest = 0;
        for (const auto& runs : {layout.columns, layout.betaColumns}) {
            for (const DatRun& run : runs) {
                const auto count = static_cast<std::size_t>(run.count);
                columns += count;
                longest = std::max(longest, count);
            }
        }
        return layout.columns.size() + layout.betaColumns.size() <= kMostDatRuns &&
               longest <= kMostInDatRun && columns <= kMaxDatColumns;
    });
}
static_assert(NoneHasMoreThanSaid());

}  // namespace

const DatLayout& DatLayoutOf(InstTypeCode type) {
    const auto row = static_cast<std::size_t>(type);
    return row < kLayouts.size() ? kLayouts[row] : kLayouts.back();
}

bool DatTellsTemperature(InstTypeCode type) {
    const auto columns = DatLayoutOf(type).columns;
    return std::any_of(columns.begin(), columns.end(), [](const DatRun& run) { return run.field == Temp; });
}

}  // namespace marisonde
