#include "app/modTurkce.h"

#include <array>

#include "app/textcatalogue.h"
#include "database/failedopens.h"
#include "desktop/messagebox.h"
#include "values/lettercase.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

struct Symbol {
    char16_t symbol;
    char16_t letter;
};

constexpr std::array<Symbol, 12> symbols{{
    {u'|', 305},
    {u'!', 304},
    {u'#', 351},
    {u'@', 350},
    {u'$', 287},
    {u'%', 286},
    {u'&', 246},
    {u'*', 214},
    {u'^', 252},
    {u'~', 220},
    {u'{', 231},
    {u'}', 199},
}};

char16_t letterFor(char16_t character) {
    for (const Symbol& entry : symbols) {
        if (entry.symbol == character)
            return entry.letter;
    }
    return character;
}

}  // namespace

QString harfcevir(const QString& text) {
    QString letters = text;
    for (QChar& character : letters)
        character = QChar(letterFor(character.unicode()));
    return letters;
}

bool harfvarmi(QStringView text) {
    for (const QChar character : text) {
        if (letterFor(character.unicode()) != character.unicode())
            return true;
    }
    return false;
}

QString buyukharf(QStringView text) {
    return upperTurkish(text);
}

QString metin(const QString& key) {
    const std::optional<QStringView> stored = storedText(upperOrdinary(key));
    if (!stored)
        return key;
    const QString text = stored->toString();
    if (text.isEmpty() || text == key)
        return text;
    return harfcevir(text);
}

bool metinanahtarmi(const QString& text) {
    const QString trimmed = text.trimmed();
    return upperOrdinary(trimmed) == text && trimmed.size() >= 3 && text.contains(u'_');
}

int mesaj(const QString& text, int style, const QString& title) {
    const auto shown = [](const QString& given) {
        return metinanahtarmi(given) ? metin(given) : harfcevir(given);
    };
    const QString shownTitle = title.isEmpty() ? metin(u"BILGI"_s) : shown(title);
    // Behind the box, what it tells of isn't waited for once more.
    const FailedOpens::Hold standing;
    return messageBox(shown(text), style, shownTitle);
}

int mesajsor(const QString& text, int style, const QString& title) {
    return mesaj(text, style, title);
}

int uyarimesaj(const QString& text, int style) {
    return mesaj(text, style, u"UYARI"_s);
}

}  // namespace kovanix
