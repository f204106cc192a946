#pragma once

#include <QString>
#include <functional>

namespace kovanix::yedek {

/// The program that makes a file of a shop on a database server: the one beside this program, else the one on
/// the path; empty where the package with it isn't installed.
QString serverProgram();

/// Makes a file of a server's shop as it stands at one moment, in the form that the till has files in, while
/// tills sell. Nothing changes on the server.
/// @param pointer  names the server. @param target  there is none yet
/// @param password  the server's; the file gets it too, so that what was under a password stays so
/// @param progress  told how much is done of how much (0: not known); may throw, which leaves no file
/// @throws Refusal where that program isn't installed; Failure with its words where it fails
void copyServerShop(const QString& pointer, const QString& target, const QString& password,
                    const std::function<void(qint64 done, qint64 total)>& progress);

}  // namespace kovanix::yedek
