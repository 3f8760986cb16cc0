#include "app/forms/GraphIcons.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>

namespace marisonde {

namespace {

constexpr double kGrid = 16;  ///< the pictures are drawn on a square of so many units
constexpr double kStroke = 1.5;

void DrawLens(QPainter& painter) {
    painter.drawEllipse(QPointF(6.5, 6.5), 4.7, 4.7);
    painter.drawLine(QPointF(10, 10), QPointF(14, 14));
    painter.drawLine(QPointF(4.4, 6.5), QPointF(8.6, 6.5));
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

void DrawStart(QPainter& painter) {
    painter.setBrush(painter.pen().color());
    painter.drawPolygon(QPolygonF{{4, 2.5}, {13, 8}, {4, 13.5}});
}

void DrawStop(QPainter& painter) {
    painter.setBrush(painter.pen().color());
    painter.drawRect(QRectF(3.5, 3.5, 9, 9));
}

void Draw(GraphIcon icon, QPainter& painter) {
    switch (icon) {
        case GraphIcon::Full:
            return DrawFull(painter);
        case GraphIcon::ZoomIn:
            painter.drawLine(QPointF(6.5, 4.4), QPointF(6.5, 8.6));
            return DrawLens(painter);
        case GraphIcon::ZoomOut:
            return DrawLens(painter);
        case GraphIcon::Previous:
            return DrawPrevious(painter);
        case GraphIcon::VsTime:
            return DrawVsTime(painter);
        case GraphIcon::VsDepth:
            return DrawVsDepth(painter);
        case GraphIcon::Start:
            return DrawStart(painter);
        case GraphIcon::Stop:
            return DrawStop(painter);
    }
}

class GraphIconEngine final : public QIconEngine {
  public:
    explicit GraphIconEngine(GraphIcon icon) : icon_(icon) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const QColor color = QGuiApplication::palette().color(group, QPalette::ButtonText);
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(QPen(color, kStroke, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter->setBrush(Qt::NoBrush);
        painter->translate(rect.topLeft());
        painter->scale(rect.width() / kGrid, rect.height() / kGrid);
        Draw(icon_, *painter);
        painter->restore();
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }
    [[nodiscard]] QIconEngine* clone() const override { return new GraphIconEngine(icon_); }

  private:
    GraphIcon icon_;
};

}  // namespace

QIcon MakeGraphIcon(GraphIcon icon) {
    return QIcon(new GraphIconEngine(icon));
}

}  // namespace marisonde
