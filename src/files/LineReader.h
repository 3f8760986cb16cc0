#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string_view>

#include "common/OutputFile.h"
#include "files/FieldEnds.h"

namespace marisonde {

/// How far a file has been read, in bytes; `size` is that of the file when it was opened, 0 when unknown.
struct ReadProgress {
    std::uint64_t done = 0;
    std::uint64_t size = 0;
};

/// Cuts a file of any bytes into lines that end in CR LF, CR or LF; the last line may lack its end. Reads
/// large blocks and never alters the file. Memory stays bounded whatever the file holds.
class LineReader {
  public:
    static constexpr std::size_t kBlock = std::size_t{256} * 1024;
    /// Of a longer line only so much is given; no instrument sends a line a hundredth as long.
    static constexpr std::size_t kLongestLine = std::size_t{64} * 1024;

    static constexpr std::uint64_t kWhole = UINT64_MAX;

    /// Opens `path` and reads its first block. A file that is open already is closed first. What lies behind
    /// the first `most` bytes counts as not there.
    [[nodiscard]] FileError Open(const std::filesystem::path& path, std::uint64_t most = kWhole);
    /// The next line without its end, valid until the next call; empty lines count. False at the end of the
    /// file and after a failure, which Error tells.
    bool Next(std::string_view& line);
    /// The same of a line of values, and where these end; of the commas behind kLongestLine nothing is told.
    bool Next(std::string_view& line, FieldEnds& ends);
    /// The line of the last Next was longer than kLongestLine and lacks its rest.
    [[nodiscard]] bool LineWasCut() const { return cut_; }
    [[nodiscard]] const FileError& Error() const { return error_; }
    [[nodiscard]] ReadProgress Progress() const { return {base_ + Offset(at_), size_}; }

    /// What has been read and not yet given as lines: behind Open the first kBlock bytes of the file, or all
    /// of a smaller one.
    [[nodiscard]] std::string_view Ahead() const { return {at_, static_cast<std::size_t>(end_ - at_)}; }
    /// Passes over the first `count` bytes of Ahead.
    void Skip(std::size_t count) { at_ += count; }

  private:
    struct CloseHandle {
        void operator()(std::FILE* handle) const { std::fclose(handle); }
    };
    [[nodiscard]] std::uint64_t Offset(const char* place) const {
        return static_cast<std::uint64_t>(place - buffer_.get());
    }
    [[nodiscard]] const char* FindEnd() const;
    std::size_t MarkAhead(FieldEnds& ends) const;
    void TakeEnd(const char* end);
    void Fill();
    void DropRestOfLine();

    std::unique_ptr<std::FILE, CloseHandle> handle_;
    std::unique_ptr<char[]> buffer_;  ///< not cleared: of a small file only its first pages are ever touched
    const char* at_ = nullptr;        ///< first byte not yet given
    const char* end_ = nullptr;       ///< behind the last byte read
    std::uint64_t base_ = 0;          ///< place in the file of the first byte of the buffer
    std::uint64_t size_ = 0;
    std::uint64_t left_ = 0;  ///< bytes that may still be read
    bool atEnd_ = true;
    bool dropLf_ = false;  ///< a CR was the last byte read; a LF right behind it belongs to it
    bool cut_ = false;
    FileError error_;
};

}  // namespace marisonde
