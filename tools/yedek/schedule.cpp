#include "yedek/schedule.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSaveFile>
#include <QScopeGuard>
#include <QStandardPaths>
#include <optional>

#include "runtime/attempt.h"
#include "yedek/failure.h"
#include "yedek/words.h"

namespace kovanix::yedek {

using namespace Qt::StringLiterals;

namespace {

const QString timer = u"kovanix-yedek.timer"_s;

struct Answer {
    int status = -1;  ///< less than 0: it didn't run
    QString words;
};

Answer systemctl(const QStringList& arguments) {
    constexpr int patience = 20000;  // milliseconds
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(u"systemctl"_s, QStringList(u"--user"_s) + arguments, QIODevice::ReadOnly);
    if (!process.waitForFinished(patience) || process.exitStatus() != QProcess::NormalExit)
        return {};
    return {process.exitCode(), QString::fromLocal8Bit(process.readAll()).trimmed()};
}

void require(const Answer& answer) {
    if (answer.status == 0)
        return;
    throw Failure(u"Zamanlayıcı (systemd) yok ya da çalışmıyor: yedeği elle alın."_s +
                  detailWords({answer.words}));
}

/// Tells the service which shop it is for.
QString dropIn() {
    return QDir(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation))
        .filePath(u"systemd/user/kovanix-yedek.service.d/kovanix-folder.conf"_s);
}

std::optional<QByteArray> textOfDropIn() {
    QFile file(dropIn());
    return file.open(QIODevice::ReadOnly) ? std::optional(file.readAll()) : std::nullopt;
}

void writeDropIn(const QByteArray& text) {
    QDir().mkpath(QFileInfo(dropIn()).absolutePath());
    QSaveFile file(dropIn());
    if (!file.open(QIODevice::WriteOnly) || file.write(text) < 0 || !file.commit())
        throw Failure(u"Ayar yazılamadı: "_s + dropIn());
}

/// With its folder, unless there is something else in it.
void removeDropIn() {
    QFile::remove(dropIn());
    QDir().rmdir(QFileInfo(dropIn()).absolutePath());
}

/// A text within the quotes of a unit file.
QString quoted(QString text) {
    text.replace(u'\\', u"\\\\"_s).replace(u'"', u"\\\""_s).replace(u'%', u"%%"_s);
    return u'"' + text + u'"';
}

}  // namespace

bool isScheduled() {
    return systemctl({u"is-enabled"_s, u"--quiet"_s, timer}).status == 0;
}

void schedule(const Shop& shop) {
    if (!QFileInfo(shop.data).isFile())
        throw Failure(u"Bu klasörde dükkân yok: "_s + shop.folder);
    const std::optional<QByteArray> before = textOfDropIn();
    auto failed =
        qScopeGuard([&before] { attempt([&before] { before ? writeDropIn(*before) : removeDropIn(); }); });
    writeDropIn((u"[Service]\nEnvironment="_s + quoted(u"KOVANIX_FOLDER="_s + shop.folder) + u'\n').toUtf8());
    require(systemctl({u"daemon-reload"_s}));
    require(systemctl({u"enable"_s, u"--now"_s, timer}));
    failed.dismiss();
}

void unschedule() {
    require(systemctl({u"disable"_s, u"--now"_s, timer}));
    removeDropIn();
}

}  // namespace kovanix::yedek
