#include "widgets/fittedtext.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPen>
#include <algorithm>
#include <array>
#include <cmath>

#include "widgets/face.h"

namespace kovanix {

using namespace Qt::StringLiterals;
namespace {

constexpr int smallestFigures = 1;
// A third line is taken only before glyphs get smaller than this share of their size.
constexpr double comfortableShare = 0.6;
// A text that would lose more than this by breaking between words alone is broken within them.
constexpr double leastByWords = 0.6;

/// An amount or a barcode that lost a digit would be another one: it shrinks as far as it has to.
bool isFigures(const QString& text) {
    return std::ranges::none_of(text, [](QChar sign) { return sign.isLetter(); });
}

/// A box too low for one line of a size can't be helped by an ellipsis: the next smaller size that it has
/// room for.
int lowered(int pixels, const QFont& font, double height) {
    QFont smaller = font;
    for (; pixels > 1; --pixels) {
        smaller.setPixelSize(pixels);
        if (QFontMetricsF(smaller).height() <= height)
            break;
    }
    return pixels;
}

}  // namespace

int FittedText::pixelSizeOf(const QFont& font, int dotsPerInch) {
    if (font.pixelSize() > 0)
        return font.pixelSize();
    return std::max(1, static_cast<int>(std::lround(font.pointSizeF() * dotsPerInch / 72.0)));
}

void FittedText::fit(const QString& text, const QFont& font, int pixelSize, const QRectF& box,
                     Qt::Alignment alignment, int maxLines, int smallestWords) {
    if (m_layout && text == m_text && pixelSize == m_wantedSize && box == m_box && alignment == m_alignment &&
        maxLines == m_maxLines && smallestWords == m_smallestWords && font == m_font)
        return;
    m_text = text;
    m_font = font;
    m_wantedSize = pixelSize;
    m_box = box;
    m_alignment = alignment;
    m_maxLines = maxLines;
    m_smallestWords = smallestWords;
    m_outline = {};

    QString shown = text.trimmed();
    shown.replace(u"\r\n"_s, u"\n"_s).replace(QLatin1Char('\r'), QLatin1Char('\n'));
    // Control characters have no glyph but a box.
    shown.removeIf([](QChar sign) { return sign.category() == QChar::Other_Control && sign != u'\n'; });
    const int ownLines = static_cast<int>(shown.count(QLatin1Char('\n')));
    shown.replace(QLatin1Char('\n'), QChar(QChar::LineSeparator));
    m_layout = std::make_unique<QTextLayout>(shown);
    m_layout->setCacheEnabled(true);

    const int lines = std::max(1, maxLines) + ownLines;
    // The usual case first, by itself: every size that is tried costs a font, and most captions fit as they
    // are.
    if (layOut(pixelSize, std::min(lines, 2 + ownLines), box.width(), QTextOption::WordWrap)) {
        balance();
        place();
        return;
    }
    const int floor = isFigures(shown) ? std::min(smallestFigures, pixelSize)
                                       : lowered(std::min(smallestWords, pixelSize), font, box.height());
    const int comfortable = std::max(floor, static_cast<int>(std::ceil(pixelSize * comfortableShare)));
    if (lines > 2 + ownLines && layOut(comfortable, 2 + ownLines, box.width(), QTextOption::WordWrap))
        search(comfortable, pixelSize, 2 + ownLines);
    else if (layOut(floor, lines, box.width(), QTextOption::WordWrap))
        search(floor, pixelSize, lines);
    else if (!layOut(floor, lines, box.width(), QTextOption::WrapAnywhere))
        elide(floor, lines);
    balance();
    place();
}

double FittedText::wantedContrast() const {
    const bool large = m_fittedSize >= (m_font.weight() >= QFont::DemiBold ? largeBoldGlyphs : largeGlyphs);
    return large ? legibleLarge : legible;
}

bool FittedText::layOut(int pixelSize, int maxLines, double width, QTextOption::WrapMode wrap) {
    QFont font = m_font;
    font.setPixelSize(pixelSize);
    m_layout->setFont(font);
    m_layout->setTextOption(QTextOption(Qt::AlignLeft));
    QTextOption option = m_layout->textOption();
    option.setWrapMode(wrap);
    m_layout->setTextOption(option);
    m_fittedSize = pixelSize;

    bool fits = true;
    double height = 0;
    int count = 0;
    m_layout->beginLayout();
    for (QTextLine line = m_layout->createLine(); line.isValid(); line = m_layout->createLine()) {
        line.setLineWidth(std::max(1.0, width));
        height += line.height();
        if (++count > maxLines || line.naturalTextWidth() > width || height > m_box.height()) {
            fits = false;
            break;
        }
    }
    m_layout->endLayout();
    return fits;
}

void FittedText::search(int smallest, int largest, int maxLines) {
    // The smallest is known to fit; the fit is monotonous enough for halving.
    int best = smallest;
    if (layOut(largest, maxLines, m_box.width(), QTextOption::WordWrap))
        return;
    while (largest - best > 1) {
        const int middle = (best + largest) / 2;
        if (layOut(middle, maxLines, m_box.width(), QTextOption::WordWrap))
            best = middle;
        else
            largest = middle;
    }
    layOut(best, maxLines, m_box.width(), QTextOption::WordWrap);
}

void FittedText::balance() {
    // "SATIŞ / İPTAL ET" reads better than "SATIŞ İPTAL / ET": the narrowest width that needs no further
    // line.
    const int lines = m_layout->lineCount();
    if (lines < 2 || m_layout->textOption().wrapMode() != QTextOption::WordWrap)
        return;
    double narrow = m_box.width() / lines;
    double wide = m_box.width();
    while (wide - narrow > 2.0) {
        const double middle = (narrow + wide) / 2;
        if (layOut(m_fittedSize, lines, middle, QTextOption::WordWrap))
            wide = middle;
        else
            narrow = middle;
    }
    layOut(m_fittedSize, lines, wide, QTextOption::WordWrap);
}

void FittedText::elide(int pixelSize, int maxLines) {
    QFont font = m_font;
    font.setPixelSize(pixelSize);
    const QFontMetricsF metrics(font);
    const QString whole = m_layout->text();
    const int lines = std::clamp(static_cast<int>(m_box.height() / metrics.height()), 1, maxLines);
    const auto fits = [&](double least, QTextOption::WrapMode wrap) {
        for (double share = 1.0; share > least; share -= 0.1) {
            m_layout->setText(metrics.elidedText(whole, Qt::ElideRight, m_box.width() * lines * share));
            if (layOut(pixelSize, lines, m_box.width(), wrap))
                return true;
        }
        return false;
    };
    if (fits(leastByWords, QTextOption::WordWrap) || fits(0.2, QTextOption::WrapAnywhere))
        return;
    // A box smaller than a letter: nothing that could be read would fit.
    m_layout->setText({});
    layOut(pixelSize, 1, m_box.width(), QTextOption::WrapAnywhere);
}

void FittedText::place() {
    double height = 0;
    double width = 0;
    for (int i = 0; i < m_layout->lineCount(); ++i) {
        height += m_layout->lineAt(i).height();
        width = std::max(width, m_layout->lineAt(i).naturalTextWidth());
    }
    const auto start = [](double from, double room, double need, bool centre, bool end) {
        return from + (centre ? (room - need) / 2 : end ? room - need : 0.0);
    };
    const bool centre = m_alignment.testFlag(Qt::AlignHCenter);
    const bool right = m_alignment.testFlag(Qt::AlignRight);
    const bool top = m_alignment.testFlag(Qt::AlignTop);
    const bool bottom = m_alignment.testFlag(Qt::AlignBottom);
    double y = start(m_box.top(), m_box.height(), height, !top && !bottom, bottom);
    m_bounds = QRectF(start(m_box.left(), m_box.width(), width, centre, right), y, width, height);
    for (int i = 0; i < m_layout->lineCount(); ++i) {
        QTextLine line = m_layout->lineAt(i);
        line.setPosition(
            QPointF(start(m_box.left(), m_box.width(), line.naturalTextWidth(), centre, right), y));
        y += line.height();
    }
}

/// The letters themselves, a pixel to each side: the line around them is as sharp as they are.
void FittedText::paintOutline(QPainter& painter, const QColor& outline) const {
    constexpr std::array<QPointF, 4> around{QPointF(0, -1), QPointF(-1, 0), QPointF(1, 0), QPointF(0, 1)};
    constexpr double margin = 2;
    const double ratio = painter.device()->devicePixelRatioF();
    // On whole pixels, where the glyphs stand too.
    const QPointF corner(std::floor(m_bounds.left() - margin), std::floor(m_bounds.top() - margin));
    const QSizeF size(std::ceil(m_bounds.right() + margin) - corner.x(),
                      std::ceil(m_bounds.bottom() + margin) - corner.y());
    const QColor tone = outline.rgb();
    if (m_outline.isNull() || m_outline.devicePixelRatio() != ratio || m_outlineTone != tone.rgb()) {
        m_outline = QPixmap((size * ratio).toSize());
        m_outline.setDevicePixelRatio(ratio);
        m_outline.fill(Qt::transparent);
        m_outlineTone = tone.rgb();
        QPainter letters(&m_outline);
        letters.setRenderHint(QPainter::TextAntialiasing);
        letters.setPen(tone);
        for (const QPointF& offset : around)
            m_layout->draw(&letters, offset - corner);
    }
    const double before = painter.opacity();
    painter.setOpacity(before * outline.alphaF());
    painter.drawPixmap(corner, m_outline);
    painter.setOpacity(before);
}

void FittedText::paint(QPainter& painter, const QColor& color, const QColor& outline) const {
    if (!m_layout)
        return;
    if (outline.isValid())
        paintOutline(painter, outline);
    painter.setPen(color);
    m_layout->draw(&painter, QPointF(0, 0));
}

}  // namespace kovanix
