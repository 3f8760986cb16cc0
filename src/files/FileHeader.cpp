#include "files/FileHeader.h"

#include "common/ConversionUtils.h"

namespace marisonde {

namespace {

void AppendTwoDigits(std::string& out, int number) {
    out += static_cast<char>('0' + number / 10 % 10);
    out += static_cast<char>('0' + number % 10);
}

void AppendOneLine(std::string& out, std::string_view text) {
    for (const char c : text) out += c == '\r' || c == '\n' ? ' ' : c;
    out += kLineEnd;
}

std::string_view OrModel(std::string_view text, InstTypeCode type) {
    return text.empty() ? InstTypeName(type) : text;
}

}  // namespace

std::string CreationDateText(double date) {
    const CivilDate civil = CivilFromDate(date);
    std::string text;
    AppendTwoDigits(text, civil.month);
    text += '/';
    AppendTwoDigits(text, civil.day);
    text += '/';
    AppendTwoDigits(text, civil.year);
    text += ' ';
    AppendTwoDigits(text, civil.hour);
    text += ':';
    AppendTwoDigits(text, civil.minute);
    text += ':';
    AppendTwoDigits(text, civil.second);
    return text;
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
    AppendKey(out, "CreationDate=", CreationDateText(stamp.date));
    AppendKey(out, "FileType=", fields.fileType);
    AppendKey(out, "DeviceType=", InstTypeName(fields.type));
    AppendKey(out, "DataSource=", OrModel(fields.dataSource, fields.type));
    AppendKey(out, "CalSource=", OrModel(fields.calSource, fields.type));
    AppendKey(out, "Serial=", fields.serial);
    AppendKey(out, "Config=", fields.config);
}

}  // namespace marisonde
