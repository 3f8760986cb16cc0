// Calibration files on disk: load, save, and a look at what a file is.
#include <array>
#include <cerrno>
#include <fstream>
#include <system_error>

#include "calibration/CalImage.h"
#include "calibration/CalLine.h"
#include "calibration/CalibrationDataClass.h"
#include "common/FileBytes.h"
#include "common/ReplacedFile.h"

namespace marisonde {

namespace {

bool Exists(const std::filesystem::path& path) {
    std::error_code error;
    return std::filesystem::exists(path, error);
}

struct SerialPrefix {
    std::string_view letters;
    InstTypeCode type;
};
constexpr std::array kSerialPrefixes{
    SerialPrefix{"N2", InstTypeCode::Delph2},   SerialPrefix{"D2", InstTypeCode::Delph2},
    SerialPrefix{"D4", InstTypeCode::Delph4},   SerialPrefix{"D6", InstTypeCode::Delph6},
    SerialPrefix{"CV", InstTypeCode::Corvane6}, SerialPrefix{"V2", InstTypeCode::Corvane2},
    SerialPrefix{"V4", InstTypeCode::Corvane4}, SerialPrefix{"LT", InstTypeCode::LTidal},
    SerialPrefix{"NT", InstTypeCode::NTidal},
};

/// What one line tells of a file. True: nothing behind it can change that.
bool TellsType(std::string_view line, CalFileType& found) {
    std::string section;
    const auto [key, value] = SplitCalLine(line, section);
    if (key == "DeviceType") {
        const InstTypeCode named = InstTypeFromName(value);
        found.type = named == InstTypeCode::NoSuchName ? InstTypeCode::Unknown : named;
    }
    if (key != "Serial") return false;
    found.serial = value;
    for (const auto& [letters, type] : kSerialPrefixes) {
        if (!value.starts_with(letters)) continue;
        found.type = type;
        return true;
    }
    return false;
}

CalFileType TypeFromText(std::istream& file) {
    CalFileType found;
    std::string text;
    while (std::getline(file, text)) {
        // Lines may end in CR alone.
        for (std::string_view rest = text; !rest.empty();)
            if (TellsType(TakeCalLine(rest), found)) return found;
    }
    return found;
}

bool HasLengthOfImage(const std::filesystem::path& path) {
    std::error_code error;
    return std::filesystem::file_size(path, error) == kCalImageSize;
}

}  // namespace

std::string_view TakeCalLine(std::string_view& text) {
    const std::size_t end = text.find_first_of("\r\n");
    const std::string_view line = text.substr(0, end);
    if (end == std::string_view::npos) {
        text = {};
        return line;
    }
    text.remove_prefix(end);
    text.remove_prefix(text.starts_with("\r\n") ? 2 : 1);
    return line;
}

CalFileResult CalibrationDataClass::LoadText(std::string_view text, const SigmaParams& params,
                                             const PureWaterParams& water) {
    const std::string source = std::move(sourceFile_);
    Clear();
    sourceFile_ = source;
    // Old files name neither model nor serial number; they came from the first Corvane-6.
    InstType = InstTypeCode::Corvane6;
    CalSection section;
    while (!text.empty()) ParseLineIntoCalClass(TakeCalLine(text), section);
    return {true, "", FinishLoad(params, water)};
}

std::vector<std::string> CalibrationDataClass::FinishLoad(const SigmaParams& params,
                                                          const PureWaterParams& water) {
    ChangedItems = 0;
    NameTidalChannels();
    InferSharedChannels();
    return CheckAndUpdateAll(params, water);
}

void CalibrationDataClass::NameTidalChannels() {
    if (InstType != InstTypeCode::LTidal && InstType != InstTypeCode::NTidal) return;
    const std::string beam = std::to_string(Attenuation(0).KLambda) + ")";
    EditChannel(0).name = "bb(" + std::to_string(Channel(0).lambda) + ")";
    EditChannel(1).name = (InstType == InstTypeCode::LTidal ? "a(" : "c(") + beam;
    EditChannel(2).name = "k(" + beam;
}

void CalibrationDataClass::InferSharedChannels() {
    constexpr int kLastInFiles = 7;
    if (InstType != InstTypeCode::Corvane6) return;
    for (int ch = 1; ch <= kLastInFiles; ++ch) {
        if (Channel(ch).ChRep != 0 || Channel(ch).ChEx != 0) return;
    }
    if (Channel(1).lambda == Channel(7).lambda) {
        SetChEx(1, 1);
        SetChEx(3, 3);
        SetChRep(1, 8);
        SetChEx(7, 2);
        if (Channel(3).lambda == Channel(6).lambda) {
            SetChRep(3, 7);
            SetChEx(6, 4);
        }
    } else if (Channel(1).lambda == Channel(6).lambda) {
        SetChEx(1, 1);
        SetChRep(1, 7);
        SetChEx(6, 2);
    }
}

CalFileResult CalibrationDataClass::LoadSourceFile(const std::filesystem::path& path,
                                                   const SigmaParams& params, const PureWaterParams& water) {
    if (!Exists(path)) return {};
    std::error_code error;
    const auto bytes = ReadFileBytes(path, error);
    if (!bytes) {
        const std::string source = std::move(sourceFile_);
        Clear();
        sourceFile_ = source;
        return {false, "Error opening file: " + error.message() + ".\r" + path.string(), {}};
    }
    CalFileResult result{true, "", {}};
    if (IsCalImage(*bytes)) {
        ReadCalImageBytes(*bytes, *this);
        result.messages = CheckAndUpdateAll(params, water);
    } else {
        result = LoadText(*bytes, params, water);
    }
    sourceFile_ = path.string();
    return result;
}

CalFileResult CalibrationDataClass::SaveCopyToFile(const std::filesystem::path& path,
                                                   const PureWaterParams& water) {
    if (const FileError error = SaveWhole(path, CalText(water)))
        return {false, "Error writing file: " + error.text + ".\r" + path.string(), {}};
    ChangedItems = 0;
    savedFile_ = path.string();
    return {true, "", {}};
}

CalFileResult CalibrationDataClass::SaveAsFile(const std::filesystem::path& path,
                                               const PureWaterParams& water) {
    CalFileResult result = SaveCopyToFile(path, water);
    if (result.ok) sourceFile_ = path.string();
    return result;
}

CalFileType GetCalFileType(const std::filesystem::path& path) {
    if (!Exists(path)) return {};
    if (IsPipeOrDevice(path)) return {InstTypeCode::Unknown, "", "Error opening cal file: it is not a file."};
    if (HasLengthOfImage(path)) {
        std::error_code error;
        const std::string bytes = ReadFileBytes(path, error).value_or("");
        if (IsCalImage(bytes)) return CalImageType(bytes);
    }
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    CalFileType found = TypeFromText(file);
    if (!file.is_open() || file.bad()) found.error = "Error opening cal file: " + ErrorOf(errno).text + ".";
    return found;
}

}  // namespace marisonde
