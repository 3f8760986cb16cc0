#include "app/forms/ColumnHeadings.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTextDocument>

#include "app/forms/FormHelpers.h"

namespace marisonde {

ColumnHeadings::ColumnHeadings(QPlainTextEdit& box, QWidget* parent)
    : QWidget(parent), box_(box), label_(new QLabel(this)) {
    label_->setFont(box.font());
    label_->setTextFormat(Qt::PlainText);
    connect(box.horizontalScrollBar(), &QScrollBar::valueChanged, this, &ColumnHeadings::Follow);
    hide();
}

void ColumnHeadings::SetHeadings(const std::string& lines) {
    const QString text = FromText(lines);
    if (label_->text() == text) return;
    label_->setText(text);
    label_->adjustSize();
    setFixedHeight(label_->height());
    setVisible(!text.isEmpty());
    Follow();
}

void ColumnHeadings::Follow() {
    const int left = box_.frameWidth() + static_cast<int>(box_.document()->documentMargin());
    label_->move(left - box_.horizontalScrollBar()->value(), 0);
}

}  // namespace marisonde
