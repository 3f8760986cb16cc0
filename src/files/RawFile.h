#pragma once

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

}  // namespace marisonde
