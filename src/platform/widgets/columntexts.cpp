#include "widgets/columntexts.h"

#include <QFontMetrics>
#include <algorithm>
#include <limits>

#include "widgets/gridcell.h"

namespace kovanix {

namespace {

// Needs are measured once, at this size. Glyphs of small sizes stand on whole pixels, so that what is needed
// there differs a little: the text that needs most is measured again at the very size.
constexpr int measuredSize = 64;
constexpr double rounding = 1.1;
// Longer than anything that two lines of a cell hold.
constexpr qsizetype longestText = 200;
constexpr int boundless = std::numeric_limits<int>::max();

QFontMetrics metricsOf(QFont font, int pixels) {
    font.setPixelSize(pixels);
    return QFontMetrics(font);
}

}  // namespace

void ColumnTexts::reset(const QFont& font, Lines lines) {
    m_font = font;
    m_lines = lines;
    m_texts.clear();
}

int ColumnTexts::need(const QString& text) const {
    if (text.size() > longestText)
        return boundless;
    const QFontMetrics metrics = metricsOf(m_font, measuredSize);
    int least = metrics.horizontalAdvance(text);
    if (m_lines == Lines::one)
        return least;
    for (qsizetype blank = text.indexOf(u' '); blank >= 0; blank = text.indexOf(u' ', blank + 1)) {
        least = std::min(least, std::max(metrics.horizontalAdvance(text.left(blank)),
                                         metrics.horizontalAdvance(text.mid(blank + 1))));
    }
    return least;
}

void ColumnTexts::add(const QString& text) {
    if (!text.isEmpty())
        ++m_texts[{need(text), text}];
}

void ColumnTexts::remove(const QString& text) {
    const auto found = text.isEmpty() ? m_texts.end() : m_texts.find({need(text), text});
    if (found != m_texts.end() && --found->second == 0)
        m_texts.erase(found);
}

bool ColumnTexts::fits(const QString& text, int pixels, int width) const {
    const QFontMetrics metrics = metricsOf(m_font, pixels);
    return m_lines == Lines::one ? metrics.horizontalAdvance(text) <= width
                                 : fitsOnTwoLines(text, metrics, width);
}

bool ColumnTexts::makesOthersSmall(const QString& text, int largest, int width) const {
    if (m_lines == Lines::one)
        return true;
    const QFontMetrics metrics = metricsOf(m_font, largest);
    const QList<QStringView> words = QStringView(text).split(u' ');
    return std::ranges::all_of(words, [&](QStringView word) {
        return word.size() <= longestText && metrics.horizontalAdvance(word.toString()) <= width;
    });
}

int ColumnTexts::letterSize(int width, int largest, int smallest) const {
    const double most = width * rounding * measuredSize / std::max(1, smallest);
    auto text = m_texts.upper_bound({static_cast<int>(std::min<double>(most, boundless - 1)), {}});
    while (text != m_texts.begin()) {
        --text;
        const int least = makesOthersSmall(text->first.second, largest, width) ? smallest : largest;
        for (int size = largest; size >= least; --size) {
            if (fits(text->first.second, size, width))
                return size;
        }
    }
    return largest;
}

}  // namespace kovanix
