#include "app/shopfolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "app/ayarmodul.h"
#include "desktop/folders.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

const QString& configurationName() {
    static const QString name = u"Kovanix.config"_s;
    return name;
}

/// Makes a folder that nobody but its owner enters; those above it are made as ever.
bool makeOwnFolder(const QString& folder) {
    const QString above = QFileInfo(folder).absolutePath();
    return QDir().mkpath(above) &&
           QDir().mkdir(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

// Password digests and the database file's own password lie in it.
void deliver(const QString& folder) {
    if (!makeOwnFolder(folder))
        return;
    QFile database(QDir(folder).filePath(u"kovanix.data"_s));
    // An empty file is an empty database; the schema check makes the tables when it is opened first.
    if (database.open(QIODevice::WriteOnly | QIODevice::NewOnly, QFile::ReadOwner | QFile::WriteOwner))
        database.close();
    ayaryaz(u"ayar"_s, u"ensonkikisayol"_s, u"1"_s, QDir(folder).filePath(configurationName()));
}

}  // namespace

void findShopFolder(const QString& commandLine) {
    setApplicationFolder(
        chooseApplicationFolder(commandLine, {configurationName(), u"kovanix.data"_s, u"kovanix.mdb"_s}));
}

void prepareShopFolder(const QString& commandLine) {
    findShopFolder(commandLine);
    if (!QDir(applicationFolder()).exists())
        deliver(applicationFolder());
    // Exports never make a folder, and a newcomer's machine has neither drive nor folder.
    QDir().mkpath(drivePath(u"C:\\kovanix"_s));
}

}  // namespace kovanix
