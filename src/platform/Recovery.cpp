#include "platform/Recovery.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <cerrno>
#include <map>
#include <system_error>

#include "files/FileCopy.h"
#include "platform/Paths.h"

namespace marisonde {

namespace fs = std::filesystem;

namespace {

/// So many files of one window and second are never there; a limit keeps a broken file system from hanging
/// the start.
constexpr int kMaxNameTries = 1000;

QFileInfoList DataFilesOf(const fs::path& folder) {
    QFileInfoList files =
        QDir(folder).entryInfoList(QDir::Files | QDir::NoSymLinks | QDir::Hidden, QDir::Name);
    files.removeIf([](const QFileInfo& file) { return !IsTemporaryDataName(file.fileName().toStdString()); });
    return files;
}

/// The time of the last change of either file, by window number.
std::map<QString, QDateTime> TimesByWindow(const QFileInfoList& files) {
    std::map<QString, QDateTime> times;
    for (const QFileInfo& file : files) {
        QDateTime& time = times[file.completeBaseName()];
        time = time.isValid() ? std::max(time, file.lastModified()) : file.lastModified();
    }
    return times;
}

QString NameFor(const QFileInfo& file, const QDateTime& time, int attempt) {
    const QString number = attempt == 1 ? QString() : QStringLiteral(" (%1)").arg(attempt);
    return time.toString(QStringLiteral("yyyy-MM-dd HH-mm-ss ")) + file.completeBaseName() + number +
           QLatin1Char('.') + file.suffix();
}

/// Puts a file in the place of an empty one, on another disk too. A failure leaves it where it is, and the
/// other empty.
FileError Replace(const fs::path& empty, const fs::path& file) {
    std::error_code reason;
    fs::rename(file, empty, reason);
    if (!reason) return {};
    if (FileError error = CopyDataFile(file, empty)) return error;
    fs::remove(file, reason);
    return {};
}

/// Where the file lies after the move; empty, with the reason, when it could not be moved.
QString MoveTo(const QDir& destination, const QFileInfo& file, const QDateTime& time, QString& reason) {
    if (!destination.mkpath(QStringLiteral("."))) {
        reason = QStringLiteral("the folder %1 cannot be made").arg(destination.path());
        return {};
    }
    for (int attempt = 1; attempt <= kMaxNameTries; ++attempt) {
        QString target = destination.filePath(NameFor(file, time, attempt));
        const fs::path place = PathFromText(target);
        DiskFile taken;
        FileError error = taken.Open(place, OpenMode::Create);
        if (error.code == EEXIST) continue;
        taken.Close();
        if (!error) {
            error = Replace(place, file.filesystemFilePath());
            if (!error) return target;
            QFile::remove(target);
        }
        reason = QString::fromStdString(error.text);
        return {};
    }
    return {};
}

void Recover(const QFileInfoList& files, const SafePlaces& places, RecoveryReport& report) {
    const auto times = TimesByWindow(files);
    for (const QFileInfo& file : files) {
        if (file.size() == 0 && QFile::remove(file.filePath())) continue;
        const QDateTime time = times.at(file.completeBaseName());
        QString reason;
        QString moved = MoveTo(QDir(places.best), file, time, reason);
        QString secondReason;
        if (moved.isEmpty()) moved = MoveTo(QDir(places.second), file, time, secondReason);
        if (moved.isEmpty())
            report.leftBehind.push_back({file.filesystemFilePath(), reason.toStdString()});
        else
            report.recovered.push_back(PathFromText(moved));
    }
}

}  // namespace

bool IsTemporaryDataName(std::string_view name) {
    const std::size_t point = name.find_first_not_of("0123456789");
    if (point == 0 || point == std::string_view::npos) return false;
    const std::string_view ending = name.substr(point);
    return ending == ".raw" || ending == ".dat";
}

void RecoverFiles(const fs::path& folder, const SafePlaces& places, RecoveryReport& report) {
    Recover(DataFilesOf(folder), places, report);
}

void RecoverFiles(const std::vector<fs::path>& files, const SafePlaces& places, RecoveryReport& report) {
    QFileInfoList present;
    for (const fs::path& file : files)
        if (const QFileInfo info(file); info.isFile()) present.append(info);
    Recover(present, places, report);
}

}  // namespace marisonde
