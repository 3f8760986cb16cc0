#pragma once

#include <QCoroTask>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/Dialogs.h"
#include "common/Settings.h"

namespace marisonde {

/// What is being saved: it decides on the types that the save dialog offers.
enum class SaveSource { RawData = 0, LiveData = 1, Calibration = 2, Graphics = 3 };

/// Which data files of a window are there to be saved, and after the dialog which are to be written.
struct DataFilesToSave {
    bool raw = false;
    bool dat = false;
};

/// The user's answer to a save dialog. An empty path: cancelled.
struct SaveFileAnswer {
    std::string path;       ///< with an extension
    int filter = 0;         ///< index into SaveFilters
    DataFilesToSave files;  ///< for data of a window
};

/// The types that a save dialog offers for a source; none for a source that is not known.
std::span<const FileFilter> SaveFilters(SaveSource source);
/// The types of the dialogs that open a calibration, a data file, or any file the program reads.
std::span<const FileFilter> CalFilters();
std::span<const FileFilter> DataFilters();
std::span<const FileFilter> AllFilters();
/// The types of the dialogs that open a table of the optical models.
std::span<const FileFilter> TableFilters();

/// The path, with the extension of the filter when it has none.
std::string WithExtension(const std::string& path, const FileFilter& filter);
/// Before files that exist are written over; one or two paths.
Question ReplaceQuestion(const std::vector<std::string>& existing);
Question FindFileQuestion(std::string_view name);

/// Asks where to save, and again while the user does not want to replace what exists there. `there` tells
/// which data files the window has; the types of data sources narrow them. The last choice of type is kept in
/// `settings`.
QCoro::Task<SaveFileAnswer> SaveFileDialog(Operation& operation, Dialogs& dialogs, Settings& settings,
                                           SaveSource source, std::string proposed,
                                           DataFilesToSave there = {});
/// A calibration file below `folder`; empty when cancelled.
QCoro::Task<std::string> OpenCalDialog(Operation& operation, Dialogs& dialogs, std::string folder);
/// A raw or calibrated data file below `folder`; empty when cancelled. What it holds is the caller's
/// question.
QCoro::Task<std::string> OpenDataDialog(Operation& operation, Dialogs& dialogs, std::string folder);
/// Helps to find a file that is not where it should be. Empty: the user does not.
QCoro::Task<std::string> FindFileDialog(Operation& operation, Dialogs& dialogs, std::string name);

}  // namespace marisonde
