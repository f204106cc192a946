#pragma once

#include <QString>
#include <QStringList>
#include <functional>

#include "yedek/shop.h"

namespace kovanix::yedek {

/// The name of a folder of copies, which also marks a stick that is meant for them.
inline const QString folderName = QStringLiteral("Kovanix yedek");

/// The folder that a shop's copies go to: the one that was chosen, else one in the user's documents.
QString copyFolder(const Shop& shop);
/// Keeps the choice beside the shop's configuration; an empty one brings the usual folder back.
/// @throws Failure where it can't be kept
void chooseCopyFolder(const Shop& shop, const QString& folder);

/// A stick that stands in the machine and can be written.
struct Stick {
    QString name;  ///< as the desktop shows it
    QString root;
    QString folder;         ///< for the copies
    bool isMarked = false;  ///< that folder is there: the owner wants copies on it
};

/// The sticks of this user.
QList<Stick> sticks();
/// Those below the folders where sticks appear. @param isMount  whether something is mounted at a path and
/// can be written
QList<Stick> sticksBelow(const QStringList& places, const std::function<bool(const QString&)>& isMount);

/// Whether two paths lie on one disk, whose end would be the end of both.
bool onOneDisk(const QString& one, const QString& other);

}  // namespace kovanix::yedek
