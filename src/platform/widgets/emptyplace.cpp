#include "widgets/emptyplace.h"

#include <QPainter>

#include "widgets/face.h"
#include "widgets/fittedtext.h"
#include "widgets/pictures.h"

namespace kovanix {

namespace {
// At the design size.
constexpr int pictureSide = 72;
constexpr int textPixels = 16;
constexpr int gap = 16;
}  // namespace

void EmptyPlace::setPicture(const QString& path) {
    m_picture = path;
    update();
}

void EmptyPlace::setText(const QString& text) {
    m_text = text;
    setAccessibleDescription(text);
    update();
}

void EmptyPlace::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const double scale = designScale(*this);
    const QColor ink = roleColor(ColorRole::mutedInk, toneOf(*this));
    const double side = pictureSide * scale;
    const double lines = 2 * textPixels * scale * 1.5;
    const double top = (height() - side - gap * scale - lines) / 2;
    painter.drawPixmap(
        QPointF((width() - side) / 2, top),
        inColor(sharedIcon(m_picture).pixmap(QSizeF(side, side).toSize(), devicePixelRatioF()), ink));
    QFont plain = font();
    plain.setWeight(QFont::Normal);
    FittedText line;
    const double margin = gap * scale;
    line.fit(m_text, plain, std::max(11, static_cast<int>(textPixels * scale)),
             QRectF(margin, top + side + gap * scale, width() - 2 * margin, lines),
             Qt::AlignHCenter | Qt::AlignTop, 2);
    line.paint(painter, ink);
}

}  // namespace kovanix
