#include "widgets/shape.h"

#include <QPainter>
#include <QPen>

namespace kovanix {

namespace {
constexpr qreal lineWidth = 3;
constexpr qreal radius = 8;
}  // namespace

Shape::Shape(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
}

void Shape::setBordercolor(const QColor& color) {
    if (m_bordercolor == color)
        return;
    m_bordercolor = color;
    update();
}

void Shape::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(m_bordercolor, lineWidth));
    const qreal inset = lineWidth / 2;
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), radius, radius);
}

}  // namespace kovanix
