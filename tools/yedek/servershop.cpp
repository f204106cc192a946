#include "yedek/servershop.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QScopeGuard>
#include <QStandardPaths>

#include "yedek/failure.h"

namespace kovanix::yedek {

using namespace Qt::StringLiterals;

namespace {

const QString programName = u"kovanix-tasi"_s;

/// Asked to stop it takes back what it began, which is a matter of moments.
void stop(QProcess& process) {
    constexpr int patience = 10000;  // milliseconds
    process.terminate();
    if (process.state() == QProcess::NotRunning || process.waitForFinished(patience))
        return;
    process.kill();
    process.waitForFinished(patience);
}

QString lastLine(const QByteArray& text) {
    const QString line = QString::fromUtf8(text).trimmed().section(u'\n', -1);
    const QString start = programName + u": "_s;
    return line.startsWith(start) ? line.sliced(start.size()) : line;
}

}  // namespace

QString serverProgram() {
    const QString beside =
        QStandardPaths::findExecutable(programName, {QCoreApplication::applicationDirPath()});
    return beside.isEmpty() ? QStandardPaths::findExecutable(programName) : beside;
}

void copyServerShop(const QString& pointer, const QString& target, const QString& password,
                    const std::function<void(qint64 done, qint64 total)>& progress) {
    constexpr int betweenSigns = 200;  // milliseconds
    const QString program = serverProgram();
    if (program.isEmpty())
        throw Refusal(
            u"Dükkânın verileri bir veritabanı sunucusunda. Yedeğini almak için “kovanix-sunucu” paketi de gerekir; bu bilgisayarda kurulu değil."_s);
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"KOVANIX_SUNUCU_PAROLA"_s, password);
    environment.insert(u"KOVANIX_DOSYA_PAROLA"_s, password);
    process.setProcessEnvironment(environment);
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(program, {u"--kopya"_s, pointer, target}, QIODevice::ReadOnly);
    auto stopped = qScopeGuard([&process, &target] {
        stop(process);
        QFile::remove(target);  // it may have been whole before it heard of it
    });
    if (!process.waitForStarted())
        throw Failure(u"%1 başlatılamadı: %2"_s.arg(program, process.errorString()));
    qint64 done = 0;
    qint64 total = 0;
    bool whole = false;
    while (true) {
        const bool running = process.state() != QProcess::NotRunning;
        if (running)
            process.waitForReadyRead(betweenSigns);
        while (process.canReadLine()) {
            const QList<QByteArray> words = process.readLine().trimmed().split(' ');
            whole = whole || words.first() == "bitti";
            if (words.first() == "ilerleme" && words.size() == 3) {
                done = words[1].toLongLong();
                total = words[2].toLongLong();
            }
        }
        progress(done, total);
        if (!running)
            break;
    }
    if (process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0 && whole &&
        QFileInfo(target).isFile()) {
        stopped.dismiss();
        return;
    }
    const QString words = lastLine(process.readAllStandardError());
    throw Failure(u"Sunucudaki dükkân kopyalanamadı: "_s +
                  (words.isEmpty() ? u"%1 yarıda kaldı"_s.arg(programName) : words));
}

}  // namespace kovanix::yedek
