#include "appearance/keyboardfield.h"

#include <QEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <algorithm>

#include "widgets/face.h"
#include "widgets/look.h"

namespace kovanix {

namespace {
// At the design size.
constexpr int labelPixels = 15;
constexpr int smallestLabel = 11;
constexpr int sideMargin = 14;
constexpr int caretRoom = 8;
constexpr double smallestShare = 0.5;  // of the text's full size
constexpr double focusLine = 2;
constexpr double radius = 2;
}  // namespace

KeyboardField::KeyboardField(QWidget* parent) : PasswordField(parent) {
    QPalette colors = palette();
    colors.setColor(QPalette::Text, roleColor(ColorRole::ink));
    setPalette(colors);
    connect(this, &QLineEdit::textChanged, this, &KeyboardField::fitText);
}

void KeyboardField::setLabel(const QString& label) {
    m_label = label;
    setAccessibleDescription(label);
    placeText();
    update();
}

QFont KeyboardField::labelFont() const {
    QFont small = font();
    small.setWeight(QFont::Normal);
    small.setPixelSize(std::max(smallestLabel, static_cast<int>(labelPixels * designScale(*this))));
    return small;
}

/// Label and text stand in the middle of the box as one.
void KeyboardField::placeText() {
    const int side = static_cast<int>(sideMargin * designScale(*this));
    const int above = m_label.isEmpty() ? 0 : QFontMetrics(labelFont()).height();
    const QMargins margins(side, above, side, 0);
    if (textMargins() != margins)
        setTextMargins(margins);
}

void KeyboardField::fitText() {
    if (m_fullPixels <= 0)
        return;
    QFont full = font();
    full.setPixelSize(m_fullPixels);
    const double room = width() - 2 * textMargins().left() - caretRoom * designScale(*this);
    const double wanted = QFontMetricsF(full).horizontalAdvance(displayText());
    const double share = std::clamp(room / std::max(wanted, 1.0), smallestShare, 1.0);
    full.setPixelSize(static_cast<int>(m_fullPixels * share));
    const QScopedValueRollback fitting(m_fitting, true);
    setFont(full);
    placeText();
}

void KeyboardField::resizeEvent(QResizeEvent* event) {
    PasswordField::resizeEvent(event);
    placeText();
    fitText();
}

void KeyboardField::changeEvent(QEvent* event) {
    PasswordField::changeEvent(event);
    if (event->type() != QEvent::FontChange || m_fitting)
        return;
    m_fullPixels = font().pixelSize();
    placeText();
    fitText();
}

void KeyboardField::paintFocusLine(QPainter& painter) const {
    const double scale = designScale(*this);
    const double width = focusLine * scale;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(roleColor(ColorRole::focus), width));
    painter.drawRoundedRect(QRectF(rect()).adjusted(width / 2, width / 2, -width / 2, -width / 2),
                            radius * scale, radius * scale);
}

void KeyboardField::paintEvent(QPaintEvent* event) {
    PasswordField::paintEvent(event);
    QPainter painter(this);
    if (hasFocus())
        paintFocusLine(painter);
    if (m_label.isEmpty())
        return;
    const QFont small = labelFont();
    const int labelHeight = QFontMetrics(small).height();
    // By the text's full size: the label stays where it is when a long text is written smaller.
    QFont full = font();
    full.setPixelSize(std::max(m_fullPixels, 1));
    const int top = std::max(2, (height() - labelHeight - QFontMetrics(full).height()) / 2);
    painter.setFont(small);
    painter.setPen(roleColor(ColorRole::mutedInk));
    const int side = textMargins().left() + static_cast<int>(2 * designScale(*this));
    painter.drawText(QRect(side, top, width() - 2 * side, labelHeight), Qt::AlignLeft | Qt::AlignVCenter,
                     m_label);
}

}  // namespace kovanix
