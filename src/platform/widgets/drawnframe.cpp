#include "widgets/drawnframe.h"

#include <QEvent>
#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>

#include "widgets/face.h"
#include "widgets/fittedtext.h"

namespace kovanix {
namespace {

constexpr double cornerRadius = 9.0;

}  // namespace

vkFrame::vkFrame(QWidget* parent)
    : QWidget(parent),
      m_backcolor1(0xFB, 0xFB, 0xFB),
      m_backcolor2(0xEC, 0xEF, 0xF3),
      m_bordercolor(0xB4, 0xBE, 0xCA),
      m_forecolor(Qt::white),
      m_titlecolor1(0x21, 0x5A, 0xC8),
      m_titlecolor2(0x4C, 0x86, 0xE8),
      m_title(std::make_unique<FittedText>()) {}

vkFrame::~vkFrame() = default;

void vkFrame::setCaption(const QString& text) {
    if (m_caption == text)
        return;
    if (accessibleName().isEmpty() || accessibleName() == m_caption)
        setAccessibleName(text);
    m_caption = text;
    layOutTitle();
    update();
}

void vkFrame::setColor(QColor& member, const QColor& color) {
    if (member == color)
        return;
    member = color;
    update();
}

void vkFrame::setBackcolor1(const QColor& color) {
    setColor(m_backcolor1, color);
}

void vkFrame::setBackcolor2(const QColor& color) {
    setColor(m_backcolor2, color);
}

void vkFrame::setBordercolor(const QColor& color) {
    setColor(m_bordercolor, color);
}

void vkFrame::setForecolor(const QColor& color) {
    setColor(m_forecolor, color);
}

void vkFrame::setTitlecolor1(const QColor& color) {
    setColor(m_titlecolor1, color);
}

void vkFrame::setTitlecolor2(const QColor& color) {
    setColor(m_titlecolor2, color);
}

int vkFrame::titleHeight() const {
    return m_caption.isEmpty() ? 0 : QFontMetrics(font()).height() * 17 / 10;
}

void vkFrame::layOutTitle() {
    const int height = titleHeight();
    if (height == m_titleMargin)
        return;
    QMargins margins = contentsMargins();
    margins.setTop(margins.top() - m_titleMargin + height);
    m_titleMargin = height;
    setContentsMargins(margins);
}

void vkFrame::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        layOutTitle();
    if (event->type() == QEvent::EnabledChange)
        update();
}

void vkFrame::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF bounds(rect());
    const double radius =
        std::min(cornerRadius * designScale(*this), std::min(bounds.width(), bounds.height()) / 3);
    paintFace(painter, bounds, radius, m_backcolor1, m_backcolor2, m_bordercolor, false);
    if (m_caption.isEmpty())
        return;

    QPainterPath inside;
    inside.addRoundedRect(bounds.adjusted(1, 1, -1, -1), radius - 0.5, radius - 0.5);
    QPainterPath strip;
    const QRectF bar(bounds.left(), bounds.top(), bounds.width(), titleHeight());
    strip.addRect(bar);
    const QColor from = isEnabled() ? m_titlecolor1 : mutedFace(m_titlecolor1);
    const QColor to = isEnabled() ? m_titlecolor2 : mutedFace(m_titlecolor2);
    // From left to right: a caption at the left stands on its first colour whatever the second one is.
    QLinearGradient gradient(bar.topLeft(), bar.topRight());
    gradient.setColorAt(0, from);
    gradient.setColorAt(0.35, mixed(from, to, 0.15));
    gradient.setColorAt(1, to);
    painter.fillPath(inside.intersected(strip), gradient);
    painter.setPen(QPen(m_bordercolor, 1.0));
    painter.drawLine(bar.bottomLeft() + QPointF(1, -0.5), bar.bottomRight() + QPointF(-1, -0.5));

    const double padding = QFontMetricsF(font()).height() * 0.6;
    m_title->fit(m_caption, font(), FittedText::pixelSizeOf(font(), logicalDpiY()),
                 bar.adjusted(padding, 2, -padding, -2), Qt::AlignLeft | Qt::AlignVCenter, 1);
    const QColor ink = isEnabled() ? m_forecolor : mutedText(m_forecolor, from);
    m_title->paint(painter, ink, isEnabled() ? haloFor(ink, from) : QColor());
}

}  // namespace kovanix
