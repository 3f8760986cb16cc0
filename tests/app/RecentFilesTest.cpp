#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "app/FilesFixture.h"
#include "app/RecentFiles.h"

namespace marisonde {
namespace {

using RecentFilesTest = FilesFixture;

TEST_F(RecentFilesTest, FilesOpenedLastComeFirst) {
    for (int i = 0; i < 10; ++i) NoteRecentFile(settings, "/d/" + std::to_string(i));
    NoteRecentFile(settings, "/d/5");
    EXPECT_EQ(RecentFiles(settings),
              (std::vector<std::string>{"/d/5", "/d/9", "/d/8", "/d/7", "/d/6", "/d/4", "/d/3", "/d/2"}));
}

}  // namespace
}  // namespace marisonde
