#pragma once

#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <system_error>

#ifdef __unix__
#include <unistd.h>
#endif

namespace marisonde {

/// A folder below a test's own that cannot be written in, as on a disc that somebody handed round. A
/// superuser could: while the folder lives, the test is an ordinary user, and its own folder is open to all.
class ReadOnlyFolder {
  public:
    explicit ReadOnlyFolder(const std::filesystem::path& parent) : path_(parent / "read only") {
        using std::filesystem::perms;
        std::filesystem::create_directory(path_);
        std::filesystem::permissions(parent, perms::all);
        Close();
    }
    ReadOnlyFolder(const ReadOnlyFolder&) = delete;
    ReadOnlyFolder& operator=(const ReadOnlyFolder&) = delete;
    ~ReadOnlyFolder() { Open(); }

    [[nodiscard]] const std::filesystem::path& Path() const { return path_; }
    [[nodiscard]] std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

    /// Lets the test put something into the folder.
    void Fill(const std::function<void()>& fill) {
        Open();
        fill();
        Close();
    }
    /// False on systems that cannot refuse anything to this test.
    [[nodiscard]] bool Refuses() const {
        const bool written = std::ofstream(path_ / "probe").is_open();
        std::error_code passedOver;
        std::filesystem::remove(path_ / "probe", passedOver);
        return !written;
    }

  private:
    void Close() {
        using std::filesystem::perms;
        std::filesystem::permissions(path_, perms::owner_read | perms::owner_exec | perms::group_read |
                                                perms::group_exec | perms::others_read | perms::others_exec);
#ifdef __unix__
        constexpr uid_t kNobody = 65534;
        if (geteuid() == 0) superuser_ = seteuid(kNobody) == 0;
#endif
    }
    void Open() {
#ifdef __unix__
        if (superuser_ && seteuid(0) == 0) superuser_ = false;
#endif
        std::error_code passedOver;
        std::filesystem::permissions(path_, std::filesystem::perms::owner_all, passedOver);
    }

    std::filesystem::path path_;
    bool superuser_ = false;
};

}  // namespace marisonde
