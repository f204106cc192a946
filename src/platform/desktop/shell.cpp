#include "desktop/shell.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>

namespace kovanix {

bool startProgram(const QString& program, const QStringList& arguments) {
    if (program.isEmpty())
        return false;
    QProcess process;
    process.setProgram(program);  // a name without a slash is looked up on PATH
    process.setArguments(arguments);
    // Nothing of the till's own: what it writes must not land between the till's lines, nor may it wait for
    // keys.
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    return process.startDetached();
}

QString firstInstalled(const QStringList& programs) {
    for (const QString& program : programs) {
        const QString path = QStandardPaths::findExecutable(program);
        if (!path.isEmpty())
            return path;
    }
    return {};
}

bool openDocument(const QString& pathOrAddress) {
    const QUrl url = QUrl::fromUserInput(pathOrAddress);
    // The desktop's opener runs on its own and would tell of a missing file, if at all, when no one listens.
    if (!url.isValid() || (url.isLocalFile() && !QFileInfo::exists(url.toLocalFile())))
        return false;
    return QDesktopServices::openUrl(url);
}

}  // namespace kovanix
