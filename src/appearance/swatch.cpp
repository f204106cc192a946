#include "appearance/swatch.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "widgets/face.h"

namespace kovanix {

namespace {
constexpr double designRadius = 8.0;
}  // namespace

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

void Swatch::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    if (key != Qt::Key_Return && key != Qt::Key_Enter && key != Qt::Key_Space) {
        vkFrame::keyPressEvent(event);
        return;
    }
    event->accept();
    if (!event->isAutoRepeat())
        Q_EMIT mousedown();
}

}  // namespace kovanix
