#include "yedek/retention.h"

#include <QSet>
#include <algorithm>
#include <array>
#include <functional>
#include <utility>

namespace kovanix::yedek {

namespace {

/// A span of time of which one copy is kept; equal for all moments within it.
using SpanOf = int (*)(QDate day);

int dayOf(QDate day) {
    return static_cast<int>(day.toJulianDay());
}

int weekOf(QDate day) {
    return static_cast<int>(day.toJulianDay() / 7);  // day 0 was a Monday
}

int monthOf(QDate day) {
    constexpr int months = 12;
    return day.year() * months + day.month();
}

}  // namespace

QList<QDateTime> surplusCopies(QList<QDateTime> moments, const QDateTime& now, const Retention& kept) {
    std::ranges::sort(moments, std::greater());
    QSet<QDateTime> staying;
    moments.removeIf([&now](const QDateTime& moment) { return moment > now; });
    if (!moments.isEmpty())
        staying.insert(moments.first());
    const std::array<std::pair<SpanOf, int>, 3> spans{
        {{dayOf, kept.days}, {weekOf, kept.weeks}, {monthOf, kept.months}}};
    for (const auto& [spanOf, count] : spans) {
        QSet<int> seen;
        for (const QDateTime& moment : std::as_const(moments)) {
            const int span = spanOf(moment.date());
            if (seen.size() >= count)
                break;
            if (!seen.contains(span))
                staying.insert(moment);
            seen.insert(span);
        }
    }
    moments.removeIf([&staying](const QDateTime& moment) { return staying.contains(moment); });
    std::ranges::reverse(moments);
    return moments;
}

}  // namespace kovanix::yedek
