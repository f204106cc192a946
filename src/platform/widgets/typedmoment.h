#pragma once

#include <QDate>
#include <QStringView>
#include <QTime>
#include <optional>

namespace kovanix {

// The days that can be chosen and typed: those that are written with a year of four digits.
constexpr int firstYear = 100;
constexpr int lastYear = 9999;

/// Whether that is a day, and one of a year from 100 to 9999.
bool canBeChosen(QDate day);

/// The day that somebody has typed: "1.5.2026", "1.5.26" (of this century), "1.5" or, without any sign
/// between, "01052026", "010526" and "0105". Parts are separated by a dot, a comma, a slash, a hyphen or a
/// blank. Nothing for what is no day that can be chosen.
/// @param year  of a day that was typed without one
std::optional<QDate> typedDate(QStringView text, int year);

/// The time of day that somebody has typed: "7", "7:5" and "7:5:9" or, without any sign between, "730",
/// "0730", "73015" and "073015"; what is left out is 0. Parts are separated by a colon, a dot, a comma or a
/// blank. Nothing for what is no time of day.
std::optional<QTime> typedTime(QStringView text);

}  // namespace kovanix
