#pragma once

#include <QObject>

class QMenuBar;

namespace marisonde {

class MainForm;

/// The help menu of a data window: the pages that come with the program, and what it is.
class HelpCommands final : public QObject {
    Q_OBJECT

  public:
    explicit HelpCommands(MainForm& form);

    void MakeMenu(QMenuBar* bar);
    void ShowAbout();

  private:
    MainForm& form_;
};

}  // namespace marisonde
