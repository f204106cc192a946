#include "values/dates.h"

#include <QLocale>

namespace kovanix {

namespace {

const QLocale& turkish() {
    static const QLocale locale(QLocale::Turkish, QLocale::Turkey);
    return locale;
}

/// The number that digits write from a place on; -1 where other characters stand.
int digits(QStringView text, qsizetype place, qsizetype count) {
    int number = 0;
    for (const QChar digit : text.sliced(place, count)) {
        if (digit < u'0' || digit > u'9')
            return -1;
        number = number * 10 + (digit.unicode() - u'0');
    }
    return number;
}

/// Whether a text is a moment with a sign between the parts of its date and the year at one end of it.
bool isMoment(QStringView text, QChar sign, bool yearFirst) {
    constexpr qsizetype length = 19;
    const qsizetype first = yearFirst ? 4 : 2;
    constexpr qsizetype behindDate = 10;
    if (text.size() != length || text[first] != sign || text[first + 3] != sign || text[behindDate] != u' ' ||
        text[behindDate + 3] != u':' || text[behindDate + 6] != u':')
        return false;
    const int year = digits(text, yearFirst ? 0 : 6, 4);
    const int month = digits(text, yearFirst ? 5 : 3, 2);
    const int day = digits(text, yearFirst ? 8 : 0, 2);
    return year > 0 && QDate::isValid(year, month, day) &&
           QTime::isValid(digits(text, 11, 2), digits(text, 14, 2), digits(text, 17, 2));
}

}  // namespace

QString dateText(QDate date) {
    return turkish().toString(date, u"dd.MM.yyyy");
}

QString timeText(QTime time) {
    return turkish().toString(time, u"HH:mm:ss");
}

QString longDateText(QDate date) {
    return turkish().toString(date, u"d MMMM yyyy dddd");
}

QString monthText(QDate date) {
    return turkish().toString(date, u"MMMM yyyy");
}

// The parts change places as they stand: a list does this for every row of a year's sales.
std::optional<QString> shownMoment(QStringView stored) {
    if (!isMoment(stored, u'-', true))
        return std::nullopt;
    return stored.sliced(8, 2) % u'.' % stored.sliced(5, 2) % u'.' % stored.first(4) % stored.sliced(10);
}

std::optional<QString> storedMoment(QStringView shown) {
    if (!isMoment(shown, u'.', false))
        return std::nullopt;
    return shown.sliced(6, 4) % u'-' % shown.sliced(3, 2) % u'-' % shown.first(2) % shown.sliced(10);
}

}  // namespace kovanix
