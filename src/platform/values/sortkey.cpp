#include "values/sortkey.h"

#include <QList>
#include <QString>
#include <array>

#include "values/lettercase.h"
#include "values/utf8.h"

namespace kovanix {

namespace {

constexpr std::u32string_view alphabet = U"abcçdefgğhıijklmnoöpqrsştuüvwxyz";

// First bytes of what a character gives to the key.
constexpr char control = 0x01;
constexpr char blank = 0x02;
constexpr char firstSign = 0x03;  // those of ASCII, in its order
constexpr char otherSign = 0x2F;  // the character's number follows
constexpr char firstDigit = 0x30;
constexpr char firstLetter = 0x40;
constexpr char otherLetter = 0x7E;  // the character's number follows

constexpr char32_t firstMark = 0x300;  // marks that join the letter ahead of them
constexpr char32_t lastMark = 0x36F;

bool isMark(char32_t character) {
    return character >= firstMark && character <= lastMark;
}

/// The letters of an unusual one that the toolkit doesn't take apart.
std::u32string_view parts(char32_t letter) {
    switch (letter) {
        case U'ß':
            return U"ss";
        case U'æ':
            return U"ae";
        case U'œ':
            return U"oe";
        case U'ø':
            return U"o";
        case U'ł':
            return U"l";
        case U'đ':
        case U'ð':
            return U"d";
        case U'þ':
            return U"th";
        default:
            return {};
    }
}

void appendNumbered(std::string& key, char first, char32_t character) {
    // Seven bits a byte, so that no byte is zero.
    key += first;
    for (const unsigned shift : {14U, 7U, 0U})
        key += static_cast<char>(0x80U | ((character >> shift) & 0x7FU));
}

void appendAscii(std::string& key, char32_t character) {
    if (character < 0x20 || character == 0x7F) {
        key += control;
    } else if (character == U' ') {
        key += blank;
    } else if (character >= U'0' && character <= U'9') {
        key += static_cast<char>(firstDigit + static_cast<char>(character - U'0'));
    } else {
        // Digits, capitals and small letters stand between the signs.
        const int others =
            (character > U'9' ? 10 : 0) + (character > U'Z' ? 26 : 0) + (character > U'z' ? 26 : 0);
        key += static_cast<char>(firstSign + static_cast<int>(character - U'!') - others);
    }
}

void appendCharacter(std::string& key, char32_t original) {
    if (original >= utf8::strayBytes) {
        appendNumbered(key, otherSign, original);
        return;
    }
    const char32_t character = lowerTurkish(original);
    if (const auto letter = alphabet.find(character); letter != std::u32string_view::npos) {
        key += static_cast<char>(firstLetter + static_cast<char>(letter));
    } else if (character < 0x80) {
        appendAscii(key, character);
    } else if (isMark(character)) {
        return;
    } else if (const auto made = parts(character); !made.empty()) {
        for (const char32_t part : made)
            appendCharacter(key, part);
    } else if (const QString taken = QChar::decomposition(character); !taken.isEmpty()) {
        for (const char32_t part : taken.toUcs4())
            appendCharacter(key, part);
    } else {
        appendNumbered(key, QChar::isLetterOrNumber(character) ? otherLetter : otherSign, character);
    }
}

/// What the characters give that take one or two bytes in UTF-8 and give one byte, worked out once: those of
/// nearly every text. Zero for the others.
class Weights {
public:
    static const Weights& all() {
        static const Weights weights;
        return weights;
    }

    char operator[](char32_t character) const { return m_weights[character]; }

private:
    Weights() {
        for (char32_t character = 0; character < utf8::behindTwoBytes; ++character) {
            std::string key;
            appendCharacter(key, character);
            if (key.size() == 1)
                m_weights[character] = key.front();
        }
    }

    std::array<char, utf8::behindTwoBytes> m_weights{};
};

}  // namespace

void appendSortKey(std::string& key, std::string_view text) {
    const Weights& weights = Weights::all();
    const std::size_t start = key.size();
    for (std::size_t place = 0; place < text.size();) {
        const auto usual = utf8::nextShort(text, place);
        if (usual && weights[*usual] != 0) {
            key += weights[*usual];
            continue;
        }
        const char32_t character = usual ? *usual : utf8::next(text, place);
        if (isMark(character)) {
            // A letter and its mark as two characters: one again, the letters with marks of their own.
            key.resize(start);
            const QString whole = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()))
                                      .normalized(QString::NormalizationForm_C);
            for (const char32_t each : whole.toUcs4())
                appendCharacter(key, each);
            return;
        }
        appendCharacter(key, character);
    }
}

std::string sortKey(QStringView text) {
    std::string key;
    appendSortKey(key, text.toUtf8().toStdString());
    return key;
}

}  // namespace kovanix
