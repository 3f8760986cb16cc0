#include "app/forms/ProgressForm.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/forms/ProgressBar.h"

namespace marisonde {

ProgressForm::ProgressForm(const Clock& clock)
    : clock_(clock),
      text_(new QLabel(this)),
      bar_(new ProgressBar(this, "ProgressBar", "Progress of the conversion")) {
    setObjectName("ProgressForm");
    setWindowTitle("Marisonde Processing");
    // A script that converts many files must not take the keyboard from whoever works here meanwhile.
    setAttribute(Qt::WA_ShowWithoutActivating);
    text_->setObjectName("Message");
    text_->setTextFormat(Qt::PlainText);
    text_->setWordWrap(true);
    bar_->setMinimumWidth(bar_->fontMetrics().averageCharWidth() * 60);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Cancel)->setObjectName("CancelButton");
    connect(buttons, &QDialogButtonBox::rejected, this, &ProgressForm::reject);
    auto* all = new QVBoxLayout(this);
    for (QWidget* widget : std::initializer_list<QWidget*>{text_, bar_, buttons}) all->addWidget(widget);
}

void ProgressForm::SetText(const QString& text) {
    text_->setText(text);
}

void ProgressForm::ShowProgress(const ReadProgress& progress) {
    const Millis now = clock_.Steady();
    if (now < nextShown_ || progress.size == 0) return;
    nextShown_ = now + kBetweenPaintings;
    bar_->ShowShare(ShareDone(progress));
}

void ProgressForm::reject() {
    cancelled_ = true;
}

}  // namespace marisonde
