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

/// What the name of a packed copy tells: "kovanix-2026-11-22-130500-0a1b2c3d4e5f.yedek".
struct CopyName {
    QDateTime moment;  ///< invalid where it is another name
    QString shop;      ///< empty in the older form, "kovanix-2026-11-22-130500.yedek"

    static CopyName of(const QString& name);
    static CopyName of(const Manifest& manifest) { return {manifest.moment, manifest.shop}; }
    QString text() const;
    /// Whether a copy of that manifest may bear it, in the form of today or in the older one.
    bool fits(const Manifest& manifest) const;
};

/// The copies of a folder, newest first: files that are named like one and whose manifest is of the same
/// moment, in whatever time zone this machine stood then, and of the same shop. Everything else is left out.
/// Several shops may have their copies in one folder.
QList<Copy> copiesIn(const QString& folder);

}  // namespace kovanix::yedek
