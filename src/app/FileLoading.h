#pragma once

#include <QCoroTask>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "common/Clock.h"
#include "files/GroupLoad.h"

namespace marisonde {

class Dialogs;
class Operation;

/// How the load of a file ended. What was read is in the sink, whatever the end.
struct LoadResult {
    enum class End { Complete, Stopped, Cancelled, Failed, NotOpened };
    End end = End::NotOpened;  ///< NotOpened: the sink is as it was
    int points = 0;            ///< in the sink
    LineCounts counts;
    int group = 0;      ///< groups passed over before the one in the sink
    std::string error;  ///< why it was not opened, as the user has been told
};

/// What a load needs of the window that it loads into.
struct LoadHost {
    const Clock& clock;
    Dialogs& dialogs;
    int maxPoints = 0;                                  ///< MaxGraphPoints
    std::function<void(const ReadProgress&)> progress;  ///< may be empty
    std::optional<int> group = std::nullopt;  ///< shows the group behind so many others without asking
};
/// Title of the progress of a load.
inline constexpr const char* kLoadingTitle = "Loading Data";

/// Opens the file with `reader` and loads it into `sink`, which is emptied first once the file is open. Asks
/// at every full group; the window lives on meanwhile. `raw`: a raw file. All references outlive the task.
QCoro::Task<LoadResult> LoadFile(Operation& operation, SampleReader& reader, bool raw,
                                 std::filesystem::path path, SampleSink& sink, const LoadHost& host);

/// For the status line: "12 points, 3 lines passed over: 3 bad checksum".
std::string LoadSummary(const LoadResult& result);

}  // namespace marisonde
