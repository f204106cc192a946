#include "values/lettercase.h"

namespace kovanix {

namespace {

constexpr char32_t dottedCapitalI = U'İ';
constexpr char32_t dotlessSmallI = U'ı';

// Character by character, so that a text keeps its length: the toolkit's own text functions make two
// characters of İ and ß, which would shift columns and cut names.
template <class Map>
QString mapped(QStringView text, Map map) {
    QString result(text.size(), Qt::Uninitialized);
    QChar* next = result.data();
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar unit = text[i];
        if (unit.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            const char32_t character = map(QChar::surrogateToUcs4(unit, text[i + 1]));
            *next++ = QChar(QChar::highSurrogate(character));
            *next++ = QChar(QChar::lowSurrogate(character));
            ++i;
        } else {
            *next++ = QChar(static_cast<char16_t>(map(unit.unicode())));
        }
    }
    return result;
}

char32_t upper(char32_t character) {
    if (character < 0x80)
        return character >= U'a' && character <= U'z' ? character - 0x20 : character;
    return QChar::toUpper(character);
}

char32_t lower(char32_t character) {
    if (character < 0x80)
        return character >= U'A' && character <= U'Z' ? character + 0x20 : character;
    // The toolkit leaves it alone, because its full form would be two characters.
    if (character == dottedCapitalI)
        return U'i';
    return QChar::toLower(character);
}

}  // namespace

QString upperOrdinary(QStringView text) {
    return mapped(text, upper);
}

QString lowerOrdinary(QStringView text) {
    return mapped(text, lower);
}

QString upperTurkish(QStringView text) {
    return mapped(text,
                  [](char32_t character) { return character == U'i' ? dottedCapitalI : upper(character); });
}

QString lowerTurkish(QStringView text) {
    return mapped(text, [](char32_t character) { return lowerTurkish(character); });
}

char32_t lowerTurkish(char32_t character) {
    return character == U'I' ? dotlessSmallI : lower(character);
}

QString foldTurkishI(QStringView text) {
    return mapped(text,
                  [](char32_t character) { return character == dotlessSmallI ? U'i' : lower(character); });
}

}  // namespace kovanix
