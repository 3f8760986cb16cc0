#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "common/InstTypes.h"
#include "common/Version.h"

namespace marisonde {

inline constexpr std::string_view kLineEnd = "\r\n";

/// What the program adds to every data file.
struct HeaderStamp {
    std::string userHeader;  ///< free text of the user; empty: no [UserHeader] section
    double date = 0;         ///< creation, local days since 30 December 1899
};

/// The keys that raw and calibrated files have in common.
struct HeaderFields {
    std::string_view fileType;  ///< "raw", "rmu" or "dat"
    InstTypeCode type = InstTypeCode::Unknown;
    std::string_view dataSource;  ///< empty: the model's name
    std::string_view calSource;   ///< empty: the model's name
    std::string_view serial;
    std::string_view config;
};

/// Appends [UserHeader] with its text, and [Header] with its keys up to Config. A text with line breaks stays
/// on one line, with blanks for the breaks, so that no text can be taken for a key or a section.
void AppendCommonHeader(std::string& out, const HeaderStamp& stamp, const HeaderFields& fields);

/// The date of a text like "07/04/11 09:15:22", of the years 2000 to 2099; nullopt when it is none.
std::optional<double> CreationDateFrom(std::string_view text);

/// Appends key, text and line end; line breaks within the text become blanks.
void AppendKey(std::string& out, std::string_view key, std::string_view text);

}  // namespace marisonde
