#include "exactamounts.h"

#include <cstdlib>

namespace kovanix {

namespace {

// The till's amounts are exact up to that many digits, and only so far is there something to compare.
constexpr qint64 limit = 1'000'000'000'000'000;
constexpr int mostPlaces = 9;

qint64 powerOfTen(int exponent) {
    qint64 power = 1;
    for (; exponent > 0; --exponent)
        power *= 10;
    return power;
}

}  // namespace

std::optional<ExactNumber> readExactly(QStringView text) {
    const bool negative = text.startsWith(u'-');
    ExactNumber number;
    bool behindComma = false;
    bool anyDigit = false;
    for (const QChar sign : negative ? text.sliced(1) : text) {
        if (sign == u',' && !behindComma) {
            behindComma = true;
        } else if (sign >= u'0' && sign <= u'9') {
            anyDigit = true;
            number.digits = number.digits * 10 + (sign.unicode() - u'0');
            number.places += behindComma ? 1 : 0;
            if (number.digits >= limit || number.places > mostPlaces)
                return std::nullopt;
        } else if (sign != u'.' || behindComma) {
            return std::nullopt;
        }
    }
    if (!anyDigit)
        return std::nullopt;
    if (negative)
        number.digits = -number.digits;
    return number;
}

std::optional<qint64> lineInKurus(QStringView quantity, QStringView price) {
    const std::optional<ExactNumber> count = readExactly(quantity);
    const std::optional<ExactNumber> each = readExactly(price);
    if (!count || !each)
        return std::nullopt;
    if (each->digits != 0 && std::abs(count->digits) >= limit / std::abs(each->digits))
        return std::nullopt;
    const qint64 product = count->digits * each->digits;
    const int places = count->places + each->places;
    if (places <= 2)
        return std::abs(product) < limit / powerOfTen(2 - places)
                   ? std::optional(product * powerOfTen(2 - places))
                   : std::nullopt;
    const qint64 unit = powerOfTen(places - 2);
    const qint64 rounded = (std::abs(product) + unit / 2) / unit;
    return product < 0 ? -rounded : rounded;
}

std::optional<qint64> inKurus(QStringView amount) {
    const std::optional<ExactNumber> number = readExactly(amount);
    if (!number || number->places > 2 || std::abs(number->digits) >= limit / powerOfTen(2 - number->places))
        return std::nullopt;
    return number->digits * powerOfTen(2 - number->places);
}

QString amountText(qint64 kurus) {
    const qint64 size = std::abs(kurus);
    return (kurus < 0 ? QStringLiteral("-") : QString()) + QString::number(size / 100) + u',' +
           QString::number(size % 100).rightJustified(2, u'0');
}

double valueOf(QStringView text) {
    return text.toString().remove(u'.').replace(u',', u'.').toDouble();
}

}  // namespace kovanix
