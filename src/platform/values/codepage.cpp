#include "values/codepage.h"

#include <array>

namespace kovanix {

namespace {

constexpr char16_t undefinedByte = QChar::ReplacementCharacter;
constexpr char lackingCharacter = '?';

// Bytes 0x80 to 0x9F. A table of our own: the toolkit knows this code page only where it was built with ICU.
constexpr std::array<char16_t, 32> upperControls = {
    0x20AC,        undefinedByte, 0x201A, 0x0192, 0x201E, 0x2026,        0x2020,        0x2021,
    0x02C6,        0x2030,        0x0160, 0x2039, 0x0152, undefinedByte, undefinedByte, undefinedByte,
    undefinedByte, 0x2018,        0x2019, 0x201C, 0x201D, 0x2022,        0x2013,        0x2014,
    0x02DC,        0x2122,        0x0161, 0x203A, 0x0153, undefinedByte, undefinedByte, 0x0178,
};

constexpr char16_t characterOf(unsigned char byte) {
    if (byte >= 0x80 && byte < 0xA0)
        return upperControls[byte - 0x80U];
    switch (byte) {
        case 0xD0:
            return u'Ğ';
        case 0xDD:
            return u'İ';
        case 0xDE:
            return u'Ş';
        case 0xF0:
            return u'ğ';
        case 0xFD:
            return u'ı';
        case 0xFE:
            return u'ş';
        default:
            return byte;
    }
}

constexpr std::array<char16_t, 256> makeCharacters() {
    std::array<char16_t, 256> table{};
    for (unsigned byte = 0; byte < table.size(); ++byte)
        table[byte] = characterOf(static_cast<unsigned char>(byte));
    return table;
}

constexpr std::array<char16_t, 256> characters = makeCharacters();

char byteOf(char16_t character) {
    // ASCII and most of Latin-1 stand at their own place.
    if (character < characters.size() && characters[character] == character)
        return static_cast<char>(character);
    if (character == undefinedByte)
        return lackingCharacter;
    for (unsigned byte = 0x80; byte < characters.size(); ++byte) {
        if (characters[byte] == character)
            return static_cast<char>(byte);
    }
    return lackingCharacter;
}

/// The byte of the letter that is left when marks are taken off one by one: of ǘ that is ü, not u.
char baseByteOf(char16_t character) {
    for (QChar letter(character); letter.decompositionTag() == QChar::Canonical;) {
        letter = letter.decomposition().front();
        if (const char byte = byteOf(letter.unicode()); byte != lackingCharacter)
            return byte;
    }
    return lackingCharacter;
}

}  // namespace

QByteArray toWindows1254(QStringView text, Lacking lacking) {
    QByteArray bytes(text.size(), Qt::Uninitialized);
    char* const begin = bytes.data();
    char* next = begin;
    for (qsizetype i = 0; i < text.size(); ++i) {
        char byte = byteOf(text[i].unicode());
        if (byte == lackingCharacter && lacking == Lacking::baseLetter && text[i] != u'?')
            byte = baseByteOf(text[i].unicode());
        *next++ = byte;
        // The two halves of a character beyond the BMP are one character, so one "?".
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate())
            ++i;
    }
    bytes.truncate(next - begin);
    return bytes;
}

QString fromWindows1254(QByteArrayView bytes) {
    QString text(bytes.size(), Qt::Uninitialized);
    QChar* next = text.data();
    for (const char byte : bytes)
        *next++ = QChar(characters[static_cast<unsigned char>(byte)]);
    return text;
}

}  // namespace kovanix
