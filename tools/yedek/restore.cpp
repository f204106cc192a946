#include "yedek/restore.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <algorithm>

#include "app/ayarmodul.h"
#include "app/tekornek.h"
#include "database/filereader.h"
#include "desktop/singleinstance.h"
#include "runtime/attempt.h"
#include "runtime/clock.h"
#include "yedek/copies.h"
#include "yedek/failure.h"
#include "yedek/packedcopy.h"
#include "yedek/workfolder.h"

namespace kovanix::yedek {

using namespace Qt::StringLiterals;

namespace {

QString folderOf(const QString& path) {
    return QFileInfo(path).absolutePath();
}

void checkName(const QString& packed, const Manifest& manifest) {
    const CopyName name = CopyName::of(QFileInfo(packed).fileName());
    if (name.moment.isValid() && !name.fits(manifest))
        throw Refusal(u"Dosyanın adı ile içindeki yedeğin tarihi ya da dükkânı tutmuyor (içindeki: %1)"_s.arg(
            CopyName::of(manifest).text()));
}

/// Nobody may have the file open, and nothing of the shop may lie in a log when it is put aside. A file that
/// can't be read is put aside with its log as it is.
void requireAtRest(const Shop& shop) {
    if (!QFileInfo(shop.data).isFile())
        return;
    try {
        const FileReader readable(shop.data, shop.password);
    } catch (const DatabaseError&) {
        return;
    }
    try {
        settleFile(shop.data, shop.password);
    } catch (const DatabaseError& error) {
        if (error.kind() == DatabaseError::Kind::busy)
            throw Refusal(u"Dükkânın dosyası kullanımda: bütün kasaları kapatıp yeniden deneyin"_s);
    }
}

/// As the file that it takes the place of; where only the system may do that, as far as it lets us.
void makeLike(const QString& path, const QString& model) {
    struct stat found {};
    if (::stat(QFile::encodeName(model).constData(), &found) != 0)
        return;
    const QByteArray name = QFile::encodeName(path);
    constexpr mode_t permissions = 0777;
    [[maybe_unused]] const bool owned = ::chown(name.constData(), found.st_uid, found.st_gid) == 0;
    ::chmod(name.constData(), found.st_mode & permissions);
}

/// Puts a new shop in an old one's place.
class Exchange {
public:
    Exchange(const Shop& shop, QString parts, Storage& storage)
        : m_shop(shop),
          m_parts(std::move(parts)),
          m_storage(storage),
          m_config(QFileInfo(shop.config).exists() ? QFileInfo(shop.config).canonicalFilePath()
                                                   : shop.config) {}

    Restored run() {
        chooseStamp();
        prepareConfigs();
        const QString unpacked = QDir(m_parts).filePath(dataName);
        makeLike(unpacked, m_shop.data);
        m_storage.sync(unpacked);
        if (m_configs.isEmpty())
            exchangeDataOnly(unpacked);
        else
            exchangeBoth(unpacked);
        return m_result;
    }

private:
    /// A moment in names that nothing has yet.
    void chooseStamp() {
        for (QDateTime moment = Clock::now();; moment = moment.addSecs(1)) {
            m_stamp = moment.toString(u"yyyy-MM-dd-HHmmss"_s);
            m_new = QDir(folderOf(m_shop.data)).filePath(u"kovanix-geri-%1.data"_s.arg(m_stamp));
            const QStringList names{m_new, kept(m_shop.data), kept(m_config)};
            if (std::ranges::none_of(names, [](const QString& name) { return QFileInfo::exists(name); }))
                return;
        }
    }

    /// Two configurations for the new shop: with its data under the name that they are given first, and under
    /// the name that the shop's have.
    void prepareConfigs() {
        const QString copied = QDir(m_parts).filePath(configName);
        const bool isCopied = QFileInfo::exists(copied);
        if (!isCopied && !QFileInfo::exists(m_config))
            return;
        for (const QString& data : {m_new, m_shop.data}) {
            const QString prepared = QDir(m_parts).filePath(u"ayar-%1"_s.arg(m_configs.size()));
            copyFile(isCopied ? copied : m_config, prepared);
            if (!isCopied) {
                // A shop without a configuration has no password.
                ayaryaz(u"ayar"_s, u"dbpass"_s, {}, prepared);
                ayaryaz(u"ayar"_s, u"mdbparola"_s, {}, prepared);
            }
            ayaryaz(u"ayar"_s, u"ip"_s, data, prepared);
            if (ayaroku(u"ayar"_s, u"ip"_s, prepared) != data)
                throw Refusal(
                    u"Klasörün yolu ayar dosyasına sığmıyor ya da yazılamıyor, kısa ve Türkçe harfli bir yol gerekir: "_s +
                    data);
            makeLike(prepared, m_config);
            m_storage.sync(prepared);
            // Renamed from its own folder: the shop's may lie on another disk.
            const QString beside =
                QDir(folderOf(m_config)).filePath(u".kovanix-geri-ayar-%1"_s.arg(m_configs.size()));
            if (folderOf(m_config) != folderOf(m_shop.data)) {
                m_storage.remove(beside);
                copyFile(prepared, beside);
                makeLike(beside, m_config);
                m_storage.sync(beside);
                m_configs << beside;
            } else {
                m_configs << prepared;
            }
        }
    }

    QString kept(const QString& path) const { return path + u".oncesi-" + m_stamp; }

    /// A second name for what is about to be replaced; a copy where the disk knows no second names.
    void keep(const QString& path) {
        try {
            m_storage.link(path, kept(path));
        } catch (const Failure&) {
            copyFile(path, kept(path));
            m_storage.sync(kept(path));
        }
        m_storage.syncFolder(folderOf(path));
    }

    void renameDurably(const QString& from, const QString& to) {
        m_storage.rename(from, to);
        m_storage.syncFolder(folderOf(to));
    }

    void exchangeDataOnly(const QString& unpacked) {
        if (QFileInfo::exists(m_shop.data)) {
            keep(m_shop.data);
            m_result.keptData = kept(m_shop.data);
        }
        putLogsAside();
        renameDurably(unpacked, m_shop.data);
        m_result.data = m_shop.data;
    }

    void exchangeBoth(const QString& unpacked) {
        renameDurably(unpacked, m_new);
        if (QFileInfo::exists(m_config)) {
            keep(m_config);
            m_result.keptConfig = kept(m_config);
        }
        renameDurably(m_configs.first(), m_config);
        m_result.data = m_new;
        // The shop is the new one from here on. What follows gives its file the usual name.
        putLogsAside();
        if (QFileInfo::exists(m_shop.data)) {
            renameDurably(m_shop.data, kept(m_shop.data));
            m_result.keptData = kept(m_shop.data);
        }
        try {
            m_storage.link(m_new, m_shop.data);
        } catch (const Failure&) {
            return;  // a disk without second names: the shop keeps the name that it has
        }
        m_storage.syncFolder(folderOf(m_shop.data));
        renameDurably(m_configs.last(), m_config);
        m_result.data = m_shop.data;
        m_storage.remove(m_new);
        m_storage.syncFolder(folderOf(m_new));
    }

    /// A log that was left beside a file is read as that of whatever has the file's name.
    void putLogsAside() {
        for (const QString& end : {u"-wal"_s, u"-journal"_s}) {
            if (QFileInfo::exists(m_shop.data + end))
                renameDurably(m_shop.data + end, kept(m_shop.data) + end);
        }
        if (QFileInfo::exists(m_shop.data + u"-shm")) {
            m_storage.remove(m_shop.data + u"-shm");
            m_storage.syncFolder(folderOf(m_shop.data));
        }
    }

    const Shop& m_shop;
    QString m_parts;
    Storage& m_storage;
    QString m_stamp;
    QString m_config;
    QString m_new;
    QStringList m_configs;
    Restored m_result;
};

}  // namespace

Restored restoreCopy(const Shop& present, const QString& packed, Storage& storage,
                     const WorkProgress& progress) {
    Shop shop = present;
    if (present.isOnServer())
        shop.data = QDir(present.folder).filePath(dataName);
    // Held as long as this works: a till that is started meanwhile finds it taken, and ends.
    const SingleInstance till(tekornekadi());
    if (!till.isFirst())
        throw Refusal(u"Bu bilgisayarda kasa açık: kasayı kapatıp yeniden deneyin"_s);
    const WorkFolder work(folderOf(shop.data));
    const QString parts = work.makeFolder(u"yeni"_s);
    const Manifest manifest = unpackAndCheck(packed, parts, progress);
    checkName(packed, manifest);
    for (const QString& end : {u"-wal"_s, u"-shm"_s})  // of the proof
        QFile::remove(QDir(parts).filePath(dataName) + end);
    requireAtRest(shop);
    progress.tell(u"Dükkân değiştiriliyor"_s, 0, 0);
    Restored restored = Exchange(shop, parts, storage).run();
    restored.manifest = manifest;
    restored.leftServer = present.isOnServer();
    return restored;
}

Manifest checkCopy(const QString& packed, const QString& workPlace, const WorkProgress& progress) {
    const WorkFolder work(workPlace);
    const Manifest manifest = unpackAndCheck(packed, work.makeFolder(u"denetim"_s), progress);
    checkName(packed, manifest);
    return manifest;
}

}  // namespace kovanix::yedek
