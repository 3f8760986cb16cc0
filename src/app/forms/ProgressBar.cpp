#include "app/forms/ProgressBar.h"

#include <algorithm>

namespace marisonde {

namespace {

constexpr int kSteps = 1000;

}  // namespace

double ShareDone(const ReadProgress& progress) {
    if (progress.size == 0) return 0;
    return std::min(1.0, static_cast<double>(progress.done) / static_cast<double>(progress.size));
}

ProgressBar::ProgressBar(QWidget* parent, const char* name, const QString& meaning) : QProgressBar(parent) {
    setObjectName(name);
    setAccessibleName(meaning);
    setRange(0, kSteps);
}

void ProgressBar::ShowShare(double share) {
    setValue(static_cast<int>(share * kSteps));
}

}  // namespace marisonde
