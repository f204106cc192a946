#pragma once

#include <QDate>
#include <QString>
#include <QTime>

namespace kovanix {

// An invalid date or time gives the empty text.

/// A date as the shop reads it: dd.MM.yyyy.
QString dateText(QDate date);

/// A time of day as the shop reads it: HH:mm:ss.
QString timeText(QTime time);

/// The long date in Turkish: "3 Mayıs 2021 Pazartesi".
QString longDateText(QDate date);

}  // namespace kovanix
