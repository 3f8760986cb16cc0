#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

#include "common/InstTypes.h"
#include "common/OutputFile.h"

namespace marisonde {

/// What the head of a data file tells about it. Texts are empty where it tells nothing.
struct FileHeaderInfo {
    InstTypeCode InstType = InstTypeCode::Unknown;  ///< by the header, else by the data lines
    std::string FileType;                           ///< "raw", "rmu", "dat"; empty: no data recognised
    std::string Serial;
    std::string DeviceType;
    std::string Config;
    std::string ID;
    std::string DataSource;
    std::string CalSource;
    std::string CreationDate;  ///< as DateText writes it

    bool operator==(const FileHeaderInfo&) const = default;
};

/// Most lines of a file that are looked at to find out what it is.
inline constexpr int kHeadLines = 300;

/// Looks at the head of a file, up to its data section. An error: it could not be read.
FileError ReadFileHeader(const std::filesystem::path& path, FileHeaderInfo& info);
/// Model of a data file, Unknown for none; stops as soon as type, model and serial number are known. Of a
/// file without header its data lines tell model and type: "rmu" with a leading time field, else "raw".
InstTypeCode GetDataFileType(const std::filesystem::path& path, std::string& fileType, std::string& serial);
/// The same of text that is already here.
InstTypeCode GetDataFileTypeOfText(std::string_view head, std::string& fileType, std::string& serial);

/// How many bytes of `head`, the beginning of a file, are header: up to the line that begins with "[End",
/// provided that "[Header]" stands before it and no data line before that. 0: there is no complete header.
std::size_t HeaderLength(std::string_view head);

}  // namespace marisonde
