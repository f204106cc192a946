#pragma once

#include <QIcon>
#include <QString>
#include <memory>

class QSvgRenderer;

namespace kovanix {

/// The icon of a file. One that is built into the program is read and drawn once for all windows: a screen
/// that is opened again has its buttons' icons at hand. Any other file, which may change, is read anew.
QIcon sharedIcon(const QString& path);

/// An SVG drawing, shared in the same way. Never null; not valid where the file can't be read.
std::shared_ptr<QSvgRenderer> sharedDrawing(const QString& path);

}  // namespace kovanix
