#include "widgets/vklabel.h"

#include <QEvent>
#include <QFontMetricsF>
#include <QPainter>
#include <cmath>

#include "widgets/face.h"
#include "widgets/fittedtext.h"

namespace kovanix {

vkLabel::vkLabel(QWidget* parent)
    : QWidget(parent), m_forecolor(0x1B, 0x27, 0x33), m_text(std::make_unique<FittedText>()) {
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
}

vkLabel::~vkLabel() = default;

void vkLabel::setCaption(const QString& text) {
    if (m_caption == text)
        return;
    if (accessibleName().isEmpty() || accessibleName() == m_caption)
        setAccessibleName(text);
    const QSize before = sizeHint();
    m_caption = text;
    // A clock that changes a digit must not lay its screen out anew every second.
    if (sizeHint() != before)
        updateGeometry();
    update();
}

void vkLabel::setForecolor(const QColor& color) {
    if (m_forecolor == color)
        return;
    m_forecolor = color;
    update();
}

void vkLabel::setCaptionAlignment(Qt::Alignment alignment) {
    if (m_captionAlignment == alignment)
        return;
    m_captionAlignment = alignment;
    update();
}

QSize vkLabel::sizeHint() const {
    const QFontMetricsF metrics(font());
    double width = 0;
    const QStringList lines = m_caption.split(QLatin1Char('\n'));
    for (const QString& line : lines)
        width = std::max(width, metrics.horizontalAdvance(line.trimmed()));
    return {static_cast<int>(std::ceil(width)) + 4,
            static_cast<int>(std::ceil(metrics.height() * static_cast<double>(lines.size()))) + 4};
}

QSize vkLabel::minimumSizeHint() const {
    const double height = QFontMetricsF(font()).height();
    return {static_cast<int>(height), static_cast<int>(height * 0.7)};
}

void vkLabel::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        updateGeometry();
    if (event->type() == QEvent::EnabledChange)
        update();
}

void vkLabel::paintEvent(QPaintEvent*) {
    if (m_caption.isEmpty())
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::TextAntialiasing);
    m_text->fit(m_caption, font(), FittedText::pixelSizeOf(font(), logicalDpiY()), QRectF(contentsRect()),
                m_captionAlignment, 1);
    m_text->paint(painter,
                  isEnabled() ? m_forecolor : mutedText(m_forecolor, palette().color(QPalette::Window)));
}

}  // namespace kovanix
