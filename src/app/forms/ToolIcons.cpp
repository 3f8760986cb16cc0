#include "app/forms/ToolIcons.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <array>

namespace marisonde {

namespace {

constexpr double kGrid = 16;  ///< the pictures are drawn on a square of so many units
constexpr double kStroke = 1.5;

void DrawOpen(QPainter& painter) {
    painter.drawPolygon(QPolygonF{{1.5, 13}, {1.5, 3}, {6, 3}, {7.5, 5}, {14.5, 5}, {14.5, 13}});
    painter.drawLine(QPointF(1.5, 7.5), QPointF(14.5, 7.5));
}

void DrawSave(QPainter& painter) {
    painter.drawPolygon(QPolygonF{{2, 2}, {11.5, 2}, {14, 4.5}, {14, 14}, {2, 14}});
    painter.drawRect(QRectF(5, 2, 5, 3.5));
    painter.drawRect(QRectF(4.5, 9, 7, 5));
}

void DrawClose(QPainter& painter) {
    painter.drawLine(QPointF(3.5, 3.5), QPointF(12.5, 12.5));
    painter.drawLine(QPointF(12.5, 3.5), QPointF(3.5, 12.5));
}

void DrawConnect(QPainter& painter) {
    for (const double pin : {6.0, 10.0}) painter.drawLine(QPointF(pin, 1.5), QPointF(pin, 5));
    QPainterPath plug(QPointF(3.5, 5));
    plug.lineTo(12.5, 5);
    plug.arcTo(QRectF(3.5, 3, 9, 8.5), 0, -180);
    plug.closeSubpath();
    painter.drawPath(plug);
    painter.drawLine(QPointF(8, 11.5), QPointF(8, 14.5));
}

void DrawTerminal(QPainter& painter) {
    painter.drawRect(QRectF(1.5, 2.5, 13, 11));
    painter.drawPolyline(QPolygonF{{4, 5.5}, {6.5, 8}, {4, 10.5}});
    painter.drawLine(QPointF(8.5, 10.5), QPointF(11.5, 10.5));
}

void DrawStart(QPainter& painter) {
    painter.setBrush(painter.pen().color());
    painter.drawPolygon(QPolygonF{{4, 2.5}, {13, 8}, {4, 13.5}});
}

void DrawStop(QPainter& painter) {
    painter.setBrush(painter.pen().color());
    painter.drawRect(QRectF(3.5, 3.5, 9, 9));
}

void DrawZoomOut(QPainter& painter) {
    painter.drawEllipse(QPointF(6.5, 6.5), 4.7, 4.7);
    painter.drawLine(QPointF(10, 10), QPointF(14, 14));
    painter.drawLine(QPointF(4.4, 6.5), QPointF(8.6, 6.5));
}

void DrawZoomIn(QPainter& painter) {
    DrawZoomOut(painter);
    painter.drawLine(QPointF(6.5, 4.4), QPointF(6.5, 8.6));
}

void DrawFull(QPainter& painter) {
    for (const double turn : {0.0, 90.0, 180.0, 270.0}) {
        painter.save();
        painter.translate(8, 8);
        painter.rotate(turn);
        painter.drawPolyline(QPolygonF{{2.5, -6}, {6, -6}, {6, -2.5}});
        painter.drawLine(QPointF(6, -6), QPointF(2.5, -2.5));
        painter.restore();
    }
}

void DrawPrevious(QPainter& painter) {
    QPainterPath path(QPointF(3, 6));
    path.lineTo(9.5, 6);
    path.arcTo(QRectF(6, 6, 7, 7), 90, -180);
    path.lineTo(5, 13);
    painter.drawPath(path);
    painter.drawPolyline(QPolygonF{{6, 3}, {3, 6}, {6, 9}});
}

void DrawVsTime(QPainter& painter) {
    painter.drawPolyline(QPolygonF{{2.5, 2}, {2.5, 13.5}, {14, 13.5}});
    painter.drawPolyline(QPolygonF{{4.5, 10}, {7, 6.5}, {9.5, 8.5}, {13.5, 3.5}});
}

void DrawVsDepth(QPainter& painter) {
    painter.drawPolyline(QPolygonF{{14, 2.5}, {2.5, 2.5}, {2.5, 14}});
    painter.drawPolyline(QPolygonF{{6, 4.5}, {9.5, 7}, {7.5, 9.5}, {12, 13.5}});
}

/// By the numbers of ToolIcon.
constexpr std::array kPictures{DrawOpen,     DrawSave,   DrawClose,  DrawConnect, DrawTerminal,
                               DrawStart,    DrawStop,   DrawFull,   DrawZoomIn,  DrawZoomOut,
                               DrawPrevious, DrawVsTime, DrawVsDepth};
static_assert(kPictures.size() == static_cast<std::size_t>(ToolIcon::VsDepth) + 1);

class ToolIconEngine final : public QIconEngine {
  public:
    explicit ToolIconEngine(ToolIcon icon) : icon_(icon) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const QColor color = QGuiApplication::palette().color(group, QPalette::ButtonText);
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(QPen(color, kStroke, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter->setBrush(Qt::NoBrush);
        painter->translate(rect.topLeft());
        painter->scale(rect.width() / kGrid, rect.height() / kGrid);
        kPictures.at(static_cast<std::size_t>(icon_))(*painter);
        painter->restore();
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }
    [[nodiscard]] QIconEngine* clone() const override { return new ToolIconEngine(icon_); }

  private:
    ToolIcon icon_;
};

}  // namespace

QIcon MakeToolIcon(ToolIcon icon) {
    return QIcon(new ToolIconEngine(icon));
}

}  // namespace marisonde
