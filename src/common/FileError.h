#pragma once

#include <string>
#include <system_error>

namespace marisonde {

/// Why a file could not be read or written: the system's number and its own words. Code 0 means all is well.
struct FileError {
    int code = 0;
    std::string text;
    explicit operator bool() const { return code != 0; }
};

/// The error of a failed call that leaves its reason in errno; never success, whatever is there.
FileError ErrorOf(int code);
/// Success for a reason that is none.
FileError ErrorOf(const std::error_code& reason);

}  // namespace marisonde
