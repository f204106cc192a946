#include "aktar/csvguard.h"

#include <QRegularExpression>
#include <algorithm>

#include "values/lettercase.h"

namespace kovanix::aktar {

using namespace Qt::StringLiterals;

namespace {

// A spreadsheet shows whole numbers of up to 11 digits as they stand.
constexpr qsizetype harmlessDigits = 11;

bool isFormulaSign(QChar letter) {
    return letter == u'=' || letter == u'+' || letter == u'-' || letter == u'@';
}

/// What stands behind the apostrophes and blanks at a text's beginning begins a formula.
bool beginsFormula(QStringView text) {
    qsizetype place = 0;
    while (place < text.size() && (text[place] == u'\'' || text[place].isSpace()))
        ++place;
    return place < text.size() && isFormulaSign(text[place]);
}

bool isTakenForNumber(const QString& text) {
    static const QRegularExpression signs(u"^[0-9.,:/()%eE+ \\-]*[0-9][0-9.,:/()%eE+ \\-]*$"_s);
    static const QRegularExpression dayAndMonth(
        u"^[0-9]{1,4}[ ./-]*(oca|şub|mar|nis|may|haz|tem|ağu|eyl|eki|kas|ara|"
        "jan|feb|apr|jun|jul|aug|sep|oct|nov|dec)"_s);
    if (!text.front().isDigit() && text.front() != u'(' && text.front() != u'.' && text.front() != u',')
        return false;
    if (dayAndMonth.match(lowerTurkish(text)).hasMatch())
        return true;
    if (!signs.match(text).hasMatch())
        return false;
    const bool digits = std::all_of(text.begin(), text.end(), [](QChar letter) { return letter.isDigit(); });
    return !digits || text.size() > harmlessDigits || (text.front() == u'0' && text.size() > 1);
}

}  // namespace

QString guarded(const QString& text) {
    if (text.isEmpty())
        return text;
    if (beginsFormula(text))
        return u'\'' + text;
    // A tab of its own would come off as the guard.
    return text.startsWith(u'\t') || isTakenForNumber(text) ? u'\t' + text : text;
}

QString unguarded(const QString& text) {
    static const QRegularExpression digitsInFormula(u"^=\"([0-9]+)\"$"_s);
    if (text.startsWith(u'\t'))
        return text.mid(1);
    if (text.startsWith(u'\'') && beginsFormula(text))
        return text.mid(1);
    if (text.startsWith(u'=')) {
        if (const auto match = digitsInFormula.match(text); match.hasMatch())
            return match.captured(1);
    }
    return text;
}

}  // namespace kovanix::aktar
