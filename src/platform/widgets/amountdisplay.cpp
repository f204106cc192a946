#include "widgets/amountdisplay.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "widgets/face.h"
#include "widgets/fittedtext.h"
#include "widgets/look.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

// At the design size.
constexpr double labelLeft = 10;
constexpr double labelTop = 7;
constexpr int labelPixels = 13;
constexpr double noteTop = 7;
constexpr double noteRight = 8;
constexpr double notePadding = 8;
constexpr int notePixels = 12;
constexpr double usualPadding = 5;  // above a caption

int scaledLetters(int pixels, double scale) {
    return std::max(FittedText::smallestLegible, static_cast<int>(std::lround(pixels * scale)));
}

}  // namespace

AmountDisplay::AmountDisplay(QWidget* parent)
    : vkToggleButton(parent),
      m_labelText(std::make_unique<FittedText>()),
      m_noteText(std::make_unique<FittedText>()) {}

AmountDisplay::~AmountDisplay() = default;

void AmountDisplay::setLabel(const QString& text) {
    if (text == m_label)
        return;
    m_label = text;
    describe();
    update();
}

void AmountDisplay::setOwedNote(const QString& text) {
    m_owedNote = text;
    describe();
    update();
}

void AmountDisplay::setFramed(bool framed) {
    m_framed = framed;
    update();
}

bool AmountDisplay::isOwed() const {
    return !m_owedNote.isEmpty() && caption().startsWith(u'-') &&
           std::ranges::any_of(caption(), [](QChar sign) { return sign >= u'1' && sign <= u'9'; });
}

void AmountDisplay::describe() {
    setAccessibleDescription(isOwed() ? m_owedNote : m_label);
}

void AmountDisplay::captionChanged() {
    describe();
}

QColor AmountDisplay::rim(const QColor& top, const QColor& bottom) const {
    return m_framed ? mixed(top, bottom, 0.5) : vkToggleButton::rim(top, bottom);
}

QFont AmountDisplay::labelFont() const {
    QFont letters = font();
    letters.setPixelSize(scaledLetters(labelPixels, designScale(*this)));
    letters.setWeight(QFont::Medium);
    return letters;
}

/// Digits stand below the air that a line of letters keeps for accents: an amount that fills its room from
/// top to bottom begins below the label all the same where that air is as high as the label.
QMarginsF AmountDisplay::captionMargins() const {
    const double scale = designScale(*this);
    const QFontMetricsF metrics(labelFont());
    const double air = (metrics.ascent() - metrics.capHeight()) / metrics.height();
    const double top = (labelTop * scale + metrics.ascent() - air * height()) / (1 - air);
    return {0, std::max(0.0, top - usualPadding * scale), 0, 0};
}

void AmountDisplay::paintEvent(QPaintEvent* event) {
    vkToggleButton::paintEvent(event);
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    if (!m_label.isEmpty())
        paintLabel(painter);
    if (isOwed())
        paintOwed(painter);
}

void AmountDisplay::paintLabel(QPainter& painter) {
    const double scale = designScale(*this);
    const QFont letters = labelFont();
    const QRectF room(labelLeft * scale, labelTop * scale, width() - 2 * labelLeft * scale,
                      std::ceil(QFontMetricsF(letters).height()) + 2);
    m_labelText->fit(m_label, letters, letters.pixelSize(), room, Qt::AlignLeft | Qt::AlignTop, 1);
    // The total's colours are the user's own: no page tells how dark they are.
    const QColor face = mixed(backcolor1(), backcolor2(), 0.2);
    const Tone tone = blackOrWhite(face) == QColor(Qt::white) ? Tone::dark : Tone::light;
    m_labelText->paint(painter, inkOn(roleColor(ColorRole::mutedInk, tone), face, face));
}

void AmountDisplay::paintOwed(QPainter& painter) {
    const double scale = designScale(*this);
    const QColor red = roleColor(ColorRole::owed);
    QFont letters = font();
    letters.setPixelSize(scaledLetters(notePixels, scale));
    letters.setWeight(QFont::Medium);
    const QFontMetricsF metrics(letters);
    const QSizeF size(metrics.horizontalAdvance(m_owedNote) + 2 * notePadding * scale, metrics.height() + 3);
    const QRectF pill(QPointF(width() - noteRight * scale - size.width(), std::round(noteTop * scale)), size);
    painter.setPen(Qt::NoPen);
    painter.setBrush(red);
    painter.drawRoundedRect(pill, size.height() / 2, size.height() / 2);
    m_noteText->fit(m_owedNote, letters, letters.pixelSize(), pill, Qt::AlignCenter, 1);
    m_noteText->paint(painter, Qt::white);

    constexpr double rimWidth = 2;
    painter.setPen(QPen(red, rimWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), cornerRadius() - 1, cornerRadius() - 1);
}

}  // namespace kovanix
