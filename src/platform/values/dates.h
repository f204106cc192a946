#pragma once

#include <QDate>
#include <QString>
#include <QTime>
#include <optional>

namespace kovanix {

// An invalid date or time gives the empty text.

/// A date as the shop reads it: dd.MM.yyyy.
QString dateText(QDate date);

/// A time of day as the shop reads it: HH:mm:ss.
QString timeText(QTime time);

/// The long date in Turkish: "3 Mayıs 2021 Pazartesi".
QString longDateText(QDate date);

/// A month in Turkish: "Mayıs 2021".
QString monthText(QDate date);

/// A moment as the shop reads it ("03.05.2021 07:05:09") from the form in which the database keeps it
/// ("2021-05-03 07:05:09"); nothing for what isn't in that form or is no moment.
std::optional<QString> shownMoment(QStringView stored);

/// The way back; nothing for what isn't a moment as the shop reads it.
std::optional<QString> storedMoment(QStringView shown);

}  // namespace kovanix
