#pragma once

#include <QObject>

class QLabel;
class QStatusBar;

namespace marisonde {

class DataWindow;

/// The status bar of a data window: state, readouts, counts of lines, and where the data are recorded.
class StatusPanels final : public QObject {
    Q_OBJECT

  public:
    explicit StatusPanels(QStatusBar* bar);
    /// Shows what the window is at; costs little while nothing changes.
    void Show(const DataWindow& window);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void ShowState(const DataWindow& window);
    void ShowReadouts(const DataWindow& window);
    void ShowCounts(const DataWindow& window);
    void ShowFiles(const DataWindow& window);
    void FitFiles();

    QStatusBar* bar_;
    QLabel* state_;
    QLabel* elapsed_;
    QLabel* depth_;
    QLabel* temperature_;
    QLabel* voltage_;
    QLabel* counts_;
    QLabel* files_;
    QString folder_;       ///< of the data files; empty without files
    QString whatOfFiles_;  ///< what the window does with the data, before the folder's name
};

}  // namespace marisonde
