#include "common/FileError.h"

#include <cerrno>

namespace marisonde {

FileError ErrorOf(int code) {
    // Some libraries fail without setting errno; an error must never look like success.
    const int number = code != 0 ? code : EIO;
    return {number, std::generic_category().message(number)};
}

FileError ErrorOf(const std::error_code& reason) {
    if (!reason) return {};
    return {reason.value(), reason.message()};
}

}  // namespace marisonde
