#include "app/RecentFiles.h"

#include <algorithm>

namespace marisonde {

namespace {

std::string KeyOf(int place) {
    return "RecentFile" + std::to_string(place);
}

}  // namespace

std::vector<std::string> RecentFiles(const Settings& settings) {
    std::vector<std::string> files;
    for (int i = 0; i < kRecentFiles; ++i) {
        std::string path = settings.GetSetting("App", KeyOf(i));
        if (!path.empty()) files.push_back(std::move(path));
    }
    return files;
}

void NoteRecentFile(Settings& settings, const std::string& path) {
    std::vector<std::string> files = RecentFiles(settings);
    std::erase(files, path);
    files.insert(files.begin(), path);
    files.resize(std::min<std::size_t>(files.size(), kRecentFiles));
    for (std::size_t i = 0; i < files.size(); ++i)
        settings.SaveSetting("App", KeyOf(static_cast<int>(i)), files[i]);
}

}  // namespace marisonde
