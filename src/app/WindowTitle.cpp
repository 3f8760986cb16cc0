#include "app/WindowTitle.h"

#include "app/DataWindow.h"

namespace marisonde {

namespace {

constexpr std::string_view kProgram = " - Marisonde";

std::string ShortName(const std::filesystem::path& path) {
    return path.filename().string();
}

/// What is being recorded. The two files of a pair have one name and differ in their extension.
std::string RecordedFiles(const DataWindow& window) {
    const DataFileState& files = window.Files.State();
    const bool raw = window.Files.IsOpen(DataFileKind::Raw);
    const bool dat = window.Files.IsOpen(DataFileKind::Dat);
    const auto& named = raw ? files.rawFinal : files.datFinal;
    if (named.empty()) return "untitled" + std::to_string(window.UntitledNumber());
    if (!raw || !dat) return ShortName(named);
    return named.stem().string() + " (" + ShortName(files.rawFinal) + ", " + ShortName(files.datFinal) + ")";
}

std::string LoadedFile(const DataWindow& window) {
    if (window.Stored.IsShown()) return ShortName(window.Stored.path);
    const DataFileState& files = window.Files.State();
    return ShortName(files.rawFinal.empty() ? files.datFinal : files.rawFinal);
}

}  // namespace

std::string WindowSubject(const DataWindow& window) {
    if (window.Files.AnyOpen()) return RecordedFiles(window);
    if (std::string loaded = LoadedFile(window); !loaded.empty()) return loaded;
    if (!window.Link.Line().IsOpen()) return "No connection";
    const DataWindowState& state = window.Link.State;
    return state.InstSerial.empty() ? " Port " + std::to_string(state.PortNumber) : state.InstSerial;
}

std::string WindowTitle(const DataWindow& window) {
    return WindowSubject(window) + std::string(kProgram);
}

std::string TerminalTitle(const DataWindow& window) {
    return WindowSubject(window) + " Terminal" + std::string(kProgram);
}

std::string CutCaption(const std::string& caption) {
    return caption.substr(0, caption.find(kProgram));
}

}  // namespace marisonde
