#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "common/InstTypes.h"
#include "files/FileHeader.h"

namespace marisonde {

class CalibrationDataClass;

/// Appends the header of a raw file, from [UserHeader] to [EndHeader]; what the instrument sends follows
/// unchanged. `kind` is "raw" or "rmu", `type` the model of the window. Without a calibration (nullptr) its
/// keys are empty and the source is the model's name.
void WriteRawHeader(std::string& out, const HeaderStamp& stamp, std::string_view kind, InstTypeCode type,
                    const CalibrationDataClass* cal);

/// Bytes of a raw file up to the end of its last whole line, as instruments end lines: what a recording that
/// goes on has complete. 0 when there is none or the file cannot be read.
std::uint64_t WholeLinesLength(const std::filesystem::path& path);

}  // namespace marisonde
