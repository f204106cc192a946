#pragma once

#include <QString>
#include <QStringList>

namespace kovanix {

/// Starts another program and goes on without waiting for it.
/// @param program  a path, or a name that is looked up on PATH
/// @return whether it was started; nothing is shown when it wasn't
bool startProgram(const QString& program, const QStringList& arguments = {});

/// The first of the named programs that is installed, as a path; empty where none is.
QString firstInstalled(const QStringList& programs);

/// Opens a file or an address with the program that the desktop has for it. @return whether one was found.
bool openDocument(const QString& pathOrAddress);

}  // namespace kovanix
