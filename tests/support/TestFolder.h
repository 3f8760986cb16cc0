#pragma once

#include <QTemporaryDir>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include "platform/Paths.h"

namespace marisonde {

/// A folder that is gone when the test ends, and small files in it.
class TestFolder {
  public:
    [[nodiscard]] std::filesystem::path Path() const { return PathFromText(folder_.path()); }
    [[nodiscard]] std::filesystem::path operator/(const std::string& name) const { return Path() / name; }

    static void Write(const std::filesystem::path& path, const std::string& text) {
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
    QTemporaryDir folder_;
};

}  // namespace marisonde
