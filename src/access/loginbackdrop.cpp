#include "access/loginbackdrop.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPolygonF>
#include <cmath>
#include <numbers>

#include "widgets/look.h"

namespace kovanix {

namespace {

// At the design size.
constexpr double cellRadius = 92;
constexpr double cellShare = 0.93;  // of its place; the rest is the gap to the next one
constexpr double rimWidth = 3;

constexpr QRgb rimColor = 0x5A7BA8;
constexpr double rimStrength = 0.22;
constexpr double honeyRimStrength = 0.45;
constexpr double honeyStrength = 0.10;

QColor faint(QColor color, double strength) {
    color.setAlphaF(static_cast<float>(strength));
    return color;
}

/// Few, none of them behind the card, the same ones at every start.
bool hasHoney(int row, int column) {
    return (row == 1 && column % 8 == 0) || (row == 4 && column % 8 == 2);
}

/// A cell that stands on a corner.
QPolygonF cellAt(const QPointF& centre, double radius) {
    QPolygonF cell;
    for (int corner = 0; corner < 6; ++corner) {
        const double angle = std::numbers::pi * (2 * corner + 1) / 6;
        cell << centre + QPointF(std::cos(angle), std::sin(angle)) * radius;
    }
    return cell;
}

}  // namespace

QPixmap loginBackdrop(QSize size, double scale, qreal devicePixelRatio) {
    QPixmap picture((QSizeF(size) * devicePixelRatio).toSize());
    picture.setDevicePixelRatio(devicePixelRatio);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient ground(QPointF(0, 0), QPointF(size.width() / 2.0, size.height()));
    ground.setColorAt(0, roleColor(ColorRole::backdropTop));
    ground.setColorAt(1, roleColor(ColorRole::backdropBottom));
    painter.fillRect(QRect(QPoint(0, 0), size), ground);
    const double radius = cellRadius * scale;
    const double across = radius * std::numbers::sqrt3;
    const double down = radius * 1.5;
    for (int row = 0; (row - 1) * down < size.height(); ++row) {
        for (int column = 0; (column - 1) * across < size.width(); ++column) {
            const QPointF centre((column + (row % 2 ? 0.5 : 0.0)) * across, row * down);
            const bool honey = hasHoney(row, column);
            const QColor gold = roleColor(ColorRole::honey);
            painter.setPen(
                QPen(honey ? faint(gold, honeyRimStrength) : faint(QColor::fromRgb(rimColor), rimStrength),
                     rimWidth * scale));
            painter.setBrush(honey ? QBrush(faint(gold, honeyStrength)) : QBrush(Qt::NoBrush));
            painter.drawPolygon(cellAt(centre, radius * cellShare));
        }
    }
    return picture;
}

}  // namespace kovanix
