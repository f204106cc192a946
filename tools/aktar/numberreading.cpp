#include "aktar/numberreading.h"

#include <QList>
#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

namespace kovanix::aktar {

using namespace Qt::StringLiterals;

namespace {

constexpr int groupWidth = 3;
constexpr int shownDigits = 15;

struct Shape {
    bool negative = false;
    QStringView digits;                      // with its signs and blanks
    std::optional<DecimalSign> decimalSign;  // what the number speaks for
    bool ambiguous = false;                  // one sign with three digits behind it
};

bool isDigit(QChar letter) {
    return letter >= u'0' && letter <= u'9';
}

/// A blank that groups digits: the usual one, those that no line breaks at, and the thin one.
bool isBlank(QChar letter) {
    return letter == u' ' || letter == u'\u00a0' || letter == u'\u202f' || letter == u'\u2009';
}

QChar charOf(DecimalSign sign) {
    return sign == DecimalSign::comma ? u',' : u'.';
}

DecimalSign other(DecimalSign sign) {
    return sign == DecimalSign::comma ? DecimalSign::dot : DecimalSign::comma;
}

QStringView withoutCurrency(QStringView text) {
    if (!text.isEmpty() && isDigit(text.front()) && isDigit(text.back()))
        return text;
    const auto currencies = {u"TL"_s, u"TRY"_s, u"₺"_s};
    for (const QString& currency : currencies) {
        if (text.startsWith(currency, Qt::CaseInsensitive))
            return text.mid(currency.size()).trimmed();
        if (text.endsWith(u'.') && text.chopped(1).endsWith(currency, Qt::CaseInsensitive))
            return text.chopped(currency.size() + 1).trimmed();
        if (text.endsWith(currency, Qt::CaseInsensitive))
            return text.chopped(currency.size()).trimmed();
    }
    return text;
}

/// Whether a whole part is grouped in threes by a sign throughout.
bool isGrouped(QStringView whole, QChar sign) {
    const auto parts = whole.split(sign);
    if (parts.first().isEmpty() || parts.first().size() > groupWidth)
        return false;
    return std::all_of(parts.begin() + 1, parts.end(),
                       [](QStringView part) { return part.size() == groupWidth; });
}

std::optional<Shape> shapeOf(QStringView text) {
    Shape shape;
    QStringView rest = withoutCurrency(text.trimmed());
    if (!rest.isEmpty() && (rest.front() == u'-' || rest.front() == u'\u2212' || rest.front() == u'+')) {
        shape.negative = rest.front() != u'+';
        rest = withoutCurrency(rest.mid(1).trimmed());
    }
    bool anyDigit = false;
    for (const QChar letter : rest) {
        if (!isDigit(letter) && letter != u'.' && letter != u',' && !isBlank(letter))
            return std::nullopt;
        anyDigit = anyDigit || isDigit(letter);
    }
    if (!anyDigit)
        return std::nullopt;
    shape.digits = rest;
    const qsizetype commas = rest.count(u',');
    const qsizetype dots = rest.count(u'.');
    // Blanks group, so that a sign beside them parts the decimals off.
    if (const auto blank = std::find_if(rest.begin(), rest.end(), isBlank); blank != rest.end()) {
        const qsizetype place = commas + dots == 0 ? rest.size() : rest.indexOf(commas > 0 ? u',' : u'.');
        const QStringView decimals = rest.mid(place);
        if (commas + dots > 1 || !isGrouped(rest.left(place), *blank) ||
            std::any_of(decimals.begin(), decimals.end(), isBlank))
            return std::nullopt;
        if (place < rest.size())
            shape.decimalSign = commas > 0 ? DecimalSign::comma : DecimalSign::dot;
        return shape;
    }
    if (commas == 0 && dots == 0)
        return shape;
    if (commas > 0 && dots > 0) {
        const DecimalSign sign =
            rest.lastIndexOf(u',') > rest.lastIndexOf(u'.') ? DecimalSign::comma : DecimalSign::dot;
        const qsizetype place = rest.indexOf(charOf(sign));
        if (rest.count(charOf(sign)) != 1 || !isGrouped(rest.left(place), charOf(other(sign))))
            return std::nullopt;
        shape.decimalSign = sign;
        return shape;
    }
    const DecimalSign only = commas > 0 ? DecimalSign::comma : DecimalSign::dot;
    if (commas + dots > 1) {
        if (!isGrouped(rest, charOf(only)))
            return std::nullopt;
        shape.decimalSign = other(only);
        return shape;
    }
    // "0,500" groups nothing.
    shape.ambiguous = isGrouped(rest, charOf(only)) && rest.front() != u'0';
    if (!shape.ambiguous)
        shape.decimalSign = only;
    return shape;
}

}  // namespace

void DecimalVote::add(QStringView text) {
    if (const auto shape = shapeOf(text); shape && shape->decimalSign)
        ++(*shape->decimalSign == DecimalSign::comma ? m_commas : m_dots);
}

void DecimalVote::add(const DecimalVote& other) {
    m_commas += other.m_commas;
    m_dots += other.m_dots;
}

std::optional<DecimalSign> DecimalVote::sign() const {
    if (isSilent() || isSplit())
        return std::nullopt;
    return m_commas > 0 ? DecimalSign::comma : DecimalSign::dot;
}

NumberReading readNumber(QStringView text, std::optional<DecimalSign> sign) {
    const std::optional<Shape> shape = shapeOf(text);
    if (!shape)
        return {0, NumberFault::noNumber};
    if (shape->ambiguous && !sign)
        return {0, NumberFault::ambiguous};
    const DecimalSign decimal = shape->decimalSign ? *shape->decimalSign : sign.value_or(DecimalSign::comma);
    std::string digits;
    digits.reserve(static_cast<size_t>(shape->digits.size()));
    for (const QChar letter : shape->digits) {
        if (isDigit(letter))
            digits += letter.toLatin1();
        else if (letter == charOf(decimal))
            digits += '.';
    }
    double value = 0;
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (read.ec != std::errc())
        return {0, NumberFault::noNumber};
    return {shape->negative && value != 0 ? -value : value, NumberFault::none};
}

std::optional<double> readSpreadsheetNumber(QStringView text) {
    bool ok = false;
    const QStringView digits = text.trimmed();
    const double value = digits.toDouble(&ok);
    if (!ok || !std::isfinite(value))
        return std::nullopt;
    if (digits.size() <= shownDigits)
        return value;
    return QString::number(value, 'g', shownDigits).toDouble();
}

}  // namespace kovanix::aktar
