#include "app/SaveFixture.h"

namespace marisonde {
namespace {

using simulator::Model;
namespace fs = std::filesystem;

/// Files on a disk that fills up, and may stay unusable.
class FullDiskTest : public SaveFixture {
  protected:
    /// A real file that fails from a moment on.
    class Full final : public OutputFile {
      public:
        explicit Full(FullDiskTest& test) : test_(test) {}
        FileError Open(const fs::path& path, OpenMode mode) override {
            return mode == OpenMode::Extend && test_.closed ? FileError{13, "Permission denied"}
                                                            : file_.Open(path, mode);
        }
        FileError Append(std::string_view bytes) override {
            return test_.full ? FileError{28, "No space left on device"} : file_.Append(bytes);
        }
        FileError Flush() override { return file_.Flush(); }
        FileError Close() override { return file_.Close(); }
        bool IsOpen() const override { return file_.IsOpen(); }
        const fs::path& Path() const override { return file_.Path(); }

      private:
        FullDiskTest& test_;
        DiskFile file_;
    };
    DataWindow& Recording() {
        DataWindow& window =
            Keep(Scripted(Model::Corvane6, [this] { return std::make_unique<Full>(*this); }));
        port->Queue("hello\r\n");
        Run(window, kTick);
        EXPECT_EQ(SaveAs(window, (folder / "one").string(), 1), true);
        full = true;
        port->Queue("lost\r\n");
        Run(window, kTick);
        EXPECT_FALSE(window.Files.IsOpen(DataFileKind::Raw));
        return window;
    }
    bool full = false;
    bool closed = false;
};

TEST_F(FullDiskTest, RecordingIsTakenUpAgainBySaving) {
    DataWindow& window = Recording();
    full = false;
    EXPECT_EQ(Save(window, SaveFileMenuCommand), true);
    EXPECT_TRUE(window.Files.IsOpen(DataFileKind::Raw));
    port->Queue("more\r\n");
    Run(window, kTick);
    EXPECT_EQ(Save(window, SaveFileMenuCommand), true);
    EXPECT_EQ(BehindHeader(TestFolder::Read(folder / "one.raw"), "[EndHeader]"), "hello\r\nmore\r\n");
}

TEST_F(FullDiskTest, RecordingIsTakenUpAgainBySavingElsewhere) {
    DataWindow& window = Recording();
    full = false;
    EXPECT_EQ(SaveAs(window, (folder / "two").string(), 1), true);
    EXPECT_TRUE(window.Files.IsOpen(DataFileKind::Raw));
    port->Queue("more\r\n");
    Run(window, kTick);
    EXPECT_EQ(Save(window, SaveFileMenuCommand), true);
    EXPECT_EQ(BehindHeader(TestFolder::Read(folder / "two.raw"), "[EndHeader]"), "hello\r\nmore\r\n");
    EXPECT_EQ(BehindHeader(TestFolder::Read(folder / "one.raw"), "[EndHeader]"), "hello\r\n");
}

TEST_F(FullDiskTest, AFileThatCannotBeExtendedIsTold) {
    DataWindow& window = Recording();
    closed = true;
    EXPECT_EQ(Save(window, SaveFileMenuCommand), true);
    EXPECT_EQ(dialogs.notices,
              std::vector<std::string>{"Error 13 (Permission denied) occured while attempting to open " +
                                       (folder / "one.raw").string() +
                                       " for appending.  No new data will be saved."});
}

}  // namespace
}  // namespace marisonde
