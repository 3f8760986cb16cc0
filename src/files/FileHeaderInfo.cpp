#include "files/FileHeaderInfo.h"

#include <array>

#include "calibration/CalLine.h"
#include "common/ConversionUtils.h"
#include "decode/LineKind.h"
#include "files/LineReader.h"

namespace marisonde {

namespace {

struct InfoKey {
    std::string_view key;
    std::string FileHeaderInfo::*text;
};
constexpr std::array kInfoKeys{
    InfoKey{"Serial", &FileHeaderInfo::Serial},         InfoKey{"FileType", &FileHeaderInfo::FileType},
    InfoKey{"Config", &FileHeaderInfo::Config},         InfoKey{"ID", &FileHeaderInfo::ID},
    InfoKey{"DeviceType", &FileHeaderInfo::DeviceType},
};
/// Paths and dates, which may hold what ends the value of any other key.
constexpr std::array kPathKeys{
    InfoKey{"DataSource=", &FileHeaderInfo::DataSource},
    InfoKey{"CalSource=", &FileHeaderInfo::CalSource},
    InfoKey{"CreationDate=", &FileHeaderInfo::CreationDate},
};

/// Whether a line of this kind has a time field before its record, as the files of the factory procedures do.
bool IsTimed(LineKind kind) {
    return kind == LineKind::TidalTimed || kind == LineKind::CorvaneVerboseTimed;
}

/// Gathers what the lines of a head tell, one after the other.
class HeadScan {
  public:
    FileHeaderInfo info;

    void Take(std::string_view line) {
        ++lines_;
        if (TakePath(line)) return;
        const CalLine split = SplitCalLine(line, section_);
        for (const auto& [key, text] : kInfoKeys) {
            if (split.key != key) continue;
            info.*text = split.value;
            if (key == "DeviceType") TakeModel(split.value);
            return;
        }
        if (NeedsDataLine()) TakeDataLine(line);
    }
    /// A file that only has Tidal lines with a leading time names no model in them.
    void Finish() {
        if (info.InstType != InstTypeCode::Unknown || !tidalTimedSeen_) return;
        info.InstType = InstTypeCode::XTidal;
        info.FileType = "raw";
    }
    [[nodiscard]] bool Full() const { return lines_ >= kHeadLines; }
    [[nodiscard]] bool TypeKnown() const {
        return !info.FileType.empty() && info.InstType != InstTypeCode::Unknown;
    }
    [[nodiscard]] bool AllKnown() const { return TypeKnown() && !info.Serial.empty(); }
    [[nodiscard]] bool InData() const { return EqualIgnoringCase(section_, "Data"); }

  private:
    bool TakePath(std::string_view line) {
        for (const auto& [key, text] : kPathKeys) {
            if (!line.starts_with(key)) continue;
            info.*text = Trim(line.substr(key.size()));
            return true;
        }
        return false;
    }
    void TakeModel(std::string_view name) {
        const InstTypeCode named = InstTypeFromName(name);
        if (named != InstTypeCode::NoSuchName) info.InstType = named;
    }
    /// The numbers of a calibrated file are no lines of an instrument, whatever they look like.
    [[nodiscard]] bool NeedsDataLine() const { return !TypeKnown() && info.FileType != "dat"; }
    void TakeDataLine(std::string_view line) {
        const LineKind kind = ClassifyLine(line);
        if (kind == LineKind::Other) return;
        if (info.FileType.empty()) info.FileType = IsTimed(kind) ? "rmu" : "raw";
        if (info.InstType == InstTypeCode::Unknown) info.InstType = InstTypeFromLine(line);
        if (kind == LineKind::TidalTimed) tidalTimedSeen_ = true;
    }

    std::string section_;
    int lines_ = 0;
    bool tidalTimedSeen_ = false;
};

}  // namespace

FileError ReadFileHeader(const std::filesystem::path& path, FileHeaderInfo& info) {
    LineReader lines;
    info = {};
    if (FileError error = lines.Open(path)) return error;
    std::string_view head = lines.Ahead();
    HeadScan scan;
    while (!head.empty() && !scan.Full() && !(scan.InData() && scan.TypeKnown()))
        scan.Take(TakeCalLine(head));
    scan.Finish();
    info = std::move(scan.info);
    return {};
}

InstTypeCode GetDataFileType(const std::filesystem::path& path, std::string& fileType, std::string& serial) {
    LineReader lines;
    // Only what Open reads is looked at: a file of one endless line must not be read to its end for this.
    const bool readable = !lines.Open(path);
    return GetDataFileTypeOfText(readable ? lines.Ahead() : std::string_view(), fileType, serial);
}

InstTypeCode GetDataFileTypeOfText(std::string_view head, std::string& fileType, std::string& serial) {
    HeadScan scan;
    while (!head.empty() && !scan.Full() && !scan.AllKnown()) scan.Take(TakeCalLine(head));
    scan.Finish();
    fileType = std::move(scan.info.FileType);
    serial = std::move(scan.info.Serial);
    return scan.info.InstType;
}

std::size_t HeaderLength(std::string_view head) {
    std::string_view rest = head;
    bool inUserText = false;
    bool inHeader = false;
    while (!rest.empty()) {
        const std::string_view line = Trim(TakeCalLine(rest));
        if (inHeader) {
            if (EqualIgnoringCase(line.substr(0, 4), "[End")) return head.size() - rest.size();
        } else if (EqualIgnoringCase(line, "[Header]")) {
            inHeader = true;
        } else if (EqualIgnoringCase(line, "[UserHeader]")) {
            inUserText = true;
        } else if (!inUserText && ClassifyLine(line) != LineKind::Other) {
            return 0;
        }
    }
    return 0;
}

}  // namespace marisonde
