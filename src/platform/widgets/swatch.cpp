#include "widgets/swatch.h"

#include <QMouseEvent>
#include <QPainter>

#include "widgets/face.h"
#include "widgets/look.h"

namespace kovanix {

namespace {
constexpr double designRadius = 8.0;
}  // namespace

Swatch::Swatch(QWidget* parent) : Pressable(parent) {
    setBordercolor(roleColor(ColorRole::fieldLine));
}

void Swatch::paintEvent(QPaintEvent* event) {
    vkFrame::paintEvent(event);
    if (!hasFocus())
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintFocusRing(painter, QRectF(rect()), designRadius * designScale(*this));
}

void Swatch::mousePressEvent(QMouseEvent* event) {
    event->accept();
    Q_EMIT mousedown();
}

}  // namespace kovanix
