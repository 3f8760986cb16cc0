#include "app/forms/About.h"

#include <QLabel>

#include "common/Version.h"

namespace marisonde {

QString AboutText() {
    return QString(
               "<h3>Marisonde %1</h3>"
               "<p>Live calibrated graphs of optical instruments in the sea.</p>"
               "<p>Free software under the GNU General Public License, version 3 or later. "
               "It comes without any warranty.</p>"
               "<p>Built with Qt %2, QCustomPlot, QCoro and {fmt}.</p>")
        .arg(QString::fromUtf8(kVersion.data(), kVersion.size()), qVersion());
}

std::unique_ptr<QWidget> MakeSplash() {
    constexpr int kMargin = 24;
    auto splash = std::make_unique<QLabel>(AboutText(), nullptr, Qt::SplashScreen);
    splash->setObjectName("AboutForm");
    splash->setTextFormat(Qt::RichText);
    splash->setWordWrap(true);
    splash->setMargin(kMargin);
    splash->setFrameShape(QFrame::StyledPanel);
    splash->setMinimumWidth(splash->fontMetrics().averageCharWidth() * 50);
    splash->setAttribute(Qt::WA_ShowWithoutActivating);
    return splash;
}

}  // namespace marisonde
