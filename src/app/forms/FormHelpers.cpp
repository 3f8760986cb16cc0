#include "app/forms/FormHelpers.h"

#include <QAction>
#include <QDialog>
#include <QGuiApplication>
#include <QScreen>
#include <QStringDecoder>
#include <QStyle>
#include <QToolBar>
#include <QToolButton>
#include <QWidget>
#include <algorithm>

#include "common/ConversionUtils.h"
#include "common/Numbers.h"

namespace marisonde {

namespace {

int ReadNumber(const Settings& settings, std::string_view section, std::string_view key, int design) {
    const std::string text = settings.GetSetting(section, key);
    return text.empty() ? design : static_cast<int>(ToInt32(SafeVal(text)));
}

/// A stored size of 0 or less is none.
int ReadLength(const Settings& settings, std::string_view section, std::string_view key, int design) {
    const int length = ReadNumber(settings, section, key, design);
    return length > 0 ? length : design;
}

QList<QRect> ScreenAreas() {
    QList<QRect> areas;
    for (const QScreen* screen : QGuiApplication::screens()) areas.push_back(screen->availableGeometry());
    return areas;
}

/// How far apart two areas are, or, below 0, how much they share.
qint64 Distance(const QRect& a, const QRect& b) {
    const QRect shared = a & b;
    if (!shared.isEmpty()) return -static_cast<qint64>(shared.width()) * shared.height();
    const qint64 dx = std::max({a.left() - b.right(), b.left() - a.right(), 0});
    const qint64 dy = std::max({a.top() - b.bottom(), b.top() - a.bottom(), 0});
    return dx + dy;
}

/// Coordinates that a screen may have; what else stands in a settings file would overflow a rectangle.
int Sane(int coordinate) {
    return std::clamp(coordinate, -100000, 100000);
}

}  // namespace

QString FromText(const std::string& text) {
    QStringDecoder utf8(QStringDecoder::Utf8);
    const QString decoded = utf8(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
    return utf8.hasError() ? QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size())) : decoded;
}

void AddToolButton(QToolBar* bar, QAction* action, const char* name) {
    const QString tip = action->toolTip();
    // In the action, because a button takes its tip anew with every change of its action.
    if (const QString key = action->shortcut().toString(QKeySequence::NativeText); !key.isEmpty())
        action->setToolTip(QString("%1 (%2)").arg(tip, key));
    bar->addAction(action);
    auto* button = qobject_cast<QToolButton*>(bar->widgetForAction(action));
    if (button == nullptr) return;
    button->setObjectName(name);
    button->setAccessibleName(tip);
    button->setFocusPolicy(Qt::TabFocus);
}

void OrderTabs(const QList<QWidget*>& order) {
    QWidget* last = nullptr;
    for (QWidget* part : order) {
        QList<QWidget*> widgets = part->findChildren<QWidget*>();
        widgets.prepend(part);
        for (QWidget* widget : widgets) {
            const bool elsewhere = widget->window() != part->window();  // as the menu of a full tool bar
            if (elsewhere || (widget->focusPolicy() & Qt::TabFocus) == 0) continue;
            if (last != nullptr) QWidget::setTabOrder(last, widget);
            last = widget;
        }
    }
}

bool IsSizable(const QWidget& form) {
    return form.minimumSize() != form.maximumSize() &&
           !form.windowFlags().testFlag(Qt::MSWindowsFixedSizeDialogHint);
}

QRect BroughtOntoScreen(QRect wanted, const QList<QRect>& screens, int titleHeight) {
    if (screens.isEmpty()) return wanted;
    const QRect nearest = *std::min_element(
        screens.begin(), screens.end(),
        [&](const QRect& a, const QRect& b) { return Distance(wanted, a) < Distance(wanted, b); });
    const QRect room = nearest.adjusted(0, std::min(titleHeight, nearest.height() / 2), 0, 0);
    wanted.setSize(wanted.size().boundedTo(room.size()));
    wanted.moveLeft(std::clamp(wanted.left(), room.left(), room.right() + 1 - wanted.width()));
    wanted.moveTop(std::clamp(wanted.top(), room.top(), room.bottom() + 1 - wanted.height()));
    return wanted;
}

void PlaceOnScreen(QWidget& form, QRect wanted) {
    form.setGeometry(
        BroughtOntoScreen(wanted, ScreenAreas(), form.style()->pixelMetric(QStyle::PM_TitleBarHeight)));
}

void PlaceClearOfOthers(QWidget& form) {
    constexpr int kGap = 40;  // room for a title bar, whatever the system draws there
    if (form.parentWidget() == nullptr) return;
    QRect place = form.geometry();
    for (const QDialog* other : form.parentWidget()->findChildren<QDialog*>())
        if (other != &form && other->isVisible() && other->geometry().intersects(place))
            place.moveTop(other->geometry().bottom() + kGap);
    if (place != form.geometry()) PlaceOnScreen(form, place);
}

void SaveFormGeometry(Settings& settings, const QWidget& form, std::string_view section) {
    if (form.isMinimized()) return;
    const QRect normal = form.normalGeometry();
    const QRect place = normal.isEmpty() ? form.geometry() : normal;
    const auto write = [&](std::string_view key, int value) {
        settings.SaveSetting(section, key, std::to_string(value));
    };
    write("Top", place.top());
    write("Left", place.left());
    if (!IsSizable(form)) return;
    write("Width", place.width());
    write("Height", place.height());
}

void RestoreFormGeometry(const Settings& settings, QWidget& form, std::string_view section, QRect design) {
    const QPoint corner(Sane(ReadNumber(settings, section, "Left", design.left())),
                        Sane(ReadNumber(settings, section, "Top", design.top())));
    QSize size = design.size();
    if (IsSizable(form))
        size = QSize(Sane(ReadLength(settings, section, "Width", size.width())),
                     Sane(ReadLength(settings, section, "Height", size.height())))
                   .expandedTo(form.minimumSize());
    PlaceOnScreen(form, QRect(corner, size));
}

void SaveFormGeometry(Settings& settings, const QWidget& form) {
    SaveFormGeometry(settings, form, form.objectName().toStdString());
}

void RestoreFormGeometry(const Settings& settings, QWidget& form) {
    const std::string section = form.objectName().toStdString();
    if (settings.GetSetting(section, "Left").empty()) return;
    RestoreFormGeometry(settings, form, section, form.geometry());
}

}  // namespace marisonde
