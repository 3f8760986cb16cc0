#include "app/FileLoading.h"

#include <string>

#include "app/Dialogs.h"
#include "platform/Operations.h"

namespace marisonde {

namespace {

using Step = GroupLoad::Step;
using End = LoadResult::End;

/// Most time between two looks at the instruments: they must not notice that a file is being loaded.
constexpr Millis kSlice{25};
/// Most services in a slice, for clocks that stand still meanwhile.
constexpr int kServicesPerSlice = 200;

/// Loads for one slice of time.
Step RunSlice(GroupLoad& load, int linesPerService, const Clock& clock) {
    const Millis end = clock.Steady() + kSlice;
    Step step = Step::Working;
    for (int i = 0; i < kServicesPerSlice && step == Step::Working && clock.Steady() < end; ++i)
        step = load.Run(linesPerService);
    return step;
}

std::string ErrorText(const char* doing, const std::filesystem::path& path, const FileError& error) {
    return std::string("Error ").append(doing).append(" ") + path.string() + ": " + error.text + ".";
}

LoadResult Ended(End end, const GroupLoad& load, const SampleReader& reader, int group) {
    return {end, load.Points(), reader.Counts(), group};
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
        host.dialogs.ShowError(ErrorText("opening", path, error));
        co_return LoadResult{};
    }
    GroupLoad load(reader, sink, host.maxPoints);
    load.NextGroup();
    int group = 0;
    const int linesPerService = raw ? kRawLinesPerService : kDatLinesPerService;
    const auto nextTurn = [] { return false; };
    constexpr Millis kNoTime{0};
    while (true) {
        const Step step = RunSlice(load, linesPerService, host.clock);
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
            co_await operation.Until(nextTurn, kNoTime);
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
