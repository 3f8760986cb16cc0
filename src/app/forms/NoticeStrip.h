#pragma once

#include <QFrame>
#include <deque>
#include <functional>
#include <vector>

class QHBoxLayout;
class QLabel;
class QScrollArea;

namespace marisonde {

/// One way to answer a notice.
struct NoticeButton {
    QString caption;
    const char* name = "OKButton";
    std::function<void()> pressed;  ///< may be empty
};

/// Notices and questions in the window itself: one at a time, in their order, and nothing waits for the user.
class NoticeStrip final : public QFrame {
    Q_OBJECT

  public:
    explicit NoticeStrip(QWidget* parent);
    void Add(const QString& text, std::vector<NoticeButton> buttons);
    /// A notice that needs no answer but that it was read; `read` may be empty.
    void AddNotice(const QString& text, std::function<void()> read = {});
    [[nodiscard]] int Waiting() const { return static_cast<int>(notices_.size()); }

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    struct Notice {
        QString text;
        std::vector<NoticeButton> buttons;
    };
    void ShowFirst();
    void Answer(std::size_t button);
    void FitHeight();

    std::deque<Notice> notices_;
    QLabel* text_;
    QScrollArea* area_;
    QLabel* more_;
    QHBoxLayout* row_;
    std::vector<QWidget*> shownButtons_;
};

}  // namespace marisonde
