#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "common/InstState.h"
#include "common/OutputFile.h"
#include "common/Question.h"

namespace marisonde {

/// Before files with unsaved data are closed. `model` is the instrument's name, `source` where its data come
/// from.
Question UnsavedDataQuestion(std::string_view model, std::string_view source);

/// The states in which closing the files of a live instrument is asked about.
bool AsksBeforeClosingFiles(InstStateCode state);
/// Before files are closed while their instrument sends data. The second button cancels.
Question ReceivingDataQuestion(std::string_view model);

/// The notice after a failed save or write: what failed and why, where the data are, and what to do about it.
std::string SaveFileErrorText(const std::filesystem::path& name, const std::filesystem::path& temporaryName,
                              const FileError& error);

}  // namespace marisonde
