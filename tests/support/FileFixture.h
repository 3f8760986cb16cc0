#pragma once

#include <filesystem>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <string_view>

#include "support/TestFolder.h"

namespace marisonde {

/// Real files in a folder that is gone when the test ends.
class FileFixture : public testing::Test {
  protected:
    [[nodiscard]] std::filesystem::path In(const std::string& name) const { return folder_ / name; }
    /// A file with this text; returns its path.
    std::filesystem::path Write(const std::string& name, std::string_view text) const {
        TestFolder::Write(In(name), text);
        return In(name);
    }
    static std::string TextOf(const std::filesystem::path& path) { return TestFolder::Read(path); }
    [[nodiscard]] std::set<std::string> Names() const { return TestFolder::Names(Folder()); }
    [[nodiscard]] const std::filesystem::path& Folder() const { return folder_.Path(); }

  private:
    TestFolder folder_;
};

}  // namespace marisonde
