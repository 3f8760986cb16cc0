#include "platform/Instance.h"

#include <QDir>
#include <QFileInfo>
#include <QLockFile>
#include <QtGlobal>
#include <algorithm>
#include <set>
#include <system_error>
#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

#include "common/Numbers.h"
#include "platform/Paths.h"

namespace marisonde {

namespace fs = std::filesystem;

namespace {

constexpr int kMaxInstances = 10000;
constexpr int kNobodysNumber = 0;  ///< there is never a folder of it

/// Elsewhere than on Windows all users share the system's temporary folder.
std::string RootName() {
#ifdef Q_OS_UNIX
    return "Marisonde-" + std::to_string(getuid());
#else
    return "Marisonde";
#endif
}

fs::path FolderOf(const fs::path& root, int number) {
    return root / std::to_string(number);
}

std::unique_ptr<QLockFile> LockOf(const fs::path& root, int number) {
    auto lock = std::make_unique<QLockFile>(TextFromPath(root / (std::to_string(number) + ".lock")));
    // A run may last for weeks: a lock never gets old, but it is void when its process is gone.
    lock->setStaleLockTime(0);
    return lock;
}

/// Numbers that have a folder or a lock below `root`.
std::set<int> NumbersIn(const fs::path& root) {
    std::set<int> numbers;
    for (const QFileInfo& entry : QDir(root).entryInfoList(QDir::Dirs | QDir::Files | QDir::NoSymLinks)) {
        const bool ours = entry.isDir() || entry.suffix() == QLatin1String("lock");
        bool isNumber = false;
        const int number = entry.completeBaseName().toInt(&isNumber);
        if (ours && isNumber && number > 0) numbers.insert(number);
    }
    return numbers;
}

/// In a folder that all users may write, somebody else may have made ours.
bool IsOurs(const QFileInfo& folder) {
#ifdef Q_OS_UNIX
    return folder.isDir() && !folder.isSymLink() && folder.ownerId() == getuid();
#else
    return folder.isDir();
#endif
}

/// Makes the folder for this user alone; the reason when that fails.
std::string MakeRoot(const fs::path& root) {
    std::error_code reason;
    fs::create_directories(root, reason);
    if (reason) return root.string() + ": " + reason.message();
    if (!IsOurs(QFileInfo(root))) return root.string() + ": the folder belongs to another user";
    fs::permissions(root, fs::perms::owner_all, reason);
    return {};
}

}  // namespace

InstancePlaces UsualPlaces(const Settings& settings) {
    return {TemporaryFolders(settings), RecoveredFolder()};
}

Instance::Instance(const InstancePlaces& places, Settings& settings)
    : root_(places.temporaryFolders.front() / RootName()), recoveredFolder_(places.recovered) {
    problem_ = MakeRoot(root_);
    for (const fs::path& temporary : places.temporaryFolders) RecoverDead(temporary / RootName());
    const int stored = std::clamp(ToInt32(Val(settings.GetSetting("App", "Instance"))), 0, kMaxInstances);
    const int first = prevInstance_ ? stored + 1 : 1;
    number_ = first;
    while (problem_.empty() && !Take(number_)) NextNumber(first);
    // What cannot be locked may hold the data of a dead run: then nothing is recorded, rather than over
    // these.
    folder_ = FolderOf(root_, problem_.empty() ? number_ : kNobodysNumber);
    settings.SaveSetting("App", "Instance", std::to_string(number_));
}

Instance::~Instance() {
    if (!lock_) return;
    std::error_code passedOver;
    fs::remove(folder_, passedOver);
    lock_->unlock();
}

void Instance::NextNumber(int first) {
    if (!problem_.empty()) return;
    if (++number_ >= first + kMaxInstances) problem_ = root_.string() + ": no folder can be taken";
}

void Instance::RecoverDead(const fs::path& root) {
    if (!IsOurs(QFileInfo(root))) return;
    for (const int number : NumbersIn(root)) {
        const auto lock = LockOf(root, number);
        if (!lock->tryLock(0)) {
            prevInstance_ = true;
            continue;
        }
        RecoverFiles(FolderOf(root, number), {recoveredFolder_, root / "recovered"}, recovered_);
        std::error_code passedOver;
        fs::remove(FolderOf(root, number), passedOver);
        lock->unlock();
    }
}

bool Instance::Take(int number) {
    auto lock = LockOf(root_, number);
    if (!lock->tryLock(0)) {
        if (lock->error() == QLockFile::LockFailedError) return false;
        problem_ = root_.string() + ": the folder cannot be written";
        return false;
    }
    const fs::path folder = FolderOf(root_, number);
    // Data that could not be moved must not be written over either.
    const auto& left = recovered_.leftBehind;
    if (std::any_of(left.begin(), left.end(),
                    [&](const auto& file) { return file.path.parent_path() == folder; }))
        return false;
    std::error_code reason;
    fs::create_directory(folder, reason);
    if (reason) problem_ = folder.string() + ": " + reason.message();
    lock_ = std::move(lock);
    return true;
}

}  // namespace marisonde
