#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>

namespace kovanix::yedek {

/// "bugün 13:05", "dün 13:05", "5 gün önce, 17.11.2026 13:05".
QString momentWords(const QDateTime& moment, const QDateTime& now);

/// What a copy's moment says of its worth.
enum class CopyAge {
    fresh,
    overdue,  ///< a shop has gone without another one for too long: two days
    ahead,    ///< it lies ahead of now: the clock was wrong then or is now, and nobody knows how old it is
};

/// @param moment  of the copy, or an invalid one where there is none: that is overdue
CopyAge ageOf(const QDateTime& moment, const QDateTime& now);

/// What a program or an engine says of a failure, behind our own words: " (…)", in one line however much it
/// is; empty where it says nothing.
QString detailWords(const QStringList& said);

/// "812 KB", "24,5 MB", "1,2 GB".
QString sizeWords(qint64 bytes);

}  // namespace kovanix::yedek
