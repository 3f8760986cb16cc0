#include "app/forms/ConvertOnScreen.h"

#include <QApplication>
#include <utility>

#include "app/Slices.h"
#include "app/forms/FormHelpers.h"
#include "platform/SystemClock.h"

namespace marisonde {

ConvertOnScreen::ConvertOnScreen(const Clock& clock, const Console& console)
    : clock_(clock), console_(console), form_(clock) {
    connect(&turn_, &QTimer::timeout, this, &ConvertOnScreen::RunOnce);
}

void ConvertOnScreen::Start(const PairToConvert& pair, const ConvertSettings& settings,
                            std::function<void(int)> ended) {
    ended_ = std::move(ended);
    form_.SetText(FromText(pair.data.string() + "; " + pair.calibration.string()));
    form_.show();
    conversion_ = BeginPair(pair, settings, console_);
    if (conversion_)
        turn_.start(0);
    else
        End(kConversionFailed);
}

void ConvertOnScreen::RunOnce() {
    if (form_.Cancelled() || console_.interrupted()) conversion_->Cancel();
    if (RunSlice(clock_, [this] { return conversion_->Run(kLinesPerProgress); })) {
        form_.ShowProgress(conversion_->Progress());
        return;
    }
    End(EndPair(conversion_->Result(), console_));
}

void ConvertOnScreen::End(int status) {
    turn_.stop();
    form_.hide();
    ended_(status);
}

int RunConvertOnScreen(const std::string& files) {
    const ConvertSettings settings = UsersConvertSettings();
    const std::optional<PairToConvert> pair = PairFrom(files, settings);
    if (!pair) return kConversionFailed;
    const Console console = TerminalAtHand();
    const SystemClock clock;
    ConvertOnScreen conversion(clock, console);
    std::optional<int> status;
    conversion.Start(*pair, settings, [&status](int end) {
        status = end;
        QApplication::quit();
    });
    if (!status) QApplication::exec();
    return status.value_or(kConversionFailed);
}

}  // namespace marisonde
