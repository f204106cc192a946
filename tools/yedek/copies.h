#pragma once

#include <QDateTime>
#include <QList>
#include <QString>

#include "yedek/manifest.h"

namespace kovanix::yedek {

/// A packed copy as its folder and its own manifest tell of it; it isn't proved by that.
struct Copy {
    QString path;
    qint64 bytes = 0;
    Manifest manifest;
};

/// The name of a packed copy: "kovanix-2026-11-22-130500.yedek".
QString copyName(const QDateTime& moment);
/// The moment that such a name tells; invalid where it is another name.
QDateTime momentOfName(const QString& name);

/// The copies of a folder, newest first: files that are named like one and whose manifest is of the same
/// moment, in whatever time zone this machine stood then. Everything else is left out.
QList<Copy> copiesIn(const QString& folder);

}  // namespace kovanix::yedek
