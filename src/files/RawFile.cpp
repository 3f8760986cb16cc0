#include "files/RawFile.h"

#include <algorithm>
#include <fstream>

#include "calibration/CalibrationDataClass.h"

namespace marisonde {

void WriteRawHeader(std::string& out, const HeaderStamp& stamp, std::string_view kind, InstTypeCode type,
                    const CalibrationDataClass* cal) {
    HeaderFields fields;
    fields.fileType = kind;
    fields.type = type;
    if (cal != nullptr) {
        fields.calSource = cal->SourceFile();
        fields.serial = cal->Serial;
        fields.config = cal->Config;
    }
    AppendCommonHeader(out, stamp, fields);
    AppendKey(out, "[EndHeader]", "");
}

std::uint64_t WholeLinesLength(const std::filesystem::path& path) {
    constexpr std::streamoff kBlock = 4096;
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    std::string block;
    for (std::streamoff end = file.tellg(); end > 0;) {
        const std::streamoff begin = std::max<std::streamoff>(0, end - kBlock);
        block.resize(static_cast<std::size_t>(end - begin));
        file.seekg(begin);
        if (!file.read(block.data(), end - begin)) return 0;
        const std::size_t place = block.rfind('\r');
        if (place != std::string::npos) return static_cast<std::uint64_t>(begin) + place + 1;
        end = begin;
    }
    return 0;
}

}  // namespace marisonde
