#pragma once

#include <QMainWindow>
#include <QMenu>
#include <QPointer>
#include <vector>

#include "app/DataWindow.h"
#include "app/forms/FormDialogs.h"
#include "platform/Operations.h"

class QKeyEvent;
class QLabel;
class QLineEdit;
class QRadioButton;
class QSplitter;

namespace marisonde {

class ColumnHeadings;
class TerminalBoxView;

/// The terminal of a data window: every key typed in it goes to the instrument, replies and data lines are
/// shown apart. Closing it hides it; it goes on following the instrument.
class TermulatorForm final : public QMainWindow {
    Q_OBJECT

  public:
    /// `main` is the form of `window`: its commands stand in the terminal's menus too. All that is referred
    /// to outlives the form's use.
    TermulatorForm(DataWindow& window, Operations& operations, QWidget& main);

    /// Shows the form, in front of all others.
    void ShowForm();
    /// Shows what is new. Once a tick.
    void Refresh();
    void SavePlace() const;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

  private:
    void MakeBoxes();
    QWidget* MakeUpperPart();
    QWidget* MakeLowerPart();
    void MakeMenus();
    void MakeEditMenu();
    void MakeViewMenu();
    void MakeStatusBar();
    void RestorePlace();
    void SaveText();
    void MoveDivider(int pixels);

    bool HandleKey(const QKeyEvent& event);
    bool HandleShortcut(const QKeyEvent& event);
    void TypeKey(char key, bool repeated);
    [[nodiscard]] TerminalBoxView* SelectedBox() const;
    [[nodiscard]] bool HasSelection() const;
    bool CopySelection();
    void PasteText();
    void ShowTyped();

    DataWindow& window_;
    Operations& operations_;
    QWidget& main_;
    FormDialogs dialogs_;
    TerminalBoxView* response_ = nullptr;
    TerminalBoxView* data_ = nullptr;
    ColumnHeadings* headings_ = nullptr;
    QLineEdit* command_ = nullptr;
    QWidget* options_ = nullptr;
    QRadioButton* ascii_ = nullptr;
    QRadioButton* numerical_ = nullptr;
    QSplitter* divider_ = nullptr;
    QMenu* instrument_ = nullptr;
    QPointer<QMenu> instrumentOfMain_;  ///< has the caption that this one follows
    /// A readout of the main window and its twin here.
    struct Twin {
        const QLabel* main;
        QLabel* own;
    };
    std::vector<Twin> readouts_;
};

}  // namespace marisonde
