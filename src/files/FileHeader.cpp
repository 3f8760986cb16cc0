#include "files/FileHeader.h"

#include "common/ConversionUtils.h"
#include "common/DateText.h"

namespace marisonde {

namespace {

void AppendOneLine(std::string& out, std::string_view text) {
    for (const char c : text) out += c == '\r' || c == '\n' ? ' ' : c;
    out += kLineEnd;
}

std::string_view OrModel(std::string_view text, InstTypeCode type) {
    return text.empty() ? InstTypeName(type) : text;
}

}  // namespace

std::optional<double> CreationDateFrom(std::string_view text) {
    constexpr std::string_view kForm = "00/00/00 00:00:00";
    if (text.size() != kForm.size()) return std::nullopt;
    for (std::size_t i = 0; i < kForm.size(); ++i) {
        const bool digit = text[i] >= '0' && text[i] <= '9';
        if (kForm[i] == '0' ? !digit : text[i] != kForm[i]) return std::nullopt;
    }
    const auto two = [&](std::size_t place) { return 10 * (text[place] - '0') + (text[place + 1] - '0'); };
    return DateFromCivil(2000 + two(6), two(0), two(3), two(9), two(12), two(15));
}

void AppendKey(std::string& out, std::string_view key, std::string_view text) {
    out += key;
    AppendOneLine(out, text);
}

void AppendCommonHeader(std::string& out, const HeaderStamp& stamp, const HeaderFields& fields) {
    if (!stamp.userHeader.empty()) {
        AppendKey(out, "[UserHeader]", "");
        AppendOneLine(out, stamp.userHeader);
    }
    AppendKey(out, "[Header]", "");
    AppendKey(out, "MarisondeVersion=", kVersion);
    AppendKey(out, "CreationDate=", DateText(stamp.date));
    AppendKey(out, "FileType=", fields.fileType);
    AppendKey(out, "DeviceType=", InstTypeName(fields.type));
    AppendKey(out, "DataSource=", OrModel(fields.dataSource, fields.type));
    AppendKey(out, "CalSource=", OrModel(fields.calSource, fields.type));
    AppendKey(out, "Serial=", fields.serial);
    AppendKey(out, "Config=", fields.config);
}

}  // namespace marisonde
