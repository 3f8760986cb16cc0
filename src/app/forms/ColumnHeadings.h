#pragma once

#include <QWidget>
#include <string>

class QLabel;
class QPlainTextEdit;

namespace marisonde {

/// What stands over the columns of a text box: it moves from side to side with them, and takes no room while
/// there is nothing to say.
class ColumnHeadings final : public QWidget {
    Q_OBJECT

  public:
    /// `box` outlives the headings.
    ColumnHeadings(QPlainTextEdit& box, QWidget* parent);

    void SetHeadings(const std::string& lines);

  private:
    void Follow();

    QPlainTextEdit& box_;
    QLabel* label_;
};

}  // namespace marisonde
