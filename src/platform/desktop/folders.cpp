#include "desktop/folders.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <algorithm>

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

QString& currentFolder() {
    static QString folder;
    return folder;
}

QString absoluteClean(const QString& path) {
    return QDir::cleanPath(QFileInfo(path).absoluteFilePath());
}

QString withoutTrailingSeparator(QString folder) {
    while (folder.size() > 1 && folder.endsWith(QLatin1Char('/')))
        folder.chop(1);
    return folder;
}

}  // namespace

QString applicationFolder() {
    return currentFolder();
}

void setApplicationFolder(const QString& folder) {
    currentFolder() = withoutTrailingSeparator(folder);
}

QString chooseApplicationFolder(const QString& commandLine, const QStringList& markers) {
    if (!commandLine.isEmpty())
        return absoluteClean(commandLine);
    const QString variable = qEnvironmentVariable("KOVANIX_FOLDER");
    if (!variable.isEmpty())
        return absoluteClean(variable);
    const QDir own(QCoreApplication::applicationDirPath());
    const bool marked = std::any_of(markers.begin(), markers.end(), [&own](const QString& marker) {
        return QFileInfo(own, marker).isFile();
    });
    if (marked)
        return absoluteClean(own.path());
    return absoluteClean(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                         u"/kovanix"_s);
}

QString joinStored(const QString& folder, const QString& storedName) {
    // Only the stored name speaks in backslashes: in a folder of this machine one is an ordinary letter.
    QString name = storedName;
    name.replace(QLatin1Char('\\'), QLatin1Char('/'));
    QString base = withoutTrailingSeparator(folder);
    if (base == QLatin1String("/"))
        base.clear();
    if (!name.startsWith(QLatin1Char('/')))
        name.prepend(QLatin1Char('/'));
    return base + name;
}

QString drivePath(const QString& storedPath) {
    if (storedPath.size() < 2 || storedPath.at(1) != QLatin1Char(':') || !storedPath.at(0).isLetter())
        return storedPath;
    const QByteArray variable = "KOVANIX_DRIVE_" + storedPath.left(1).toUpper().toLatin1();
    QString drive = qEnvironmentVariable(variable.constData());
    if (drive.isEmpty())
        drive = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return joinStored(drive, storedPath.mid(2));
}

QString sharedFile(const QString& name) {
    const QDir program(QCoreApplication::applicationDirPath());
    return QDir::cleanPath(
        program.absoluteFilePath(QStringLiteral("../" KOVANIX_DATADIR "/kovanix/") + name));
}

}  // namespace kovanix
