#include "values/numbers.h"

#include <QVarLengthArray>
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr int significantDigits = 15;

// The decimal text that a double stands for: 0.d1d2d3... times ten to the power of point. No digits: zero.
struct Decimal {
    std::array<char, significantDigits + 1> digits{};
    int count = 0;
    int point = 0;
    bool negative = false;

    // A digit beyond the last one is a zero: that is how 1E+20 gets its tail.
    char16_t digit(int place) const {
        return place >= 0 && place < count ? static_cast<char16_t>(digits[static_cast<std::size_t>(place)])
                                           : u'0';
    }

    void dropTrailingZeros() {
        while (count > 0 && digits[static_cast<std::size_t>(count - 1)] == '0')
            --count;
    }
};

Decimal decimalOf(double value) {
    Decimal decimal;
    if (value == 0 || !std::isfinite(value))
        return decimal;
    decimal.negative = value < 0;
    std::array<char, 32> text;
    const auto written = std::to_chars(text.data(), text.data() + text.size(), std::fabs(value),
                                       std::chars_format::scientific, significantDigits - 1);
    decimal.digits[0] = text[0];
    std::copy_n(text.data() + 2, significantDigits - 1, decimal.digits.begin() + 1);
    decimal.count = significantDigits;
    // "d.dddddddddddddde+XX": from_chars takes a minus, but no plus.
    const char* exponent = text.data() + significantDigits + 2;
    if (*exponent == '+')
        ++exponent;
    std::from_chars(exponent, written.ptr, decimal.point);
    ++decimal.point;
    decimal.dropTrailingZeros();
    return decimal;
}

// Rounds half away from zero to a number of places behind the point.
void roundTo(Decimal& decimal, int places) {
    const int kept = decimal.point + places;
    if (kept >= decimal.count)
        return;
    const bool up = kept >= 0 && decimal.digit(kept) >= u'5';
    decimal.count = std::max(kept, 0);
    if (up) {
        int place = kept - 1;
        while (place >= 0 && decimal.digits[static_cast<std::size_t>(place)] == '9')
            --place;
        if (place < 0) {
            decimal.digits[0] = '1';
            decimal.count = 1;
            ++decimal.point;
        } else {
            ++decimal.digits[static_cast<std::size_t>(place)];
            decimal.count = place + 1;
        }
    }
    decimal.dropTrailingZeros();
}

// The number that a decimal text is read as.
double valueOf(const Decimal& decimal) {
    if (decimal.count == 0)
        return 0;
    std::array<char, significantDigits + 16> text;
    char* next = std::copy_n(decimal.digits.begin(), decimal.count, text.begin());
    *next++ = 'e';
    next = std::to_chars(next, text.data() + text.size(), decimal.point - decimal.count).ptr;
    double size = 0;
    std::from_chars(text.data(), next, size);
    return decimal.negative ? -size : size;
}

struct Pattern {
    int wholeAtLeast = 0;
    int decimals = 0;
    int decimalsAtLeast = 0;
    bool grouped = false;
    QStringView tail;
};

Pattern readPattern(QStringView text) {
    Pattern pattern;
    bool behindPoint = false;
    bool commaSeen = false;
    bool digitSeen = false;
    qsizetype i = 0;
    for (; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c == u'.') {
            if (behindPoint)
                break;
            behindPoint = true;
        } else if (c == u',') {
            if (behindPoint)
                break;
            commaSeen = digitSeen;
        } else if (c != u'0' && c != u'#') {
            break;
        } else if (behindPoint) {
            ++pattern.decimals;
            if (c == u'0')
                pattern.decimalsAtLeast = pattern.decimals;
        } else {
            digitSeen = true;
            pattern.grouped = pattern.grouped || commaSeen;
            if (c == u'0' || pattern.wholeAtLeast > 0)
                ++pattern.wholeAtLeast;
        }
    }
    pattern.tail = text.sliced(i);
    return pattern;
}

QChar* writeExponent(QChar* next, int exponent) {
    *next++ = u'E';
    *next++ = exponent < 0 ? u'-' : u'+';
    const int size = std::abs(exponent);
    if (size >= 100)
        *next++ = QChar(u'0' + size / 100);
    *next++ = QChar(u'0' + size / 10 % 10);
    *next++ = QChar(u'0' + size % 10);
    return next;
}

bool isBlank(QChar c) {
    return c == u' ' || (c >= u'\t' && c <= u'\r');
}

bool isDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}

bool isSign(QChar c) {
    return c == u'+' || c == u'-';
}

// A number's characters on their way to the converter, and its size, for telling too large from too small.
struct Reading {
    QVarLengthArray<char, 64> text;
    int wholeDigits = 0;   // without leading zeros
    int leadingZeros = 0;  // behind the point of a number below one
    bool anySignificant = false;
    bool anyDigit = false;
    int exponent = 0;

    void addDigit(QChar c, bool behindPoint) {
        anyDigit = true;
        text.push_back(static_cast<char>(c.unicode()));
        if (c != u'0')
            anySignificant = true;
        if (!behindPoint && anySignificant)
            ++wholeDigits;
        else if (behindPoint && !anySignificant)
            ++leadingZeros;
    }

    // Reads the exponent at the place when one stands there whole; the place moves behind it.
    void readExponent(QStringView from, qsizetype& place) {
        qsizetype next = place;
        if (next >= from.size() || (from[next] != u'e' && from[next] != u'E'))
            return;
        ++next;
        bool negative = false;
        if (next < from.size() && isSign(from[next]))
            negative = from[next++] == u'-';
        if (next >= from.size() || !isDigit(from[next]))
            return;
        constexpr int outOfAnyRange = 1000000;
        for (; next < from.size() && isDigit(from[next]); ++next)
            exponent = std::min(exponent * 10 + (from[next].unicode() - u'0'), outOfAnyRange);
        if (negative)
            exponent = -exponent;
        place = next;
    }

    // The number's size; infinity when it is beyond a double, 0 when it is too small for one.
    double convert() {
        if (exponent != 0) {
            std::array<char, 16> written;
            const auto end = std::to_chars(written.data(), written.data() + written.size(), exponent).ptr;
            text.push_back('e');
            text.append(written.data(), end - written.data());
        }
        double value = 0;
        const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
        if (read.ec == std::errc::result_out_of_range) {
            const int magnitude = (wholeDigits > 0 ? wholeDigits : -leadingZeros) + exponent;
            return magnitude > 0 ? std::numeric_limits<double>::infinity() : 0;
        }
        return value;
    }
};

// The digits before the decimal sign, groups included: one to three digits, then dots each with exactly
// three.
bool readGroupedWhole(QStringView text, qsizetype& place, Reading& reading) {
    qsizetype run = 0;
    bool grouped = false;
    for (; place < text.size(); ++place) {
        const QChar c = text[place];
        if (isDigit(c)) {
            reading.addDigit(c, false);
            ++run;
        } else if (c == u'.') {
            if (grouped ? run != 3 : run < 1 || run > 3)
                return false;
            grouped = true;
            run = 0;
        } else {
            break;
        }
    }
    return !grouped || run == 3;
}

void readDigits(QStringView text, qsizetype& place, Reading& reading, bool behindPoint) {
    for (; place < text.size() && isDigit(text[place]); ++place)
        reading.addDigit(text[place], behindPoint);
}

void skipBlanks(QStringView text, qsizetype& place) {
    while (place < text.size() && isBlank(text[place]))
        ++place;
}

// The place of the first digit, or of what stands in its place.
qsizetype wholeStart(QStringView text) {
    qsizetype place = 0;
    skipBlanks(text, place);
    if (place < text.size() && isSign(text[place]))
        ++place;
    skipBlanks(text, place);
    return place;
}

// Whether every dot of a text groups threes.
bool groupsThrees(QStringView text) {
    qsizetype place = wholeStart(text);
    Reading reading;
    return readGroupedWhole(text, place, reading) && !text.sliced(place).contains(u'.');
}

std::optional<double> convert(QStringView text, QChar decimalSign, bool groups) {
    qsizetype place = 0;
    skipBlanks(text, place);
    bool negative = false;
    bool signed_ = false;
    if (place < text.size() && isSign(text[place])) {
        signed_ = true;
        negative = text[place++] == u'-';
        skipBlanks(text, place);
    }
    Reading reading;
    if (groups) {
        if (!readGroupedWhole(text, place, reading))
            return std::nullopt;
    } else {
        readDigits(text, place, reading, false);
    }
    if (place < text.size() && text[place] == decimalSign) {
        reading.text.push_back('.');
        readDigits(text, ++place, reading, true);
    }
    if (!reading.anyDigit)
        return std::nullopt;
    reading.readExponent(text, place);
    skipBlanks(text, place);
    if (!signed_ && place < text.size() && isSign(text[place])) {
        negative = text[place++] == u'-';
        skipBlanks(text, place);
    }
    if (place < text.size())
        return std::nullopt;
    const double value = reading.convert();
    if (std::isinf(value))
        return std::nullopt;
    // "-0" is nothing but zero: the sign would come back in a division.
    return negative && value != 0 ? -value : value;
}

}  // namespace

QString format(double value, QStringView patternText) {
    if (patternText.isEmpty())
        return numberText(value);
    const Pattern pattern = readPattern(patternText);
    Decimal decimal = decimalOf(value);
    roundTo(decimal, pattern.decimals);
    const bool zero = decimal.count == 0;
    if (zero)
        decimal.point = 0;

    const int whole = std::max(decimal.point, pattern.wholeAtLeast);
    const int separators = pattern.grouped && whole > 0 ? (whole - 1) / 3 : 0;
    const int decimals = std::max(pattern.decimalsAtLeast, decimal.count - decimal.point);
    const bool negative = decimal.negative && !zero;
    QString text(
        (negative ? 1 : 0) + whole + separators + (decimals > 0 ? decimals + 1 : 0) + pattern.tail.size(),
        Qt::Uninitialized);
    QChar* next = text.data();
    if (negative)
        *next++ = u'-';
    for (int left = whole; left > 0; --left) {
        *next++ = QChar(decimal.digit(decimal.point - left));
        if (separators > 0 && left > 1 && (left - 1) % 3 == 0)
            *next++ = u'.';
    }
    if (decimals > 0) {
        *next++ = u',';
        for (int place = 0; place < decimals; ++place)
            *next++ = QChar(decimal.digit(decimal.point + place));
    }
    std::copy(pattern.tail.begin(), pattern.tail.end(), next);
    return text;
}

double roundedToCents(double value) {
    // Of a smaller number, 15 digits are exact to less than a thousandth of a cent. Only so near to half a
    // cent can they make a difference; there the digits themselves are asked.
    constexpr double largest = 1e9;
    constexpr double doubtful = 1e-3;
    const double cents = value * 100;
    const double whole = std::nearbyint(cents);
    if (std::fabs(value) < largest && std::fabs(cents - whole) < 0.5 - doubtful)
        return whole == 0 ? 0 : whole / 100;
    Decimal decimal = decimalOf(value);
    roundTo(decimal, 2);
    return valueOf(decimal);
}

QString numberText(double value) {
    const Decimal decimal = decimalOf(value);
    if (decimal.count == 0)
        return u"0"_s;
    // Sign, digits, leading zeros and comma of the widest fixed form, or the exponent form.
    std::array<QChar, 40> text;
    QChar* next = text.data();
    if (decimal.negative)
        *next++ = u'-';
    const int decimals = decimal.count - decimal.point;
    if (decimal.point > significantDigits || decimals > significantDigits) {
        *next++ = QChar(decimal.digit(0));
        if (decimal.count > 1)
            *next++ = u',';
        for (int place = 1; place < decimal.count; ++place)
            *next++ = QChar(decimal.digit(place));
        next = writeExponent(next, decimal.point - 1);
    } else {
        if (decimal.point <= 0)
            *next++ = u'0';
        for (int place = 0; place < decimal.point; ++place)
            *next++ = QChar(decimal.digit(place));
        if (decimals > 0) {
            *next++ = u',';
            for (int place = 0; place < decimals; ++place)
                *next++ = QChar(decimal.digit(decimal.point + place));
        }
    }
    return QString(text.data(), next - text.data());
}

bool isNumeric(QStringView text) {
    return toNumber(text).has_value();
}

std::optional<double> toNumber(QStringView text) {
    return convert(text, u',', true);
}

QString keptGroups(QStringView before, const QString& after, qsizetype* caret) {
    if (!before.contains(u'.') || !groupsThrees(before) || groupsThrees(after))
        return after;
    const qsizetype start = wholeStart(after);
    qsizetype end = start;
    while (end < after.size() && (isDigit(after[end]) || after[end] == u'.'))
        ++end;
    QString text = after;
    const auto drop = [&](qsizetype place) {
        text.remove(place, 1);
        if (caret && place < *caret)
            --*caret;
    };
    int digits = 0;  // of the group behind the place
    for (qsizetype place = text.size() - 1; place >= start; --place) {
        if (text[place] != u'.')
            digits += place < end ? 1 : 0;
        else if (place > start && digits == 3)
            digits = 0;
        else
            drop(place);
    }
    if (groupsThrees(text))
        return text;
    // Too many digits in front: then none of them groups anything.
    for (qsizetype place = text.size() - 1; place >= start; --place) {
        if (text[place] == u'.')
            drop(place);
    }
    return text;
}

std::optional<double> toNumberWithDot(QStringView text) {
    return convert(text, u'.', false);
}

double numericPrefix(QStringView text) {
    qsizetype place = 0;
    skipBlanks(text, place);
    bool negative = false;
    if (place < text.size() && isSign(text[place]))
        negative = text[place++] == u'-';
    Reading reading;
    readDigits(text, place, reading, false);
    if (place < text.size() && text[place] == u'.') {
        reading.text.push_back('.');
        readDigits(text, ++place, reading, true);
    }
    if (!reading.anyDigit)
        return 0;
    reading.readExponent(text, place);
    const double value = std::min(reading.convert(), std::numeric_limits<double>::max());
    return negative && value != 0 ? -value : value;
}

}  // namespace kovanix
