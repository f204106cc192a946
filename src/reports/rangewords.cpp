#include "reports/rangewords.h"

#include "values/dates.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr QStringView backwards = u"Başlangıç bitişten sonra";

/// The day without its weekday, as much of it as the words behind it don't tell already.
QString dayText(QDate day, QDate toldBehind) {
    const QString words = longDateText(day);  // "4 Mayıs 2026 Pazartesi"
    if (day.year() != toldBehind.year())
        return words.section(u' ', 0, 2);
    return words.section(u' ', 0, day.month() == toldBehind.month() ? 0 : 1);
}

QString fullDayText(QDate day) {
    return longDateText(day).section(u' ', 0, 2);
}

}  // namespace

QString rangeWords(const QDateTime& from, const QDateTime& to) {
    if (!from.isValid() || !to.isValid())
        return {};
    if (from > to)
        return backwards.toString();
    const QDate first = from.date();
    const QDate last = to.date();
    const bool wholeDays = from.time() == QTime(0, 0, 0) && to.time() == QTime(23, 59, 59);
    const bool wholeMinutes = from.time().second() == 0 && to.time().second() == 59;
    const auto clock = [wholeMinutes](QTime time) { return timeText(time).left(wholeMinutes ? 5 : 8); };
    if (first == last) {
        const QString times = clock(from.time()) + u" – " + clock(to.time());
        return longDateText(first) + u", " + (wholeDays ? u"bütün gün"_s : times);
    }
    if (wholeDays)
        return dayRangeWords(first, last);
    // With a time behind it, a bare day of the month would read badly.
    const QString begin =
        first.year() == last.year() ? fullDayText(first).section(u' ', 0, 1) : fullDayText(first);
    return begin + u' ' + clock(from.time()) + u" – " + fullDayText(last) + u' ' + clock(to.time());
}

QString dayRangeWords(QDate from, QDate to) {
    if (from > to)
        return backwards.toString();
    if (from == to)
        return longDateText(from);
    return dayText(from, to) + u" – " + fullDayText(to) + u", " + QString::number(from.daysTo(to) + 1) +
           u" gün";
}

}  // namespace kovanix
