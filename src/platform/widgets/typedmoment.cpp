#include "widgets/typedmoment.h"

#include <QList>
#include <algorithm>
#include <span>

namespace kovanix {

namespace {

constexpr qsizetype mostParts = 3;
constexpr int thisCentury = 2000;

bool isDigit(QChar sign) {
    return sign >= u'0' && sign <= u'9';
}

/// The numbers that stand in a text; nothing where it holds anything else but single signs between them, or
/// more than three.
QList<QStringView> parts(QStringView text, QStringView signs) {
    QList<QStringView> found;
    QStringView rest = text.trimmed();
    while (!rest.isEmpty()) {
        const qsizetype length = std::ranges::find_if_not(rest, isDigit) - rest.begin();
        if (length == 0 || found.size() == mostParts)
            return {};
        found.append(rest.first(length));
        rest = rest.sliced(length);
        if (rest.isEmpty())
            break;
        const bool blank = rest.front().isSpace();
        rest = rest.trimmed();
        if (!rest.isEmpty() && signs.contains(rest.front()))
            rest = rest.sliced(1).trimmed();
        else if (!blank)
            return {};
    }
    return found;
}

/// Cuts a number without signs into parts of two digits, the last of what is left.
QList<QStringView> cut(QStringView number, qsizetype first, qsizetype count) {
    QList<QStringView> found{number.first(first)};
    number = number.sliced(first);
    while (!number.isEmpty()) {
        const qsizetype length = found.size() + 1 == count ? number.size() : 2;
        found.append(number.first(length));
        number = number.sliced(length);
    }
    return found;
}

bool areShort(std::span<const QStringView> numbers) {
    return std::ranges::all_of(numbers, [](QStringView number) { return number.size() <= 2; });
}

/// 0, which is no year, for what can't be one.
int yearOf(QStringView number) {
    if (number.size() == 2)
        return thisCentury + number.toInt();
    return number.size() == 3 || number.size() == 4 ? number.toInt() : 0;
}

}  // namespace

bool canBeChosen(QDate day) {
    return day.isValid() && day.year() >= firstYear && day.year() <= lastYear;
}

std::optional<QDate> typedDate(QStringView text, int year) {
    QList<QStringView> numbers = parts(text, u".,/-");
    if (numbers.size() == 1) {
        const qsizetype length = numbers.front().size();
        if (length != 4 && length != 6 && length != 8)
            return std::nullopt;
        numbers = cut(numbers.front(), 2, length == 4 ? 2 : 3);
    }
    if (numbers.size() < 2 || !areShort(std::span(numbers).first(2)))
        return std::nullopt;
    const QDate day(numbers.size() == 3 ? yearOf(numbers[2]) : year, numbers[1].toInt(), numbers[0].toInt());
    return canBeChosen(day) ? std::optional(day) : std::nullopt;
}

std::optional<QTime> typedTime(QStringView text) {
    QList<QStringView> numbers = parts(text, u":.,");
    if (numbers.size() == 1) {
        const qsizetype length = numbers.front().size();
        if (length > 6)
            return std::nullopt;
        if (length > 2)
            numbers = cut(numbers.front(), 2 - length % 2, (length + 1) / 2);
    }
    if (numbers.isEmpty() || !areShort(numbers))
        return std::nullopt;
    const auto number = [&](qsizetype part) { return part < numbers.size() ? numbers[part].toInt() : 0; };
    const QTime time(number(0), number(1), number(2));
    return time.isValid() ? std::optional(time) : std::nullopt;
}

}  // namespace kovanix
