#include "simulator/FileStore.h"

#include <utility>

#include "simulator/FieldText.h"

namespace marisonde::simulator {

void FileStore::BeginCapture(std::string_view name) {
    capturing_ = UpperCase(name);
    captured_.clear();
    lines_ = 0;
}

void FileStore::AddLine(std::string_view line) {
    if (Trimmed(line).empty()) return;
    captured_.append(line).append("\r\n");
    ++lines_;
}

int FileStore::EndCapture() {
    files_[std::exchange(capturing_, {})] = std::exchange(captured_, {});
    return lines_;
}

void FileStore::DropCapture() {
    capturing_.clear();
}

const std::string* FileStore::Find(std::string_view name) const {
    const auto found = files_.find(UpperCase(name));
    return found == files_.end() ? nullptr : &found->second;
}

void FileStore::Put(std::string_view name, std::string text) {
    files_[UpperCase(name)] = std::move(text);
}

bool FileStore::Delete(std::string_view name) {
    return files_.erase(UpperCase(name)) > 0;
}

bool FileStore::Rename(std::string_view from, std::string_view to) {
    const auto found = files_.find(UpperCase(from));
    if (found == files_.end() || files_.contains(UpperCase(to))) return false;
    Put(to, std::exchange(found->second, {}));
    files_.erase(found);
    return true;
}

}  // namespace marisonde::simulator
