#pragma once

#include <QIcon>
#include <QString>
#include <memory>

class QSvgRenderer;

namespace kovanix {

/// The icon of a file. One that is built into the program is read and drawn once for all windows: a screen
/// that is opened again has its buttons' icons at hand. Any other file, which may change, is read anew,
/// and shared with those of the same content.
QIcon sharedIcon(const QString& path);

/// The process's one copy of an icon that comes from an SVG file, whoever loaded it. Any other icon is given
/// back as it is.
///
/// To be called before an icon is painted. The toolkit keeps for good the names under which an icon was
/// drawn, and each one that is loaded from a file, as each opening of a form does, has names of its own.
QIcon sharedIcon(const QIcon& icon);

/// An SVG drawing, shared in the same way. Never null; not valid where the file can't be read.
std::shared_ptr<QSvgRenderer> sharedDrawing(const QString& path);

}  // namespace kovanix
