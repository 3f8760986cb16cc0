#pragma once

#include <QTimer>
#include <functional>
#include <optional>

#include "app/ConvertCommand.h"
#include "app/forms/ProgressForm.h"

namespace marisonde {

/// Converts a pair of files behind a form that tells how far it is, in slices between which the form lives.
class ConvertOnScreen final : public QObject {
    Q_OBJECT

  public:
    /// `clock` and `console` outlive the object.
    ConvertOnScreen(const Clock& clock, const Console& console);

    /// Begins. `ended` is called with the exit status, at once when there is nothing to convert.
    void Start(const PairToConvert& pair, const ConvertSettings& settings, std::function<void(int)> ended);
    [[nodiscard]] ProgressForm& Form() { return form_; }

  private:
    void RunOnce();
    void End(int status);

    const Clock& clock_;
    const Console& console_;
    ProgressForm form_;
    QTimer turn_;
    std::optional<FileConversion> conversion_;
    std::function<void(int)> ended_;
};

/// "DATAFILE;CALFILE" with the settings of the user, on the screen. The exit status. Needs a QApplication.
int RunConvertOnScreen(const std::string& files);

}  // namespace marisonde
