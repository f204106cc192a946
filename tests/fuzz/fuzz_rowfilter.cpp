// Filters of any text: parsed or refused, never more; what is parsed reads the same again; and every match is
// what a table of all beginnings of text and pattern says.

#include <QList>
#include <QString>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "database/likepattern.h"
#include "database/rowfilter.h"
#include "database/textstore.h"
#include "runtime/runtimeerror.h"
#include "values/lettercase.h"
#include "values/sortkey.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

void require(bool holds) {
    if (!holds)
        std::abort();
}

struct Sign {
    enum { itself, one, many } kind;
    char32_t character;
};

std::vector<Sign> signsOf(const QList<uint>& pattern) {
    std::vector<Sign> signs;
    for (qsizetype i = 0; i < pattern.size(); ++i) {
        const char32_t sign = pattern[i];
        const bool special = i + 2 < pattern.size() && pattern[i + 2] == U']' &&
                             (pattern[i + 1] == U'%' || pattern[i + 1] == U'_' || pattern[i + 1] == U'[');
        if (sign == U'[' && special) {
            signs.push_back({Sign::itself, pattern[i + 1]});
            i += 2;
        } else {
            signs.push_back({sign == U'%' ? Sign::many : sign == U'_' ? Sign::one : Sign::itself, sign});
        }
    }
    return signs;
}

bool slowMatch(const QString& text, const QString& pattern) {
    const QList<uint> characters = text.toUcs4();
    const std::vector<Sign> signs = signsOf(pattern.toUcs4());
    // Whether the signs so far match as many characters.
    std::vector<bool> fits(static_cast<std::size_t>(characters.size()) + 1);
    fits[0] = true;
    for (const Sign& sign : signs) {
        std::vector<bool> next(fits.size());
        for (std::size_t i = 0; i < fits.size(); ++i) {
            if (sign.kind == Sign::many) {
                next[i] = fits[i] || (i > 0 && next[i - 1]);
            } else if (i > 0 && fits[i - 1]) {
                const char32_t character = characters[static_cast<qsizetype>(i) - 1];
                next[i] = sign.kind == Sign::one || lowerTurkish(character) == lowerTurkish(sign.character);
            }
        }
        fits = std::move(next);
    }
    return fits.back();
}

void tryFilter(const QString& text) {
    RowFilter filter;
    try {
        filter = RowFilter::parse(text);
    } catch (const RuntimeError& error) {
        require(error.number() == RuntimeError::databaseFailure);
        return;
    }
    QStringList terms;
    for (const RowFilter::Term& term : filter.terms()) {
        require(term.hasWildcards() || term.literal().size() <= term.pattern.size());
        if (term.field.contains(u']') || term.field.isEmpty())
            return;
        const QString sign = term.comparison == RowFilter::Comparison::like ? u"] LIKE '"_s : u"] = '"_s;
        terms.append(u'[' + term.field + sign + QString(term.pattern).replace(u"'"_s, u"''"_s) + u'\'');
    }
    const RowFilter again = RowFilter::parse(terms.join(u" AND "_s));
    require(again.terms().size() == filter.terms().size());
    for (qsizetype i = 0; i < terms.size(); ++i) {
        require(again.terms()[i].field == filter.terms()[i].field);
        require(again.terms()[i].comparison == filter.terms()[i].comparison);
        require(again.terms()[i].pattern == filter.terms()[i].pattern);
    }
}

void tryMatch(const QString& text, const QString& pattern) {
    require(RowFilter::matches(text, pattern) == slowMatch(text, pattern));
    const LikePattern like(pattern);
    if (const auto contained = like.containedText())
        require(like.matches(foldedText(text)) == (foldedText(text).find(*contained) != std::string::npos));
}

void tryBytes(std::string_view bytes, const QString& text) {
    TextStore store;
    store.append(bytes);
    store.append(text.toStdString());
    const TextStore folded = store.folded();
    require(folded.count() == 2);
    require(folded[1] == foldedText(text));
    require(!store.isFolded() || folded.bytes() == store.bytes());
    require(folded.folded().bytes() == folded.bytes());
    std::string key;
    appendSortKey(key, bytes);
    require(key.find('\0') == std::string::npos);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray input(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const qsizetype middle = input.indexOf('\n');
    const QString text = QString::fromUtf8(input.first(middle < 0 ? 0 : middle));
    const QString pattern = QString::fromUtf8(input.mid(middle + 1));
    tryFilter(QString::fromUtf8(input));
    tryFilter(u"urun LIKE '"_s + pattern + u'\'');
    tryMatch(text, pattern);
    tryBytes(std::string_view(input.constData(), size), text);
    return 0;
}
