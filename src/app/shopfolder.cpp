#include "app/shopfolder.h"

#include <QDir>
#include <QFile>

#include "app/ayarmodul.h"
#include "desktop/folders.h"

namespace kovanix {

namespace {

const QString& configurationName() {
    static const QString name = QStringLiteral("Kovanix.config");
    return name;
}

void deliver(const QString& folder) {
    if (!QDir().mkpath(folder))
        return;
    QFile database(QDir(folder).filePath(QStringLiteral("kovanix.data")));
    // An empty file is an empty database; the schema check makes the tables when it is opened first.
    if (database.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        database.close();
    ayaryaz(QStringLiteral("ayar"), QStringLiteral("ensonkikisayol"), QStringLiteral("1"),
            QDir(folder).filePath(configurationName()));
    QDir().mkpath(drivePath(QStringLiteral("C:\\kovanix")));
}

}  // namespace

void prepareShopFolder(const QString& commandLine) {
    const QString folder = chooseApplicationFolder(
        commandLine, {configurationName(), QStringLiteral("kovanix.data"), QStringLiteral("kovanix.mdb")});
    setApplicationFolder(folder);
    if (!QDir(folder).exists())
        deliver(folder);
}

}  // namespace kovanix
