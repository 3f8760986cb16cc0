#include "app/NewFile.h"

#include <string>

#include "app/DataWindow.h"
#include "app/FileDialogs.h"
#include "app/Shutdown.h"
#include "link/LinkWaits.h"
#include "platform/Operations.h"

namespace marisonde {

QCoro::Task<> NewFileCommand(Operation& operation, DataWindow& window) {
    const DataWindowState& state = window.Link.State;
    const bool connected = co_await ConnectInDialog(operation, window.Link);
    if (!connected || operation.Cancelled()) co_return;
    const bool closed = co_await CloseDataFiles(operation, window, true);
    if (closed && !operation.Cancelled()) window.OpenDataFiles("raw", state.CalReady);
}

QCoro::Task<> NameFilesCommand(Operation& operation, DataWindow& window) {
    AppContext& app = window.App();
    const std::string proposed = app.prefs.SavePath + window.DefaultFileName();
    const DataFilesToSave there{window.Files.IsOpen(DataFileKind::Raw),
                                window.Files.IsOpen(DataFileKind::Dat)};
    const SaveSource kind = there.raw ? SaveSource::RawData : SaveSource::LiveData;
    const SaveFileAnswer answer =
        co_await SaveFileDialog(operation, window.Ask(), app.settings, kind, proposed, there);
    // They may have been saved under another name, or closed, while the dialog stood.
    if (answer.path.empty() || !window.Files.State().stillToBeNamed) co_return;
    window.Files.NameFiles(answer.path);
    app.prefs.SavePath = std::filesystem::path(answer.path).parent_path().string() + "/";
}

}  // namespace marisonde
