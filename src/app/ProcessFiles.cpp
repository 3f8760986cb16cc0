#include "app/ProcessFiles.h"

#include <string>
#include <utility>

#include "app/Dialogs.h"
#include "app/Slices.h"
#include "platform/Operations.h"

namespace marisonde {

namespace {

/// One file to its end, or until the operation is cancelled, which leaves no half of a file.
QCoro::Task<void> RunOne(Operation& operation, FileConversion& conversion, BatchProgress progress,
                         const BatchHost& host) {
    const std::function<bool()> step = [&] { return conversion.Run(kLinesPerProgress); };
    const std::function<void()> shown = [&] {
        progress.within = conversion.Progress();
        if (host.progress) host.progress(progress);
    };
    co_await RunInSlices(operation, host.clock, step, shown);
    if (operation.Cancelled()) conversion.Cancel();
}

void Tell(const ConversionResult& result, std::size_t file, const BatchHost& host) {
    if (result.outcome == ConversionResult::Outcome::Failed) host.dialogs.ShowError(result.message);
    if (host.fileDone) host.fileDone(file, result);
}

QCoro::Task<bool> RunAll(Operation& operation, const BatchRequest& request, BatchConversion& batch,
                         const BatchHost& host) {
    for (std::size_t file = 0; file < request.files.size(); ++file) {
        if (operation.Cancelled() || (host.stop && host.stop())) co_return false;
        const BatchProgress progress{file, request.files.size(), {}};
        if (host.progress) host.progress(progress);
        ConversionResult refused;
        std::optional<FileConversion> conversion = batch.Begin(request.files[file], refused.message);
        if (conversion) co_await RunOne(operation, *conversion, progress, host);
        if (operation.Cancelled()) co_return false;
        const ConversionResult& result = conversion ? conversion->Result() : refused;
        if (result.outcome == ConversionResult::Outcome::Written) batch.NoteWritten(request.files[file]);
        Tell(result, file, host);
    }
    co_return true;
}

}  // namespace

QCoro::Task<bool> ProcessFiles(Operation& operation, ProcessFilesChoice choice, HeaderStamp stamp,
                               const SigmaParams& sigma, const PureWaterParams& water,
                               const BatchHost& host) {
    const std::string against = WhyNotProcess(choice);
    if (!against.empty()) {
        co_await host.dialogs.ShowMessage(operation, against);
        co_return false;
    }
    const BatchRequest request = RequestOf(choice);
    if (const int existing = CountExisting(request); existing > 0) {
        const Question question = OverwriteQuestion(existing, static_cast<int>(request.files.size()));
        const Choice answer = co_await host.dialogs.ShowChoiceDialog(operation, question);
        if (operation.Cancelled() || answer != Choice::First) co_return false;
    }
    BatchConversion batch(request, stamp, sigma, water);
    const std::string unusable = batch.Prepare();
    for (const std::string& message : batch.Messages()) host.dialogs.ShowError(message);
    if (!unusable.empty()) {
        host.dialogs.ShowError(unusable);
        co_return false;
    }
    const bool all = co_await RunAll(operation, request, batch, host);
    co_return all;
}

}  // namespace marisonde
