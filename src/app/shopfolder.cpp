#include "app/shopfolder.h"

#include <QDir>
#include <QFile>

#include "app/ayarmodul.h"
#include "desktop/folders.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

const QString& configurationName() {
    static const QString name = u"Kovanix.config"_s;
    return name;
}

void deliver(const QString& folder) {
    if (!QDir().mkpath(folder))
        return;
    QFile database(QDir(folder).filePath(u"kovanix.data"_s));
    // An empty file is an empty database; the schema check makes the tables when it is opened first.
    if (database.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        database.close();
    ayaryaz(u"ayar"_s, u"ensonkikisayol"_s, u"1"_s, QDir(folder).filePath(configurationName()));
}

}  // namespace

void prepareShopFolder(const QString& commandLine) {
    const QString folder =
        chooseApplicationFolder(commandLine, {configurationName(), u"kovanix.data"_s, u"kovanix.mdb"_s});
    setApplicationFolder(folder);
    if (!QDir(folder).exists())
        deliver(folder);
    // Exports never make a folder, and a newcomer's machine has neither drive nor folder.
    QDir().mkpath(drivePath(u"C:\\kovanix"_s));
}

}  // namespace kovanix
