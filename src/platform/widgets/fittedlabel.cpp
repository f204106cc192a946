#include "widgets/fittedlabel.h"

#include <QFontMetrics>
#include <QPainter>

#include "widgets/fittedtext.h"

namespace kovanix {

namespace {
constexpr int lines = 2;
}  // namespace

FittedLabel::FittedLabel(QWidget* parent) : QLabel(parent), m_fitted(std::make_unique<FittedText>()) {
    setTextFormat(Qt::PlainText);
}

FittedLabel::~FittedLabel() = default;

QString FittedLabel::shown() const {
    return m_fitted->shown();
}

QSize FittedLabel::sizeHint() const {
    const QMargins margins = contentsMargins();
    return {0, lines * fontMetrics().height() + margins.top() + margins.bottom()};
}

QSize FittedLabel::minimumSizeHint() const {
    return sizeHint();
}

void FittedLabel::paintEvent(QPaintEvent*) {
    if (text().isEmpty())
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::TextAntialiasing);
    m_fitted->fit(text(), font(), FittedText::pixelSizeOf(font(), logicalDpiY()), QRectF(contentsRect()),
                  alignment(), lines);
    m_fitted->paint(painter, palette().color(foregroundRole()));
}

}  // namespace kovanix
