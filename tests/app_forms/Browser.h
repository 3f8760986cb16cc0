#pragma once

#include <QDesktopServices>
#include <QList>
#include <QObject>
#include <QUrl>

namespace marisonde {

/// Takes what would open in the system's browser of pages and folders.
class Browser final : public QObject {
    Q_OBJECT

  public:
    Browser() { QDesktopServices::setUrlHandler("file", this, "Open"); }
    ~Browser() override { QDesktopServices::unsetUrlHandler("file"); }
    QList<QUrl> shown;

  public slots:
    void Open(const QUrl& url) { shown.push_back(url); }
};

}  // namespace marisonde
