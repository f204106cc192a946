#include "yedek/takecopy.h"

#include <fcntl.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <algorithm>
#include <cerrno>
#include <optional>

#include "database/filereader.h"
#include "runtime/attempt.h"
#include "runtime/clock.h"
#include "yedek/failure.h"
#include "yedek/gzip.h"
#include "yedek/packedcopy.h"
#include "yedek/retention.h"
#include "yedek/tablesums.h"
#include "yedek/words.h"
#include "yedek/workfolder.h"

namespace kovanix::yedek {

using namespace Qt::StringLiterals;

namespace {

/// The moment of a shop's next copy. A name tells seconds: of several copies of one second each is told as a
/// second behind the one before, and never as one ahead of it that has become free since. The newest data
/// would count as the older ones then, and a copy from ahead of now stay beside them. Only one that is
/// further ahead than that comes of a wrong clock.
QDateTime freeMoment(const QString& folder, const QString& shop) {
    constexpr int furthest = 60;  // seconds
    const QDateTime now = Clock::now();
    QDateTime moment = now.addMSecs(-now.time().msec());
    const QStringList names = QDir(folder).entryList({u"kovanix-*.yedek"_s}, QDir::Files | QDir::Hidden);
    for (const QString& name : names) {
        const auto [taken, owner] = CopyName::of(name);
        const bool mayBeOwn = owner.isEmpty() || owner == shop;
        if (mayBeOwn && taken.isValid() && taken >= moment && taken <= now.addSecs(furthest))
            moment = taken.addSecs(1);
    }
    while (QFileInfo::exists(QDir(folder).filePath(CopyName{moment, shop}.text())))
        moment = moment.addSecs(1);
    return moment;
}

Part partOf(const QString& folder, const QString& name, const WorkProgress& progress) {
    const QString path = QDir(folder).filePath(name);
    return {name, QFileInfo(path).size(), sha256Of(path, progress, u"Okunuyor"_s)};
}

/// Copies the shop's data and configuration into a folder and writes down what they hold.
Manifest collect(const Shop& shop, const QString& folder, const QDateTime& moment,
                 const WorkProgress& progress) {
    const QString data = QDir(folder).filePath(dataName);
    copyShopData(shop, data,
                 [&](qint64 done, qint64 total) { progress.tell(u"Dükkân kopyalanıyor"_s, done, total); });
    Manifest manifest{
        .moment = moment,
        .version = QCoreApplication::applicationVersion(),
        .shop = shop.id,
        .hasPassword = !shop.password.isEmpty(),
        .parts = {},
        .tables = {},
    };
    {
        FileReader copy(data, shop.password);
        progress.tell(u"Denetleniyor"_s, 0, 0);
        if (const QStringList faults = copy.faults(); !faults.isEmpty())
            throw Failure(u"Dükkânın veritabanı bozuk, yedeği alınmadı. Önceki yedekler duruyor."_s +
                          detailWords(faults));
        manifest.tables =
            tableSums(copy, [&](qint64 rows) { progress.tell(u"Denetleniyor: %1 satır"_s.arg(rows), 0, 0); });
    }
    manifest.parts.append(partOf(folder, dataName, progress));
    if (QFileInfo::exists(shop.config)) {
        const QString config = QDir(folder).filePath(configName);
        copyFile(shop.config, config);
        manifest.parts.append(partOf(folder, configName, progress));
    }
    return manifest;
}

/// What is read of the file from now on comes from the disk, as far as the system does as it is asked.
void dropFromMemory(const QString& path) {
    const int handle = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (handle < 0)
        return;
    ::posix_fadvise(handle, 0, 0, POSIX_FADV_DONTNEED);
    ::close(handle);
}

/// The moments of a shop's copies that may go. What stays in their place is read first: for the sake of a
/// harmed one none goes.
QList<QDateTime> surplusOf(const QList<Copy>& own, const Manifest& newest, const WorkProgress& progress) {
    QHash<QDateTime, QString> unread;
    for (const Copy& copy : own)
        unread.insert(copy.manifest.moment, copy.path);
    QList<QDateTime> moments = unread.keys();
    unread.remove(newest.moment);  // proved as it came
    while (true) {
        const QList<QDateTime> surplus = surplusCopies(moments, std::max(Clock::now(), newest.moment));
        if (surplus.isEmpty())
            return {};
        const auto harmed = std::ranges::find_if(moments, [&](const QDateTime& moment) {
            return !surplus.contains(moment) && unread.contains(moment) &&
                   attempt([&, path = unread.take(moment)] {
                       checkPackedSum(path, [&](qint64 done, qint64 total) {
                           progress.tell(u"Eski yedekler denetleniyor"_s, done, total);
                       });
                       dropFromMemory(path);
                   }).has_value();
        });
        if (harmed == moments.end())
            return surplus;
        moments.erase(harmed);
    }
}

/// Removes what is older than what is kept, of the shop of a copy that has just come. A copy that can't be
/// removed stays.
void removeSurplus(const QString& folder, const Manifest& newest, Storage& storage,
                   const WorkProgress& progress) {
    QList<Copy> own = copiesIn(folder);
    own.removeIf([&newest](const Copy& copy) { return copy.manifest.shop != newest.shop; });
    try {
        const QList<QDateTime> surplus = surplusOf(own, newest, progress);
        for (const Copy& copy : std::as_const(own)) {
            if (surplus.contains(copy.manifest.moment))
                attempt([&] { storage.remove(copy.path); });
        }
    } catch (const WorkProgress::Cancelled&) {
        return;  // the new copy stands: the old ones go another time
    }
    attempt([&] { storage.syncFolder(folder); });
}

/// With what lies in its log.
qint64 sizeOf(const QString& data) {
    return QFileInfo(data).size() + QFileInfo(data + u"-wal").size();
}

}  // namespace

Copy takeCopy(const Shop& shop, const QString& folder, Storage& storage, const WorkProgress& progress) {
    if (!shop.isOnServer() && !QFileInfo(shop.data).isFile())
        throw Failure(u"Dükkânın veritabanı bulunamadı: "_s + shop.data);
    const WorkFolder work(folder);
    // Behind one another: the copy, the packed one, the unpacked one. How large a server's is shows later.
    requireRoom(folder, 2 * sizeOf(shop.data));
    const QDateTime moment = freeMoment(folder, shop.id);
    const QString packed = work.file(u"kopya"_s);
    qint64 size = 0;
    {
        const QString parts =
            work.makeFleetingFolder(u"parcalar"_s, shop.isOnServer() ? 0 : sizeOf(shop.data));
        const Manifest manifest = collect(shop, parts, moment, progress);
        size = manifest.parts.first().size;
        requireRoom(folder, size);
        pack(parts, manifest, packed, progress);
        QDir(parts).removeRecursively();
    }
    storage.sync(packed);
    dropFromMemory(packed);
    const QString opened = work.makeFleetingFolder(u"denetim"_s, size);
    const Copy copy{QDir(folder).absoluteFilePath(CopyName{moment, shop.id}.text()), QFileInfo(packed).size(),
                    unpackAndCheck(packed, opened, progress)};
    storage.rename(packed, copy.path);
    storage.syncFolder(folder);
    removeSurplus(folder, copy.manifest, storage, progress);
    return copy;
}

void repeatCopy(const Copy& copy, const QString& folder, Storage& storage, const WorkProgress& progress) {
    const WorkFolder work(folder, [&progress] { progress.tell(u"USB bellek bekleniyor"_s, 0, 0); });
    requireRoom(folder, copy.bytes);
    const QString written = work.file(u"kopya"_s);
    QFile from(copy.path);
    QFile to(written);
    if (!from.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        throw Failure(systemWords(copy.path, errno));
    if (!to.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered))
        throw Failure(systemWords(written, errno));
    SteadyWrites steady(written);
    constexpr qint64 chunk = 1 << 20;
    for (qint64 done = 0; done < copy.bytes;) {
        const QByteArray bytes = from.read(chunk);
        if (bytes.isEmpty() || to.write(bytes) != bytes.size())
            throw Failure(systemWords(bytes.isEmpty() ? copy.path : written, errno));
        done += bytes.size();
        steady.upTo(done);
        progress.tell(u"USB belleğe yazılıyor"_s, done, copy.bytes);
    }
    to.close();
    storage.sync(written);
    dropFromMemory(written);
    const QString denetim = u"USB bellek denetleniyor"_s;
    if (sha256Of(written, progress, denetim) != sha256Of(copy.path, progress, denetim))
        throw Failure(u"USB bellekten geri okunan yedek bozuk: "_s + folder);
    const QString final = QDir(folder).absoluteFilePath(CopyName::of(copy.manifest).text());
    storage.rename(written, final);
    storage.syncFolder(folder);
    removeSurplus(folder, copy.manifest, storage, progress);
}

}  // namespace kovanix::yedek
