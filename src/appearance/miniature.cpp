#include "appearance/miniature.h"

#include <QPainter>
#include <QPainterPath>

#include "widgets/face.h"
#include "widgets/look.h"

namespace kovanix {

namespace {

constexpr QSize naturalSize(320, 200);
constexpr double margin = 6;  // around the picture, in design pixels: the focus ring's and the mark's room
constexpr double markRadius = 13;  // likewise

}  // namespace

Miniature::Miniature(QWidget* parent) : Pressable(parent) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
}

void Miniature::setLook(Palette look) {
    if (m_look == look)
        return;
    m_look = look;
    m_picture = {};
    update();
}

void Miniature::setChosen(bool chosen) {
    if (m_chosen == chosen)
        return;
    m_chosen = chosen;
    update();
}

QSize Miniature::sizeHint() const {
    return (QSizeF(naturalSize) * designScale(*this)).toSize();
}

QSize Miniature::minimumSizeHint() const {
    return sizeHint() / 2;
}

void Miniature::resizeEvent(QResizeEvent* event) {
    QAbstractButton::resizeEvent(event);
    m_picture = {};
}

void Miniature::changeEvent(QEvent* event) {
    QAbstractButton::changeEvent(event);
    // System colours are the toolkit palette's.
    if (event->type() == QEvent::PaletteChange)
        m_picture = {};
}

/// As wide as screens are: between 4:3 and 16:9.
QRectF Miniature::pictureRect() const {
    const double edge = margin * designScale(*this);
    const QRectF room = QRectF(rect()).adjusted(edge, edge, -edge, -edge);
    QRectF picture = room;
    picture.setWidth(std::min(room.width(), room.height() * 16 / 9));
    picture.setHeight(std::min(room.height(), room.width() * 3 / 4));
    picture.moveCenter(room.center());
    return picture;
}

void Miniature::paintEvent(QPaintEvent*) {
    const double scale = designScale(*this);
    const double ratio = devicePixelRatioF();
    const double radius = 6 * scale;
    const QRectF picture = pictureRect();
    if (m_picture.isNull() || m_picture.devicePixelRatio() != ratio) {
        m_picture = QPixmap((picture.size() * ratio).toSize());
        m_picture.setDevicePixelRatio(ratio);
        m_picture.fill(Qt::transparent);
        QPainter painter(&m_picture);
        painter.setRenderHint(QPainter::Antialiasing);
        QPainterPath outline;
        outline.addRoundedRect(QRectF(QPointF(0, 0), picture.size()), radius, radius);
        painter.setClipPath(outline);
        paintMiniature(painter, QRectF(QPointF(0, 0), picture.size()), m_look);
    }
    const QColor accent = roleColor(ColorRole::selectionBar);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.drawPixmap(picture.topLeft(), m_picture);
    if (isDown())
        painter.setBrush(QColor(0, 0, 0, 60));
    else if (underMouse())
        painter.setBrush(QColor(255, 255, 255, 50));
    else
        painter.setBrush(Qt::NoBrush);
    painter.setPen(m_chosen ? QPen(accent, 2 * scale) : QPen(roleColor(ColorRole::edge), 1));
    painter.drawRoundedRect(picture.adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    if (m_chosen) {
        const QPointF centre = picture.topLeft() + QPointF(1, 1) * (markRadius - margin) * scale;
        painter.setPen(QPen(Qt::white, 2 * scale));
        painter.setBrush(accent);
        painter.drawEllipse(centre, (markRadius - 1) * scale, (markRadius - 1) * scale);
        const QPolygonF tick{centre + QPointF(-5, 0.5) * scale, centre + QPointF(-1.5, 4) * scale,
                             centre + QPointF(5, -3.5) * scale};
        painter.setPen(QPen(Qt::white, 2.5 * scale, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawPolyline(tick);
    }
    if (hasFocus()) {
        const double edge = margin * scale;
        paintFocusRing(painter, picture.adjusted(-edge, -edge, edge, edge), radius + edge);
    }
}

}  // namespace kovanix
