#include "app/forms/ProgressForm.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace marisonde {

namespace {

constexpr int kBarSteps = 1000;
/// Painting takes time from the conversion.
constexpr Millis kBetweenPaintings{100};

}  // namespace

ProgressForm::ProgressForm(const Clock& clock)
    : clock_(clock), text_(new QLabel(this)), bar_(new QProgressBar(this)) {
    setObjectName("ProgressForm");
    setWindowTitle("Marisonde Processing");
    // A script that converts many files must not take the keyboard from whoever works here meanwhile.
    setAttribute(Qt::WA_ShowWithoutActivating);
    text_->setObjectName("Message");
    text_->setTextFormat(Qt::PlainText);
    text_->setWordWrap(true);
    bar_->setObjectName("ProgressBar");
    bar_->setAccessibleName("Progress of the conversion");
    bar_->setRange(0, kBarSteps);
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
    const double share = static_cast<double>(progress.done) / static_cast<double>(progress.size);
    bar_->setValue(static_cast<int>(share * kBarSteps));
}

void ProgressForm::reject() {
    cancelled_ = true;
}

}  // namespace marisonde
