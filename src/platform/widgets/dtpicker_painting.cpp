#include <QAbstractButton>
#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

#include "widgets/droppanel.h"
#include "widgets/dtpicker.h"
#include "widgets/face.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

// At the design size.
constexpr int fieldHeight = 48;
constexpr int buttonWidth = 44;
constexpr int smallestTarget = 40;  // pixels, at any
constexpr int iconSide = 22;
constexpr int textMargin = 8;
constexpr double cornerRadius = 3.5;
constexpr int rim = 2;  // pixels

}  // namespace

QRect DTPicker::buttonRect() const {
    const int wide =
        std::max(smallestTarget, static_cast<int>(std::lround(buttonWidth * designScale(*this))));
    return {width() - wide, 0, wide, height()};
}

void DTPicker::layOut() {
    const int margin = static_cast<int>(std::lround(textMargin * designScale(*this)));
    const QRect button = buttonRect();
    m_button->setGeometry(button);
    m_edit->setGeometry(QRect(rim, rim, button.left() - rim, height() - 2 * rim));
    m_edit->setTextMargins(margin, 0, 0, 0);
}

QSize DTPicker::sizeHint() const {
    const int spare = fontMetrics().horizontalAdvance(u'0') * 2;
    return minimumSizeHint() + QSize(spare, 0);
}

QSize DTPicker::minimumSizeHint() const {
    constexpr int editMargins = 2 * (rim + 2);
    const double scale = designScale(*this);
    const QString widest = m_format == Format::date ? u"00.00.0000"_s : u"00:00:00"_s;
    const int text = fontMetrics().horizontalAdvance(widest) + 1;  // the caret
    return {text + editMargins + static_cast<int>(std::lround(textMargin * scale)) + buttonRect().width(),
            std::max(smallestTarget, static_cast<int>(std::lround(fieldHeight * scale)))};
}

void DTPicker::paintButton(QPainter& painter) const {
    const Tone tone = toneOf(*this);
    const double scale = designScale(*this);
    const QRectF button(buttonRect());
    const FaceColors face = faceColors(FaceRole::light, tone);
    const bool pressed = m_button->isDown();
    QColor top = pressed ? face.pressedTop : face.top;
    QColor bottom = pressed ? face.pressedBottom : face.bottom;
    QColor ink = faceColors(FaceRole::navy).bottom;
    if (!isEnabled()) {
        top = roleColor(ColorRole::disabledTop, tone);
        bottom = roleColor(ColorRole::disabledBottom, tone);
        ink = roleColor(ColorRole::disabledInk, tone);
    }
    QLinearGradient shade(button.topLeft(), button.bottomLeft());
    shade.setColorAt(0, top);
    shade.setColorAt(1, bottom);
    QPainterPath inside;
    inside.addRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), cornerRadius * scale, cornerRadius * scale);
    painter.save();
    painter.setClipPath(inside);
    painter.fillRect(button, shade);
    painter.fillRect(QRectF(button.left(), 0, 1, height()), roleColor(ColorRole::edge, tone));
    painter.restore();

    const double side = iconSide * scale;
    const QPixmap shape = m_icon.pixmap(QSizeF(side, side).toSize(), devicePixelRatioF());
    if (shape.isNull())
        return;
    const QSizeF real = shape.deviceIndependentSize();
    painter.drawPixmap(button.center() - QPointF(real.width() / 2, real.height() / 2), inColor(shape, ink));
}

void DTPicker::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const QRectF bounds(rect());
    paintField(painter, bounds, *this, isEnabled(), false, palette().base());
    paintButton(painter);
    // The rim goes around the button, too; the calendar belongs to the field that shows the focus.
    paintField(painter, bounds, *this, true, hasFocus() || m_panel, Qt::NoBrush);
}

}  // namespace kovanix
