#pragma once

#include <QIcon>
#include <QString>

namespace kovanix {

/// The process's one copy of an icon that comes from an SVG file, whoever loaded it. Any other icon is given
/// back as it is.
///
/// To be called before an icon is painted. The toolkit keeps for good the names under which an icon was
/// drawn, and each one that is loaded from a file, as each opening of a screen does, has names of its own.
QIcon sharedIcon(const QIcon& icon);

/// The process's one copy of the icon from a file, by its path; null where there is no path.
QIcon sharedIcon(const QString& path);

}  // namespace kovanix
