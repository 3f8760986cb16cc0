#include "platform/Operations.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace marisonde {

Waiter Operation::Until(std::function<bool()> met, Millis limit) {
    return pump_.Until([this, met = std::move(met)] { return cancelled_ || met(); }, limit);
}

Waiter Operation::NextTurn() {
    return Until([] { return false; }, Millis{0});
}

Operations::~Operations() {
    CancelAll();
    TurnUntilEnded();
    for (const auto& entry : running_) {
        Report(*entry, "did not end when it was cancelled");
        entry->owner = nullptr;
    }
}

void Operations::Start(std::string name, Procedure procedure) {
    auto entry = std::make_shared<Entry>(pump_, std::move(name), std::move(procedure));
    entry->owner = this;
    running_.push_back(entry);
    // The frame of Run owns itself: it keeps the entry, lets no exception out, and is freed when it ends.
    Run(std::move(entry));
}

void Operations::StartUnlessRunning(std::string name, Procedure procedure) {
    if (!Running(name)) Start(std::move(name), std::move(procedure));
}

QCoro::Task<> Operations::Run(std::shared_ptr<Entry> entry) {
    std::string reason;
    try {
        co_await entry->procedure(entry->operation);
    } catch (const std::exception& error) {
        reason = error.what();
        if (reason.empty()) reason = "unknown reason";
    } catch (...) {
        reason = "unknown reason";
    }
    if (entry->owner == nullptr) co_return;
    entry->owner->Remove(*entry);
    if (!reason.empty()) entry->owner->Report(*entry, reason);
}

bool Operations::Running(std::string_view name) const {
    return std::any_of(running_.begin(), running_.end(),
                       [name](const auto& entry) { return entry->operation.Name() == name; });
}

void Operations::CancelAll() {
    for (const auto& entry : running_) entry->operation.Cancel();
}

void Operations::Cancel(std::string_view name) {
    for (const auto& entry : running_)
        if (entry->operation.Name() == name) entry->operation.Cancel();
}

bool Operations::TurnUntilEnded(int turns) {
    for (int turn = 0; turn < turns && !running_.empty() && !pump_.Turning(); ++turn) pump_.ResumeReady();
    return running_.empty();
}

void Operations::Remove(const Entry& entry) {
    std::erase_if(running_, [&entry](const auto& other) { return other.get() == &entry; });
}

void Operations::Report(const Entry& entry, const std::string& reason) const {
    // A copy: the report may close the window whose operations these are.
    if (const OnFailure report = onFailure_) report(entry.operation.Name(), reason);
}

}  // namespace marisonde
