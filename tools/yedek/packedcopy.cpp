#include "yedek/packedcopy.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>
#include <algorithm>
#include <cerrno>

#include "app/ayarmodul.h"
#include "database/filereader.h"
#include "yedek/failure.h"
#include "yedek/gzip.h"
#include "yedek/storage.h"
#include "yedek/tablesums.h"
#include "yedek/tar.h"
#include "yedek/words.h"

namespace kovanix::yedek {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 chunk = 1 << 20;

// Behind the manifest, as sha256sum writes and reads it.
const QString manifestSumName = u"manifest.json.sha256"_s;

QByteArray manifestSum(const QByteArray& json) {
    return QCryptographicHash::hash(json, QCryptographicHash::Sha256).toHex() + "  " +
           manifestName.toLatin1() + '\n';
}

void forEachChunk(const QString& path, const std::function<void(const QByteArray& bytes)>& each) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        throw Failure(systemWords(path, errno));
    while (true) {
        const QByteArray bytes = file.read(chunk);
        if (bytes.isEmpty())
            break;
        each(bytes);
    }
    if (file.error() != QFileDevice::NoError)
        throw Failure(systemWords(path, errno));
}

void addMember(GzipWriter& archive, const QString& name, const QByteArray& bytes, qint64 seconds) {
    archive.write(tarHead({name, bytes.size()}, seconds));
    archive.write(bytes);
    archive.write(QByteArray(tarPadding(bytes.size()), '\0'));
}

/// The head of the next member, which is that one.
qint64 enterMember(GzipReader& archive, const QString& name) {
    const TarMember member = readTarHead(archive.read(tarBlock));
    if (member.name != name)
        throw Refusal(u"Bu dosya bir Kovanix yedeği değil"_s);
    return member.size;
}

QByteArray readShortMember(GzipReader& archive, const QString& name) {
    const qint64 size = enterMember(archive, name);
    if (size > Manifest::longest)
        throw Refusal(u"Yedeğin bilgi sayfası bozuk"_s);
    const QByteArray bytes = archive.read(size);
    archive.read(tarPadding(size));
    return bytes;
}

Manifest readManifest(GzipReader& archive) {
    const QByteArray json = readShortMember(archive, manifestName);
    if (readShortMember(archive, manifestSumName) != manifestSum(json))
        throw Refusal(u"Yedeğin bilgi sayfası bozuk"_s);
    return Manifest::fromJson(json);
}

void unpackPart(GzipReader& archive, const Part& part, const QString& target, const WorkProgress& progress) {
    if (enterMember(archive, part.name) != part.size)
        throw Refusal(u"Yedeğin parçaları birbirini tutmuyor"_s);
    QFile file(target);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered,
                   QFile::ReadOwner | QFile::WriteOwner))
        throw Failure(systemWords(target, errno));
    SteadyWrites steady(target);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (qint64 done = 0; done < part.size;) {
        const QByteArray bytes = archive.read(std::min(chunk, part.size - done));
        hash.addData(bytes);
        if (file.write(bytes) != bytes.size())
            throw Failure(systemWords(target, errno));
        done += bytes.size();
        steady.upTo(done);
        progress.tell(u"Yedek açılıyor"_s, done, part.size);
    }
    archive.read(tarPadding(part.size));
    if (hash.result().toHex() != part.sha256)
        throw Refusal(u"Yedeğin parçaları birbirini tutmuyor"_s);
}

void checkData(const Manifest& manifest, const QString& folder, const WorkProgress& progress) {
    const QString config = QDir(folder).filePath(configName);
    const QString password = QFileInfo::exists(config) ? passwordIn(config) : QString();
    if (password.isEmpty() == manifest.hasPassword)
        throw Refusal(u"Yedeğin parolası ayarlarıyla tutmuyor"_s);
    try {
        FileReader data(QDir(folder).filePath(dataName), password);
        progress.tell(u"Yedek denetleniyor"_s, 0, 0);
        if (const QStringList faults = data.faults(); !faults.isEmpty())
            throw Refusal(u"Yedeğin veritabanı bozuk."_s + detailWords(faults));
        qint64 total = 0;
        for (const TableSum& table : manifest.tables)
            total += table.rows;
        const QList<TableSum> tables = tableSums(
            data, [&](qint64 rows) { progress.tell(u"Yedek denetleniyor"_s, rows, std::max(rows, total)); });
        if (tables != manifest.tables)
            throw Refusal(u"Yedeğin satırları ya da toplamları bilgi sayfasını tutmuyor"_s);
    } catch (const DatabaseError& error) {
        throw Refusal(u"Yedeğin veritabanı açılmıyor: "_s + error.description());
    }
}

}  // namespace

QString passwordIn(const QString& config) {
    for (const QString& key : {u"dbpass"_s, u"mdbparola"_s}) {
        if (const QString password = ayaroku(u"ayar"_s, key, config).trimmed(); !password.isEmpty())
            return password;
    }
    return {};
}

QByteArray sha256Of(const QString& path, const WorkProgress& progress, const QString& what) {
    QCryptographicHash hash(QCryptographicHash::Sha256);
    const qint64 total = QFileInfo(path).size();
    qint64 done = 0;
    forEachChunk(path, [&](const QByteArray& bytes) {
        hash.addData(bytes);
        done += bytes.size();
        progress.tell(what, done, total);
    });
    return hash.result().toHex();
}

void pack(const QString& folder, const Manifest& manifest, const QString& target,
          const WorkProgress& progress) {
    GzipWriter archive(target);
    const qint64 seconds = manifest.moment.toSecsSinceEpoch();
    const QByteArray json = manifest.toJson();
    addMember(archive, manifestName, json, seconds);
    addMember(archive, manifestSumName, manifestSum(json), seconds);
    for (const Part& part : manifest.parts) {
        archive.write(tarHead({part.name, part.size}, seconds));
        qint64 done = 0;
        forEachChunk(QDir(folder).filePath(part.name), [&](const QByteArray& bytes) {
            archive.write(bytes);
            done += bytes.size();
            progress.tell(u"Sıkıştırılıyor"_s, done, part.size);
        });
        archive.write(QByteArray(tarPadding(part.size), '\0'));
    }
    archive.write(tarEnd());
    archive.finish();
}

Manifest readManifest(const QString& packed) {
    GzipReader archive(packed);
    return readManifest(archive);
}

Manifest unpackAndCheck(const QString& packed, const QString& folder, const WorkProgress& progress) {
    auto left = qScopeGuard([&folder] {
        for (const QString& name : {dataName, configName})
            QFile::remove(QDir(folder).filePath(name));
    });
    checkPackedSum(packed,
                   [&](qint64 done, qint64 total) { progress.tell(u"Yedek okunuyor"_s, done, total); });
    GzipReader archive(packed);
    Manifest manifest = readManifest(archive);
    requireRoom(folder, manifest.parts.first().size);
    for (const Part& part : manifest.parts)
        unpackPart(archive, part, QDir(folder).filePath(part.name), progress);
    if (archive.read(tarEnd().size()) != tarEnd())
        throw Refusal(u"Yedek dosyası bozuk ya da eksik"_s);
    archive.finish();
    checkData(manifest, folder, progress);
    left.dismiss();
    return manifest;
}

}  // namespace kovanix::yedek
