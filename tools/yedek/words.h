#pragma once

#include <QDateTime>
#include <QString>

namespace kovanix::yedek {

/// "bugün 13:05", "dün 13:05", "5 gün önce, 17.11.2026 13:05".
QString momentWords(const QDateTime& moment, const QDateTime& now);

/// Whether a shop has gone without a copy for too long: two days, or no copy at all (an invalid moment).
bool isOverdue(const QDateTime& lastCopy, const QDateTime& now);

/// "812 KB", "24,5 MB", "1,2 GB".
QString sizeWords(qint64 bytes);

}  // namespace kovanix::yedek
