#pragma once

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <random>
#include <set>
#include <string>
#include <system_error>

namespace marisonde {

/// Real files in a folder that is gone when the test ends.
class FileFixture : public testing::Test {
  protected:
    FileFixture()
        : folder_(std::filesystem::temp_directory_path() /
                  ("marisonde-test-" + std::to_string(std::random_device{}()))) {
        std::filesystem::create_directory(folder_);
    }
    ~FileFixture() override {
        std::error_code passedOver;
        std::filesystem::permissions(folder_, std::filesystem::perms::owner_all, passedOver);
        std::filesystem::remove_all(folder_, passedOver);
    }
    [[nodiscard]] std::filesystem::path In(const std::string& name) const { return folder_ / name; }
    /// A file with this text; returns its path.
    std::filesystem::path Write(const std::string& name, const std::string& text) const {
        std::ofstream(In(name), std::ios::binary) << text;
        return In(name);
    }
    static std::string TextOf(const std::filesystem::path& path) {
        std::ifstream in(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    [[nodiscard]] std::set<std::string> Names() const {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder_))
            names.insert(entry.path().filename().string());
        return names;
    }
    [[nodiscard]] const std::filesystem::path& Folder() const { return folder_; }

  private:
    std::filesystem::path folder_;
};

}  // namespace marisonde
