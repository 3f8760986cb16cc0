#include "app/FileLoading.h"

#include <string>

#include "app/Dialogs.h"
#include "app/Slices.h"
#include "platform/Operations.h"

namespace marisonde {

namespace {

using Step = GroupLoad::Step;
using End = LoadResult::End;

/// Loads for one slice of time.
Step LoadSlice(GroupLoad& load, int linesPerService, const Clock& clock) {
    Step step = Step::Working;
    RunSlice(clock, [&] {
        step = load.Run(linesPerService);
        return step == Step::Working;
    });
    return step;
}

std::string ErrorText(const char* doing, const std::filesystem::path& path, const FileError& error) {
    return std::string("Error ").append(doing).append(" ") + path.string() + ": " + error.text + ".";
}

LoadResult Ended(End end, const GroupLoad& load, const SampleReader& reader, int group) {
    return {end, load.Points(), reader.Counts(), group, ""};
}

/// Whether a further group is wanted.
QCoro::Task<bool> WantsNextGroup(Operation& operation, const LoadHost& host, int points, bool raw,
                                 int group) {
    if (host.group) co_return group < *host.group;
    const Question question = NextGroupQuestion(points, raw);
    const Choice choice = co_await host.dialogs.ShowChoiceDialog(operation, question);
    co_return choice == Choice::First;
}

}  // namespace

QCoro::Task<LoadResult> LoadFile(Operation& operation, SampleReader& reader, bool raw,
                                 std::filesystem::path path, SampleSink& sink, const LoadHost& host) {
    if (const FileError error = reader.Open(path)) {
        LoadResult result;
        result.error = ErrorText("opening", path, error);
        host.dialogs.ShowError(result.error);
        co_return result;
    }
    GroupLoad load(reader, sink, host.maxPoints);
    load.NextGroup();
    int group = 0;
    const int linesPerService = raw ? kRawLinesPerService : kDatLinesPerService;
    while (true) {
        const Step step = LoadSlice(load, linesPerService, host.clock);
        if (host.progress) host.progress(reader.Progress());
        if (step == Step::Done) co_return Ended(End::Complete, load, reader, group);
        if (step == Step::Failed) {
            host.dialogs.ShowError(ErrorText("reading", path, reader.Error()));
            co_return Ended(End::Failed, load, reader, group);
        }
        if (step == Step::GroupFull) {
            const bool next = co_await WantsNextGroup(operation, host, load.Points(), raw, group);
            if (!operation.Cancelled() && !next) co_return Ended(End::Stopped, load, reader, group);
            if (!operation.Cancelled()) {
                load.NextGroup();
                ++group;
            }
        } else {
            co_await operation.NextTurn();
        }
        if (operation.Cancelled()) co_return Ended(End::Cancelled, load, reader, group);
    }
}

std::string LoadSummary(const LoadResult& result) {
    std::string text = std::to_string(result.points) + (result.points == 1 ? " point" : " points");
    const std::string passedOver = PassedOverText(result.counts);
    return passedOver.empty() ? text : text + ", " + passedOver;
}

}  // namespace marisonde
