#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "calibration/CalibrationDataClass.h"
#include "common/Question.h"
#include "files/ConvertFile.h"
#include "optics/PureWaterParams.h"
#include "optics/SigmaParams.h"

namespace marisonde {

/// Raw files to be converted with one calibration.
struct BatchRequest {
    std::vector<std::filesystem::path> files;
    bool decimal = false;           ///< tables of raw numbers (".dec") in place of calibrated files (".dat")
    bool houseCheck = false;        ///< with the housekeeping columns; for raw numbers
    std::filesystem::path calFile;  ///< not needed for raw numbers
    std::filesystem::path folder;   ///< empty: beside each source
};

/// Where the file made of a source goes.
std::filesystem::path DestinationOf(const BatchRequest& request, const std::filesystem::path& source);
/// How many of the files to be written are there already.
int CountExisting(const BatchRequest& request);
/// Asked before files are replaced. The second button cancels.
Question OverwriteQuestion(int existing, int selected);

/// What the user has chosen in the form that processes files.
struct ProcessFilesChoice {
    std::filesystem::path sourceFolder;
    std::filesystem::path datFolder;
    std::filesystem::path calFile;
    bool saveToSource = false;
    bool decimal = false;
    bool houseCheck = false;
    std::vector<std::string> selected;  ///< file names in the source folder
};
/// Names of the raw files in a folder, in alphabetical order whatever the case of their letters; none when it
/// cannot be read. Hidden files are not among them.
std::vector<std::string> RawFilesIn(const std::filesystem::path& folder);
/// Why that cannot be done, for the user; empty when it can.
std::string WhyNotProcess(const ProcessFilesChoice& choice);
BatchRequest RequestOf(const ProcessFilesChoice& choice);
/// Title of the progress of a batch.
std::string_view BatchTitle(bool decimal);

/// Converts the files of a request one by one. The caller decides about the next one: a failed file stops
/// nothing.
class BatchConversion {
  public:
    /// The parameters are those of now for all files, whatever the user changes meanwhile.
    BatchConversion(BatchRequest request, HeaderStamp stamp, SigmaParams sigma, const PureWaterParams& water);

    /// Loads the calibration, if there is one to load. Empty: all is well; otherwise nothing can be
    /// converted.
    std::string Prepare();
    /// What the calibration misses, for the user.
    [[nodiscard]] const std::vector<std::string>& Messages() const { return messages_; }
    [[nodiscard]] const CalibrationDataClass& Calibration() const { return calibration_; }

    /// Begins the conversion of one of the files. Two sources never become one file: nullopt, with the reason
    /// in `error`, when another of them has been written there.
    std::optional<FileConversion> Begin(const std::filesystem::path& source, std::string& error);
    /// To be called when the conversion of a file has been written.
    void NoteWritten(const std::filesystem::path& source) {
        written_.push_back(DestinationOf(request_, source));
    }

  private:
    [[nodiscard]] bool IsWritten(const std::filesystem::path& destination) const;

    BatchRequest request_;
    HeaderStamp stamp_;
    SigmaParams sigma_;
    PureWaterParams water_;
    CalibrationDataClass calibration_;
    std::vector<std::string> messages_;
    std::vector<std::filesystem::path> written_;
};

}  // namespace marisonde
