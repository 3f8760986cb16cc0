#include "files/LineReader.h"

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstring>
#include <system_error>

#include "common/FileBytes.h"
#include "common/TextBlock.h"

namespace marisonde {

namespace {

std::FILE* OpenHandle(const std::filesystem::path& path) {
    errno = 0;
#ifdef _WIN32
    return _wfopen(path.c_str(), L"rb");
#else
    return std::fopen(path.c_str(), "rb");
#endif
}

std::uint64_t LineEnds(const TextBlock& text) {
    return text.EqualEither('\r', '\n');
}

constexpr std::size_t kNotAhead = std::string_view::npos;
/// No line of values is longer.
constexpr std::size_t kLongestMarked = 4096;

}  // namespace

FileError LineReader::Open(const std::filesystem::path& path, std::uint64_t most) {
    *this = {};
    left_ = most;
    // What a first look takes out of a pipe would be missing when it is read as a file.
    if (IsPipeOrDevice(path)) return {ESPIPE, "it is a pipe or a device, not a file"};
    handle_.reset(OpenHandle(path));
    if (!handle_) return ErrorOf(errno);
    std::setvbuf(handle_.get(), nullptr, _IONBF, 0);
    std::error_code unknown;
    const auto size = std::filesystem::file_size(path, unknown);
    if (!unknown) size_ = std::min<std::uint64_t>(size, most);
    buffer_ = std::make_unique_for_overwrite<char[]>(kBlock + kLongestLine);
    at_ = end_ = buffer_.get();
    atEnd_ = false;
    Fill();
    // A folder opens like a file on some systems and fails only when read.
    return error_;
}

bool LineReader::Next(std::string_view& line) {
    if (cut_) DropRestOfLine();
    const char* end = FindEnd();
    while (end == end_ && !atEnd_ && end_ - at_ <= static_cast<std::ptrdiff_t>(kLongestLine)) {
        Fill();
        end = FindEnd();
    }
    line = {at_, static_cast<std::size_t>(end - at_)};
    if (line.size() > kLongestLine) {
        line = line.substr(0, kLongestLine);
        at_ = end;
        cut_ = true;
        return true;
    }
    if (end != end_) {
        TakeEnd(end);
        return true;
    }
    at_ = end;
    return !line.empty();
}

bool LineReader::Next(std::string_view& line, FieldEnds& ends) {
    const std::size_t length = cut_ ? kNotAhead : MarkAhead(ends);
    if (length == kNotAhead) {
        if (!Next(line)) return false;
        ends.Mark(line, line.size());
        return true;
    }
    line = {at_, length};
    TakeEnd(at_ + length);
    return true;
}

/// Marks the commas of the next line and returns its length, if it ends within the whole blocks that were
/// read.
std::size_t LineReader::MarkAhead(FieldEnds& ends) const {
    const std::string_view ahead = Ahead();
    ends.Clear(ahead.size());
    for (std::size_t base = 0; base + kTextBlock <= std::min(ahead.size(), kLongestMarked);
         base += kTextBlock) {
        const TextBlock text(ahead.data() + base);
        const std::uint64_t lineEnds = LineEnds(text);
        const std::uint64_t beforeEnd = (lineEnds & (~lineEnds + 1)) - 1;
        ends.Add(text.Equal(',') & beforeEnd, base);
        if (lineEnds != 0) return base + static_cast<unsigned>(std::countr_zero(lineEnds));
    }
    return kNotAhead;
}

/// The first line end that was read, or the end of what was read.
const char* LineReader::FindEnd() const {
    const char* at = at_;
    for (; end_ - at >= static_cast<std::ptrdiff_t>(kTextBlock); at += kTextBlock)
        if (const std::uint64_t ends = LineEnds(TextBlock(at))) return at + std::countr_zero(ends);
    return std::find_if(at, end_, [](char c) { return c == '\r' || c == '\n'; });
}

void LineReader::TakeEnd(const char* end) {
    at_ = end + 1;
    if (*end != '\r') return;
    if (at_ == end_)
        dropLf_ = true;
    else if (*at_ == '\n')
        ++at_;
}

void LineReader::Fill() {
    base_ += Offset(at_);
    const auto kept = static_cast<std::size_t>(end_ - at_);
    std::memmove(buffer_.get(), at_, kept);
    errno = 0;
    const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(kBlock, left_));
    const std::size_t read = std::fread(buffer_.get() + kept, 1, wanted, handle_.get());
    left_ -= read;
    if (read < kBlock) {
        atEnd_ = true;
        if (std::ferror(handle_.get()) != 0) error_ = ErrorOf(errno);
    }
    at_ = buffer_.get();
    end_ = at_ + kept + read;
    if (dropLf_ && at_ != end_) {
        if (*at_ == '\n') ++at_;
        dropLf_ = false;
    }
}

void LineReader::DropRestOfLine() {
    while (FindEnd() == end_ && !atEnd_) {
        at_ = end_;
        Fill();
    }
    const char* const end = FindEnd();
    at_ = end;
    if (end != end_) TakeEnd(end);
    cut_ = false;
}

}  // namespace marisonde
