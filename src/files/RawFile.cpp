#include "files/RawFile.h"

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

}  // namespace marisonde
