#pragma once

#include <QSettings>
#include <QString>
#include <QTimer>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "common/Settings.h"

namespace marisonde {

/// The settings of the user in one INI file, kept between runs. Sections and keys may hold any bytes: those
/// outside letters, digits, "." and "-" stand in the file as "_" and two hexadecimal digits. Values come back
/// byte for byte. A file that cannot be written costs nothing until the program ends: values stay in memory.
/// A damaged file gives what can be read of it.
class IniSettings final : public Settings {
  public:
    /// Gets, once for each object, why the file cannot be written.
    using OnProblem = std::function<void(const std::string& reason)>;

    /// The file, and folders above it, are made when something is saved.
    explicit IniSettings(const QString& path, OnProblem onProblem = nullptr);
    ~IniSettings() override;

    [[nodiscard]] std::string GetSetting(std::string_view section, std::string_view key,
                                         std::string_view missing = "") const override;
    /// Reaches the disk when the event loop next turns, at Save, or with the end of the object.
    void SaveSetting(std::string_view section, std::string_view key, std::string_view value) override;
    /// Writes what is new to the disk; false when that failed.
    bool Save();
    [[nodiscard]] QString Path() const { return settings_->fileName(); }

  private:
    void SaveSoon();
    [[nodiscard]] std::string WriteProblem() const;

    std::unique_ptr<QSettings> settings_;
    OnProblem onProblem_;
    bool problemReported_ = false;
    QTimer saveTimer_;
};

}  // namespace marisonde
