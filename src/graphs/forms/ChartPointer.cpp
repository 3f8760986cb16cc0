#include "graphs/forms/ChartPointer.h"

#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QRubberBand>
#include <QWheelEvent>
#include <algorithm>
#include <array>
#include <cmath>

#include "graphs/CoordinateText.h"
#include "graphs/forms/ChartView.h"

namespace marisonde {

namespace {

constexpr QPoint kReadoutPlace{10, 10};
constexpr int kHiddenWidth = 100;
constexpr int kLeastDrag = 5;   ///< pixels; less is a hand that was not still
constexpr double kNotch = 120;  ///< what a wheel reports for one notch
constexpr double kNotchZoom = 0.8;
constexpr double kPanShare = 0.1;
constexpr quint64 kMovementGap = 1000;  ///< ms without a step after which a new movement begins

struct PanKey {
    int key;
    int right;  ///< steps to the right and downward on the screen
    int down;
};
constexpr std::array kPanKeys{PanKey{Qt::Key_Left, -1, 0}, PanKey{Qt::Key_Right, 1, 0},
                              PanKey{Qt::Key_Up, 0, -1}, PanKey{Qt::Key_Down, 0, 1}};

}  // namespace

ChartPointer::ChartPointer(LivePlot& plot, const Chart2D& chart, ChartView& view)
    : QObject(&view),
      plot_(plot),
      chart_(chart),
      view_(view),
      text_(new QLabel(&view)),
      band_(new QRubberBand(QRubberBand::Rectangle, &view)) {
    text_->setObjectName("CoordText");
    text_->setAccessibleName("Values under the pointer");
    text_->setTextFormat(Qt::PlainText);
    text_->setMargin(3);
    text_->setAutoFillBackground(true);
    text_->setBackgroundRole(QPalette::ToolTipBase);
    text_->setForegroundRole(QPalette::ToolTipText);
    text_->setAttribute(Qt::WA_TransparentForMouseEvents);
    text_->move(kReadoutPlace);
    HideReadout();
    band_->setObjectName("ZoomRectangle");
    view.installEventFilter(this);
    view.Canvas().installEventFilter(this);
    view.Canvas().setFocusPolicy(Qt::NoFocus);
    view.Canvas().setMouseTracking(true);
    connect(&view, &ChartView::AxesShown, this, &ChartPointer::ShowReadout);
}

bool ChartPointer::eventFilter(QObject* watched, QEvent* event) {
    if (watched == &view_) return event->type() == QEvent::KeyPress && OnKey(*static_cast<QKeyEvent*>(event));
    switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
            return OnPress(*static_cast<QMouseEvent*>(event));
        case QEvent::MouseMove:
            return OnMove(*static_cast<QMouseEvent*>(event));
        case QEvent::MouseButtonRelease:
            return OnRelease(*static_cast<QMouseEvent*>(event));
        case QEvent::Wheel:
            return OnWheel(*static_cast<QWheelEvent*>(event));
        case QEvent::Leave:
            pointer_.reset();
            HideReadout();
            return false;
        default:
            return false;
    }
}

// The window's own rule comes first: what the drag will change is stored before it begins.
bool ChartPointer::OnPress(const QMouseEvent& event) {
    const bool left = event.button() == Qt::LeftButton;
    plot_.ChartMouseDown(left, event.position().x(), event.position().y());
    if (left) pressed_ = event.position().toPoint();
    return false;
}

bool ChartPointer::OnMove(const QMouseEvent& event) {
    pointer_ = event.position().toPoint();
    ShowReadout();
    if (!pressed_) return false;
    const QRect dragged = Dragged();
    const bool far = dragged.width() > kLeastDrag || dragged.height() > kLeastDrag;
    if (far) band_->setGeometry(dragged);
    band_->setVisible(far);
    return true;
}

bool ChartPointer::OnRelease(const QMouseEvent& event) {
    plot_.ChartMouseUp(event.position().x(), event.position().y());
    if (event.button() != Qt::LeftButton || !pressed_) return false;
    pointer_ = event.position().toPoint();
    const QRect dragged = Dragged();
    const bool drawn = band_->isVisible();
    EndDrag();
    if (!drawn) return false;
    const ChartPoint a = PointAt(dragged.topLeft());
    ChartPoint b = PointAt(dragged.bottomRight());
    // A stroke along one axis asks for that axis alone.
    const bool rotated = chart_.Rotated();
    if ((rotated ? dragged.height() : dragged.width()) <= kLeastDrag) b.x = a.x;
    if ((rotated ? dragged.width() : dragged.height()) <= kLeastDrag) {
        b.y = a.y;
        b.y2 = a.y2;
    }
    plot_.ShowRectangle(a, b);
    return true;
}

void ChartPointer::EndDrag() {
    pressed_.reset();
    band_->hide();
}

QRect ChartPointer::Dragged() const {
    const QRect area = view_.PlotArea();
    const auto held = [&](const QPoint& p) {
        return QPoint(std::clamp(p.x(), area.left(), area.right()),
                      std::clamp(p.y(), area.top(), area.bottom()));
    };
    const QPoint a = held(*pressed_);
    const QPoint b = held(*pointer_);
    return {QPoint(std::min(a.x(), b.x()), std::min(a.y(), b.y())),
            QPoint(std::max(a.x(), b.x()), std::max(a.y(), b.y()))};
}

bool ChartPointer::OnWheel(const QWheelEvent& event) {
    const int turned = event.angleDelta().y();
    const QPoint position = event.position().toPoint();
    if (turned == 0 || !view_.PlotArea().contains(position)) return false;
    plot_.ZoomAbout(PointAt(position), std::pow(kNotchZoom, turned / kNotch), BeginsMovement(event));
    return true;
}

bool ChartPointer::OnKey(const QKeyEvent& event) {
    if (event.key() == Qt::Key_Escape && pressed_) {
        EndDrag();
        return true;
    }
    const auto* const pan = std::find_if(kPanKeys.begin(), kPanKeys.end(),
                                         [&](const PanKey& row) { return row.key == event.key(); });
    if (pan == kPanKeys.end() || event.modifiers() & ~Qt::KeypadModifier) return false;
    const double right = kPanShare * pan->right;
    const double up = -kPanShare * pan->down;
    const double x = chart_.Rotated() ? up : right;
    const double y = chart_.Rotated() ? right : up;
    plot_.Pan(chart_.Axes(AxisName::X).Reversed() ? -x : x, y, BeginsMovement(event));
    return true;
}

bool ChartPointer::BeginsMovement(const QInputEvent& event) {
    const bool begins = !lastStep_ || event.timestamp() > *lastStep_ + kMovementGap;
    lastStep_ = event.timestamp();
    return begins;
}

ChartPoint ChartPointer::PointAt(const QPoint& position) const {
    const QPointF first = view_.PixelToData(1, position);
    return {first.x(), first.y(), view_.PixelToData(2, position).y()};
}

void ChartPointer::ShowReadout() {
    const std::string text = pointer_ ? CoordinateText(chart_, PointAt(*pointer_)) : std::string();
    if (text.empty()) {
        HideReadout();
        return;
    }
    text_->setText(QString::fromStdString(text));
    const QSize wanted = text_->sizeHint();
    if (text_->size() != wanted) text_->resize(wanted);
    if (!text_->isVisible()) text_->show();
}

void ChartPointer::HideReadout() {
    text_->hide();
    text_->resize(kHiddenWidth, text_->height());
}

}  // namespace marisonde
