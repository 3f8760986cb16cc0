#pragma once

#include <QStyle>
#include <QWidget>

class QLabel;
class QScrollArea;
class QVBoxLayout;

namespace marisonde {

/// Icon and text of a notice or question. As wide and high as the text asks for; past a ceiling the text
/// scrolls.
class MessageBody final : public QWidget {
    Q_OBJECT

  public:
    MessageBody(QStyle::StandardPixmap icon, QWidget* parent);
    void SetText(const QString& text);
    [[nodiscard]] QString Text() const;

  private:
    /// The text's room: wider for long texts, so that they do not become a column.
    [[nodiscard]] QSize RoomFor(const QString& text) const;
    [[nodiscard]] int IconSize() const;

    QLabel* picture_;
    QScrollArea* area_;
    QLabel* message_;
};

/// The usual frame of a message form: the body above a row of buttons. Returns the column, to which the row
/// is added.
QVBoxLayout* LayMessageForm(QWidget* form, MessageBody* body);

}  // namespace marisonde
