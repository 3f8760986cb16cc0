#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <system_error>

namespace marisonde {

/// A folder that is gone when the test ends, and small files in it.
class TestFolder {
  public:
    TestFolder()
        : path_(std::filesystem::temp_directory_path() /
                ("marisonde-test-" + std::to_string(std::random_device{}()))) {
        std::filesystem::create_directory(path_);
    }
    ~TestFolder() {
        std::error_code passedOver;
        std::filesystem::permissions(path_, std::filesystem::perms::owner_all, passedOver);
        std::filesystem::remove_all(path_, passedOver);
    }
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& Path() const { return path_; }
    [[nodiscard]] std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

    static void Write(const std::filesystem::path& path, std::string_view text) {
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << text;
    }
    static std::string Read(const std::filesystem::path& path) {
        std::ifstream in(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    /// Names in a folder; empty when it does not exist.
    static std::set<std::string> Names(const std::filesystem::path& path) {
        std::set<std::string> names;
        std::error_code passedOver;
        for (const auto& entry : std::filesystem::directory_iterator(path, passedOver))
            names.insert(entry.path().filename().string());
        return names;
    }

  private:
    std::filesystem::path path_;
};

}  // namespace marisonde
