#include "files/DatLineReader.h"

#include <algorithm>
#include <bit>
#include <cstdint>

#include "calibration/Sentinel.h"
#include "common/Numbers.h"
#include "common/ShortNumbers.h"

namespace marisonde {

namespace {

static_assert(kMaxDatColumns <= FieldEnds::kMostPlaces);

void Store(double value, float& to) {
    to = Single(value);
}

void Store(double value, double& to) {
    const float single = Single(value);
    to = single == kSentinelF ? kSentinel : static_cast<double>(single);
}

/// The values of a line. Those beyond its end are 0.
class Values {
  public:
    Values(std::string_view line, const FieldEnds& ends) : line_(line), ends_(ends), count_(ends.Count()) {
        // The comma behind the last value begins no further one.
        if (!line.empty() && line.back() != ',') ++count_;
    }

    [[nodiscard]] std::size_t Count() const { return count_; }

    [[nodiscard]] double Date(std::size_t i) const {
        double value = 0;
        return HasRoom(i, 1) && ReadLong(First(i), Last(i), value) ? value : Any(i);
    }
    [[nodiscard]] double Number(std::size_t i) const {
        double value = 0;
        return HasRoom(i, 1) && ReadPlain(First(i), Last(i), value) ? value : Any(i);
    }
    /// `count` (at most kMostInDatRun) neighbours, rounded as 32-bit values hold them.
    template <class T>
    void Singles(std::size_t from, std::size_t count, T* to) const {
        if (!HasRoom(from, count)) {
            for (std::size_t i = 0; i < count; ++i) Store(Any(from + i), to[i]);
            return;
        }
        std::array<Quotient, kMostInDatRun> numbers;
        const std::uint32_t others = ReadMost(from, count, numbers);
        for (std::size_t i = 0; i < count; ++i)
            to[i] = static_cast<T>(static_cast<float>(numbers[i].mantissa / numbers[i].power));
        for (std::uint32_t left = others; left != 0; left &= left - 1) {
            const auto i = static_cast<std::size_t>(std::countr_zero(left));
            Store(Any(from + i), to[i]);
        }
    }

  private:
    /// Reads the values of the usual shape, and returns a bit for each of the others. They are divided and
    /// rounded side by side afterwards.
    std::uint32_t ReadMost(std::size_t from, std::size_t count,
                           std::array<Quotient, kMostInDatRun>& numbers) const {
        std::uint32_t others = 0;
        const char* first = First(from);
        for (std::size_t i = 0; i < count; ++i) {
            const char* const last = line_.data() + ends_.At(from + i);
            if (!ReadScientific(first, last, numbers[i])) {
                numbers[i] = {0, 1};
                if (!ReadPlain(first, last, numbers[i].mantissa)) others |= std::uint32_t{1} << i;
            }
            first = last + 1;
        }
        return others;
    }
    /// Whether these values end in commas and have as much around them as the readers of short numbers want.
    [[nodiscard]] bool HasRoom(std::size_t from, std::size_t count) const {
        const std::size_t behind = from + count;
        return behind <= ends_.Count() && ends_.At(behind - 1) + kReadBehind <= ends_.Readable() &&
               (from < 2 || ends_.At(from - 1) + 1 >= kReadBefore);
    }
    [[nodiscard]] const char* First(std::size_t i) const {
        return line_.data() + (i == 0 ? 0 : ends_.At(i - 1) + 1);
    }
    [[nodiscard]] const char* Last(std::size_t i) const {
        return line_.data() + (i < ends_.Count() ? ends_.At(i) : line_.size());
    }
    [[nodiscard]] double Any(std::size_t i) const {
        return i < count_ ? ReadNumber(First(i), Last(i)).value : 0;
    }

    std::string_view line_;
    const FieldEnds& ends_;
    std::size_t count_;
};

/// Calls `use` with the place of a quantity's first channel.
template <class Use>
void WithField(DatField field, CalibratedSample& sample, Use use) {
    switch (field) {
        case DatField::bb:
            return use(sample.bb.data());
        case DatField::bbUncorr:
            return use(sample.bbUncorr.data());
        case DatField::beta:
            return use(sample.beta.data());
        case DatField::betaUncorr:
            return use(sample.betaUncorr.data());
        case DatField::k:
            return use(sample.k.data());
        case DatField::K:
            return use(&sample.K);
        case DatField::a:
            return use(&sample.a);
        case DatField::Temp:
            return use(&sample.Temp);
    }
}

bool IsIn(DatField field, DatScattering scattering) {
    if (scattering == DatScattering::Corrected) return field == DatField::bb;
    if (scattering == DatScattering::Uncorrected) return field == DatField::bbUncorr;
    return true;
}

/// The l-Tidal's K stands for its attenuation too.
void RestoreTidal(InstTypeCode type, CalibratedSample& sample) {
    if (type == InstTypeCode::LTidal) sample.k[0] = sample.K;
    sample.Valid[0] = sample.k[0] != 0;
}

}  // namespace

DatLineReader::DatLineReader(InstTypeCode type, DatScattering scattering)
    : type_(type), isCorvane_(IsCorvaneFamily(type)), isTidal_(IsTidalFamily(type)) {
    const DatLayout& layout = DatLayoutOf(type);
    const DatScattering read = isCorvane_ ? scattering : DatScattering::All;
    AddParts(layout.columns, read);
    withoutBeta_ = end_;
    AddParts(layout.betaColumns, read);
}

void DatLineReader::AddParts(std::span<const DatRun> runs, DatScattering scattering) {
    for (const DatRun& run : runs) {
        const Part part{run.field, end_, static_cast<std::size_t>(run.count), IsIn(run.field, scattering)};
        parts_[partCount_++] = part;
        end_ += part.count;
        if (part.isRead) lastRead_ = end_;
    }
}

bool DatLineReader::HasBeta(int values) const {
    return end_ > withoutBeta_ && values >= static_cast<int>(end_);
}
int DatLineReader::Read(std::string_view line, const FieldEnds& ends, CalibratedSample& sample,
                        int fewest) const {
    const Values values(line, ends);
    const auto count = static_cast<int>(values.Count());
    if (count < std::max(fewest, static_cast<int>(kTimeAndDepth))) return count;
    sample.Time = values.Date(0);
    Store(values.Number(1), sample.Depth);
    const std::size_t end = HasBeta(count) ? end_ : withoutBeta_;
    for (const Part& part : Parts()) {
        if (!part.isRead) continue;
        WithField(part.field, sample, [&](auto* to) {
            if (part.from < end)
                values.Singles(part.from, part.count, to);
            else
                std::fill_n(to, part.count, 0);
        });
    }
    if (isTidal_) RestoreTidal(type_, sample);
    if (isCorvane_) RestoreChannels(line, ends.Readable(), sample);
    return count;
}

int DatLineReader::Read(std::string_view line, CalibratedSample& sample, int fewest) const {
    FieldEnds ends;
    ends.Mark(line, line.size());
    return Read(line, ends, sample, fewest);
}

void DatLineReader::RestoreChannels(std::string_view line, std::size_t readable,
                                    CalibratedSample& sample) const {
    const Part& corrected = parts_[0];
    const Part& uncorrected = parts_[1];
    bool all = true;
    for (std::size_t i = 0; i < corrected.count; ++i) {
        sample.Valid[i] =
            (corrected.isRead && sample.bb[i] != 0) || (uncorrected.isRead && sample.bbUncorr[i] != 0);
        all = all && sample.Valid[i];
    }
    if (all || corrected.isRead == uncorrected.isRead) return;
    FieldEnds ends;
    ends.Mark(line, readable);
    const Values values(line, ends);
    const Part& other = corrected.isRead ? uncorrected : corrected;
    for (std::size_t i = 0; i < other.count; ++i)
        sample.Valid[i] = sample.Valid[i] || Single(values.Number(other.from + i)) != 0;
}

}  // namespace marisonde
