#pragma once

#include <map>
#include <string>
#include <string_view>

namespace marisonde::simulator {

/// The small file system of an instrument that keeps its calibration as a file. Names are alike in any case.
class FileStore {
  public:
    /// What is typed from now on goes into the file `name`, replacing it at the end.
    void BeginCapture(std::string_view name);
    [[nodiscard]] bool Capturing() const { return !capturing_.empty(); }
    /// Adds one line. Empty ones are not kept.
    void AddLine(std::string_view line);
    /// Closes the file. The number of its lines.
    int EndCapture();
    /// Drops a capture that runs, as a loss of power does.
    void DropCapture();

    /// Lines in CR LF; nullptr: no such file.
    [[nodiscard]] const std::string* Find(std::string_view name) const;
    void Put(std::string_view name, std::string text);
    /// False: no such file.
    bool Delete(std::string_view name);
    /// False, and nothing changed: no such file, or the new name is taken.
    bool Rename(std::string_view from, std::string_view to);

  private:
    std::map<std::string, std::string> files_;  ///< by upper-case name
    std::string capturing_;                     ///< upper-case name; empty: nothing is captured
    std::string captured_;
    int lines_ = 0;
};

}  // namespace marisonde::simulator
