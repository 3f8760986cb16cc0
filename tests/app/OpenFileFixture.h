#pragma once

#include <string>
#include <vector>

#include "app/FilesFixture.h"
#include "app/OpenFile.h"

namespace marisonde {

/// Opens files in windows as their user does.
class OpenFileFixture : public FilesFixture {
  protected:
    ShowNewWindow NewWindow() {
        return [this]() -> DataWindow* {
            if (app.FirstFreeWindow() == kMaxWindows) return nullptr;
            return &Empty();
        };
    }
    /// Chooses the file in the dialog.
    void OpenByMenu(DataWindow& window, const std::string& path) {
        dialogs.chosen.push_front({path, 0});
        Do(window, [&](Operation& operation) { return OpenFileCommand(operation, window, NewWindow()); });
    }
    void Give(DataWindow& window, const std::vector<std::string>& paths) {
        Do(window,
           [&](Operation& operation) { return OpenGivenFiles(operation, window, paths, NewWindow()); });
    }
    /// A calibrated file of so many samples.
    std::string DatOf(int samples) {
        std::string text =
            "[Header]\r\nFileType=dat\r\nDeviceType=Fathom-2\r\n[Channels]\r\n\"k(532)\"\r\n"
            "\"k(650)\"\r\n[Data]\r\n";
        for (int i = 1; i <= samples; ++i) text += std::to_string(40000 + i) + ",1,0.5,0.25,20\r\n";
        TestFolder::Write(folder / "many.dat", text);
        return (folder / "many.dat").string();
    }
};

}  // namespace marisonde
