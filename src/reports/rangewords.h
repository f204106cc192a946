#pragma once

#include <QDateTime>
#include <QString>

namespace kovanix {

/// The range of a report in words, both ends included and to the second:
/// "4 Mayıs 2026 Pazartesi, bütün gün", "4 Mayıs 2026 Pazartesi, 10:00 – 23:59", "1 – 4 Mayıs 2026, 4 gün",
/// "29 Nisan 09:30 – 4 Mayıs 2026 18:00". Seconds are told only where the range isn't one of whole minutes.
/// A range that ends before it begins is called that; without two valid moments there are no words.
QString rangeWords(const QDateTime& from, const QDateTime& to);

/// A range of whole days: "4 Mayıs 2026 Pazartesi", "1 – 4 Mayıs 2026, 4 gün"; one that ends before it begins
/// is called that.
QString dayRangeWords(QDate from, QDate to);

}  // namespace kovanix
