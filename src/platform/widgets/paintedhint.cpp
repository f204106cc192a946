#include "widgets/paintedhint.h"

#include <QPainter>

#include "widgets/face.h"
#include "widgets/fittedtext.h"
#include "widgets/pictures.h"

namespace kovanix {

namespace {
// At the design size.
constexpr int iconSide = 26;
constexpr int textPixels = 15;
constexpr int gap = 10;
}  // namespace

PaintedHint::PaintedHint(const QString& iconPath, const QString& text, Qt::Alignment alignment)
    : m_icon(sharedIcon(iconPath)), m_text(text), m_alignment(alignment) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    setAccessibleDescription(text);
}

QSize PaintedHint::sizeHint() const {
    return QSize(8 * iconSide, iconSide) * designScale(*this);
}

void PaintedHint::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const double scale = designScale(*this);
    const double side = iconSide * scale;
    const QColor ink = roleColor(ColorRole::mutedInk, toneOf(*this));
    double left = 0;
    if (!m_icon.isNull()) {
        painter.drawPixmap(QPointF(0, (height() - side) / 2),
                           inColor(m_icon.pixmap(QSizeF(side, side).toSize(), devicePixelRatioF()), ink));
        left = side + gap * scale;
    }
    QFont plain = font();
    plain.setWeight(QFont::Normal);
    FittedText line;
    line.fit(m_text, plain, std::max(11, static_cast<int>(textPixels * scale)),
             QRectF(rect()).adjusted(left, 0, 0, 0), m_alignment | Qt::AlignVCenter, 2);
    line.paint(painter, ink);
}

}  // namespace kovanix
