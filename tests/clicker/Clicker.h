#pragma once

#include <QObject>
#include <QString>
#include <QUrl>
#include <QWidget>
#include <functional>
#include <random>
#include <vector>

namespace marisonde {

/// Takes pages and folders that would open on the desktop of whoever runs the test.
class LinkSink final : public QObject {
    Q_OBJECT

  public slots:
    void Open(const QUrl&) {}
};

/// Uses whatever is on the screen at random, as a user does who knows nothing and fears nothing: presses
/// buttons, chooses menu items, types, drags over charts, answers dialogs. Only what a user could reach is
/// touched: visible, enabled, and not behind a dialog that takes the input. Equal seeds do equal things.
class Clicker {
  public:
    /// Paths that are chosen in file dialogs; beside them a dialog may be cancelled.
    Clicker(unsigned seed, std::vector<QString> files) : random_(seed), files_(std::move(files)) {}

    /// One action. A text that tells what it was, for the report of a failure.
    QString Act();
    /// A number from 0 to `below` - 1.
    int Pick(int below);

  private:
    using Action = std::function<QString()>;
    void CollectFrom(QWidget& window);
    void CollectMenus(QWidget& window);
    void AnswerFileDialog(QWidget& window);
    QString Type(QWidget& field);
    QString UseChart(QWidget& chart);

    std::mt19937 random_;
    std::vector<QString> files_;
    std::vector<Action> actions_;  ///< what could be done now
};

}  // namespace marisonde
