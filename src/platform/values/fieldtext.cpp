#include "values/fieldtext.h"

#include <QTextBoundaryFinder>

namespace kovanix {

QString cutToField(const QString& text) {
    constexpr qsizetype longest = 50;
    if (text.size() <= longest)
        return text;
    // A letter may be followed by marks that belong to it.
    QTextBoundaryFinder letters(QTextBoundaryFinder::Grapheme, text);
    letters.setPosition(longest);
    const qsizetype whole = letters.isAtBoundary() ? longest : letters.toPreviousBoundary();
    if (whole > 0)
        return text.left(whole);
    // A single letter that has more marks than fit loses some: the field must not become empty.
    return text.left(text[longest - 1].isHighSurrogate() ? longest - 1 : longest);
}

}  // namespace kovanix
