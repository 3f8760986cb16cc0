#include "platform/Paths.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <algorithm>
#include <string>
#include <system_error>

namespace marisonde {

namespace fs = std::filesystem;

namespace {

QString Standard(QStandardPaths::StandardLocation location) {
    const QString path = QStandardPaths::writableLocation(location);
    return path.isEmpty() ? QDir::homePath() : path;
}

}  // namespace

fs::path PathFromText(const QString& text) {
    return QFileInfo(text).filesystemFilePath();
}

QString TextFromPath(const fs::path& path) {
    return QFileInfo(path).filePath();
}

fs::path ProgramFolder() {
    return PathFromText(QCoreApplication::applicationDirPath());
}

fs::path DataFolderAmong(const std::vector<fs::path>& candidates) {
    const auto found = std::find_if(candidates.begin(), candidates.end(), [](const fs::path& folder) {
        std::error_code passedOver;
        return fs::is_regular_file(folder / "aStar.csv", passedOver);
    });
    return found == candidates.end() ? fs::path() : *found;
}

fs::path DataFolder() {
    const fs::path program = ProgramFolder();
    const fs::path installation = program.parent_path();
    return DataFolderAmong({installation / "share" / "marisonde", program / "share", installation / "share",
                            MARISONDE_SOURCE_SHARE});
}

fs::path TablePath(const char* name) {
    std::error_code passedOver;
    const fs::path beside = ProgramFolder() / name;
    return fs::is_regular_file(beside, passedOver) ? beside : DataFolder() / name;
}

std::vector<fs::path> TemporaryFolders(const Settings& settings) {
    std::vector<QString> ranked{QString::fromStdString(settings.GetSetting("App", "TempPath")),
                                qEnvironmentVariable("TEMP"), qEnvironmentVariable("TMP"), QDir::tempPath()};
#ifdef Q_OS_WIN
    ranked.push_back(QStringLiteral("C:\\TEMP"));
#endif
    std::vector<fs::path> folders;
    for (const QString& text : ranked) {
        if (text.trimmed().isEmpty()) continue;
        const fs::path folder = PathFromText(QDir::cleanPath(text.trimmed()));
        if (std::find(folders.begin(), folders.end(), folder) == folders.end()) folders.push_back(folder);
    }
    return folders;
}

fs::path UserDataFolder() {
    return PathFromText(Standard(QStandardPaths::GenericDataLocation)) / "Marisonde";
}

fs::path RecoveredFolder() {
    return UserDataFolder() / "recovered";
}

QString SettingsFile() {
    QString named = qEnvironmentVariable("MARISONDE_SETTINGS");
    if (!named.isEmpty()) return named;
    return Standard(QStandardPaths::GenericConfigLocation) + QStringLiteral("/Marisonde/Marisonde.ini");
}

}  // namespace marisonde
