#pragma once

#include <QFont>
#include <QString>
#include <map>
#include <utility>

namespace kovanix {

/// The texts of a column, in the order of the room that they need: it tells the letter size at which all of
/// them stand whole without going through the column. Adding and removing a text costs its own measuring.
class ColumnTexts {
public:
    /// Whether a text has to stand whole on one line, or may break once, at a blank.
    enum class Lines { one, two };

    /// Starts anew, without a text.
    void reset(const QFont& font, Lines lines);

    void add(const QString& text);
    void remove(const QString& text);

    /// The largest letter size, in pixels from `largest` down to `smallest`, at which every text stands whole
    /// in that width. Texts that don't even at the smallest don't count: they would make all others small for
    /// nothing. Nor does a text that may break at its blanks but holds a word that is wider than that at the
    /// largest: on a wide display a word of fifty letters would make all others as small as may be.
    int letterSize(int width, int largest, int smallest) const;

private:
    int need(const QString& text) const;
    bool fits(const QString& text, int pixels, int width) const;
    bool makesOthersSmall(const QString& text, int largest, int width) const;

    QFont m_font;
    Lines m_lines = Lines::one;
    std::map<std::pair<int, QString>, int> m_texts;  // each with how often it stands there
};

}  // namespace kovanix
