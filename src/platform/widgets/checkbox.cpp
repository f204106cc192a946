#include "widgets/checkbox.h"

#include <QFontMetrics>
#include <QPainter>

#include "widgets/caption.h"
#include "widgets/face.h"
#include "widgets/look.h"

namespace kovanix {

namespace {

constexpr double boxSize = 26;  // in design pixels
constexpr double touchSize = 44;

}  // namespace

QSize CheckBox::sizeHint() const {
    const double scale = designScale(*this);
    const int text = QFontMetrics(font()).horizontalAdvance(caption(*this));
    return QSizeF(text + (boxSize + 32) * scale, touchSize * scale).toSize();
}

QSize CheckBox::minimumSizeHint() const {
    return QSizeF(2.5 * touchSize, touchSize).toSize() * designScale(*this);
}

void CheckBox::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double scale = designScale(*this);
    const double side = boxSize * scale;
    const QRectF box(8 * scale, (height() - side) / 2, side, side);
    const bool ticked = isChecked();
    const QColor accent = roleColor(ColorRole::selectionBar);
    const QColor empty = roleColor(isDown() ? ColorRole::rowLine : ColorRole::field);
    painter.setPen(QPen(ticked ? accent : roleColor(ColorRole::fieldLine), 2 * scale));
    painter.setBrush(ticked ? accent : empty);
    painter.drawRoundedRect(box, 6 * scale, 6 * scale);
    if (ticked) {
        const QPointF centre = box.center();
        painter.setPen(QPen(Qt::white, 3 * scale, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawPolyline(QPolygonF{centre + QPointF(-7, 0.5) * scale, centre + QPointF(-2, 5.5) * scale,
                                       centre + QPointF(7, -5) * scale});
    }
    const QRectF words = QRectF(rect()).adjusted(box.right() + 10 * scale, 0, -6 * scale, 0);
    painter.setPen(
        palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::WindowText));
    painter.drawText(words, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWordWrap, caption(*this));
    if (hasFocus())
        paintFocusRing(painter, QRectF(rect()), 8 * scale);
}

}  // namespace kovanix
