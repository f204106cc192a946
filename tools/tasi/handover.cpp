#include "handover.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <utility>

#include "failure.h"
#include "profile/profilefile.h"
#include "shopfile.h"

namespace kovanix::tasi {

using namespace Qt::StringLiterals;

namespace {

const QString configurationName = u"Kovanix.config"_s;
const QString section = u"sunucu"_s;

QString tlsWord(ServerAddress::Tls tls) {
    switch (tls) {
        case ServerAddress::Tls::full:
            return u"tam"_s;
        case ServerAddress::Tls::on:
            return u"var"_s;
        case ServerAddress::Tls::off:
            break;
    }
    return u"yok"_s;
}

bool isSame(const ServerAddress& one, const ServerAddress& other) {
    return one.hosts == other.hosts && one.port == other.port && one.database == other.database &&
           one.user == other.user && one.tls == other.tls && one.rootCertificate == other.rootCertificate;
}

void writeKey(const QString& file, const QString& inSection, const QString& key, const QString& value) {
    // What the code page lacks, blanks at the ends and quotes around it don't come back.
    if (!ProfileFile::setValue(file, inSection, key, value) ||
        ProfileFile::value(file, inSection, key) != value)
        throw Failure(ExitCode::unfinished, u"\"%1\" yazılamadı: %2"_s.arg(key, file));
}

void writeAddress(const QString& file, const ServerAddress& address) {
    writeKey(file, section, u"adres"_s, address.hosts.join(u','));
    writeKey(file, section, u"port"_s, QString::number(address.port));
    writeKey(file, section, u"veritabani"_s, address.database);
    writeKey(file, section, u"kullanici"_s, address.user);
    writeKey(file, section, u"tls"_s, tlsWord(address.tls));
    if (!address.rootCertificate.isEmpty())
        writeKey(file, section, u"kok"_s, address.rootCertificate);
}

/// Makes a file that its owner only reads, durable when this returns.
void copyPrivately(const QString& from, const QString& to) {
    QFile source(from);
    QFile copy(to);
    if (!source.open(QIODevice::ReadOnly) || !copy.open(QIODevice::WriteOnly | QIODevice::NewOnly,
                                                        QFileDevice::ReadOwner | QFileDevice::WriteOwner))
        throw Failure(ExitCode::unfinished, u"Ayar dosyasının kopyası alınamadı: "_s + to);
    const QByteArray bytes = source.readAll();
    if (copy.write(bytes) != bytes.size() || !copy.flush() || ::fsync(copy.handle()) != 0)
        throw Failure(ExitCode::unfinished, u"Ayar dosyasının kopyası alınamadı: "_s + to);
    copy.close();
    giveToFolderOwner(to);
}

}  // namespace

ServerAddress addressOf(const QString& pointer, const std::optional<ServerAddress>& told) {
    if (!ServerAddress::isPointer(pointer))
        throw Failure(ExitCode::usage, u"Sunucu dosyasının adı .sunucu ile bitmeli: "_s + pointer);
    if (!QFileInfo::exists(pointer)) {
        if (!told)
            throw Failure(
                ExitCode::usage,
                u"Sunucu dosyası yok: %1. Yazılması için --adres, --veritabani ve --kullanici verin."_s.arg(
                    pointer));
        return *told;
    }
    try {
        const ServerAddress written = ServerAddress::read(pointer);
        if (told && !isSame(written, *told))
            throw Failure(ExitCode::usage,
                          u"Sunucu dosyası başka bir adres gösteriyor: %1. Ya dosyayı ya da seçenekleri "
                          u"düzeltin."_s.arg(pointer));
        return written;
    } catch (const Failure&) {
        throw;
    } catch (const RuntimeError& error) {
        throw Failure(ExitCode::usage, error.description());
    }
}

QString reportPath(const QString& pointer) {
    const QFileInfo file(pointer);
    return QDir(file.absolutePath()).filePath(file.completeBaseName() + u"-tasima-raporu.tsv"_s);
}

QString movedName(const QString& file) {
    return file + u".tasindi"_s;
}

QString freeName(const QString& path) {
    QString name = path;
    for (int number = 2; QFileInfo::exists(name); ++number)
        name = path + u'-' + QString::number(number);
    return name;
}

Handover::Handover(QString pointer, ServerAddress address, QString password, const QStringList& folders)
    : m_pointer(QDir::cleanPath(QFileInfo(pointer).absoluteFilePath())),
      m_address(std::move(address)),
      m_password(std::move(password)) {
    for (const QString& folder : folders)
        m_folders.append(QDir::cleanPath(QFileInfo(folder).absoluteFilePath()));
}

/// The local files of all application folders that are known, but the shop's own: those folders that were
/// named, and those of the file and the pointer where settings lie there.
QStringList Handover::localFiles(const QString& file) const {
    QStringList folders = m_folders;
    for (const QString& path : {file, m_pointer}) {
        if (path.isEmpty())
            continue;
        const QString folder = QFileInfo(path).absolutePath();
        if (QFileInfo::exists(QDir(folder).filePath(configurationName)))
            folders.append(folder);
    }
    folders.removeDuplicates();
    QStringList files;
    for (const QString& folder : std::as_const(folders)) {
        for (const QString& name : {u"kovanix.data"_s, u"kovanix.mdb"_s}) {
            const QString local = QDir(folder).filePath(name);
            if (QFileInfo(local).isFile() &&
                QFileInfo(local).canonicalFilePath() != QFileInfo(file).canonicalFilePath())
                files.append(local);
        }
    }
    return files;
}

void Handover::check(const QString& file) const {
    if (!QFileInfo(QFileInfo(m_pointer).absolutePath()).isDir())
        throw Failure(ExitCode::usage, u"Sunucu dosyasının klasörü yok: "_s + m_pointer);
    for (const QString& folder : m_folders) {
        if (!QFileInfo(folder).isDir())
            throw Failure(ExitCode::usage, u"Klasör yok: "_s + folder);
    }
    for (const QString& local : localFiles(file)) {
        if (isDatabaseInUse(local))
            throw Failure(
                ExitCode::fileUnfit,
                u"Yerel dosya kullanımda: bütün kasaları kapatın, sonra yeniden deneyin. "_s + local);
    }
    // Tried out where nothing is lost.
    const QTemporaryDir place;
    const QString trial = place.filePath(configurationName);
    try {
        if (!m_folders.isEmpty()) {
            writeKey(trial, u"ayar"_s, u"ip"_s, m_pointer);
            writeKey(trial, u"ayar"_s, u"dbpass"_s, m_password);
        }
        if (!QFileInfo::exists(m_pointer))
            writeAddress(trial, m_address);
    } catch (const Failure&) {
        throw Failure(ExitCode::usage,
                      u"Parola, yol ya da adres ayar dosyasında tutulamıyor: başında ya da sonunda boşluk, "
                      u"tırnak veya Türkçe kod sayfasında olmayan bir harf var."_s);
    }
}

void Handover::writePointer() const {
    if (QFileInfo::exists(m_pointer)) {
        QFile::setPermissions(m_pointer, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
        return;
    }
    // Whole or not at all: half a pointer would be refused by the next run.
    const QString made = m_pointer + u".yarim"_s;
    QFile::remove(made);
    writeAddress(made, m_address);
    QFile::setPermissions(made, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    giveToFolderOwner(made);
    renameFile(made, m_pointer);
}

void Handover::bringFoldersIntoStep(const QString& file) {
    for (const QString& folder : std::as_const(m_folders)) {
        const QString written = nameDatabase(folder, m_pointer, m_password);
        if (!written.isEmpty())
            m_settings.append(written);
    }
    for (const QString& local : localFiles(file)) {
        const QString name = freeName(movedName(local));
        renameFile(local, name);
        for (const QString& ending : {u"-wal"_s, u"-shm"_s, u"-journal"_s}) {
            if (QFileInfo::exists(local + ending))
                renameFile(local + ending, name + ending);
        }
        m_renamed.append(name);
    }
}

QString nameDatabase(const QString& folder, const QString& file, const QString& password) {
    const QString settings = QDir(folder).filePath(configurationName);
    const auto value = [&settings](const QString& key) {
        return ProfileFile::value(settings, u"ayar"_s, key).trimmed();
    };
    const QString wantedOther = password.isEmpty() ? QString() : value(u"mdbparola"_s);
    if (value(u"ip"_s) == file && value(u"dbpass"_s) == password && value(u"mdbparola"_s) == wantedOther)
        return {};
    const bool there = QFileInfo::exists(settings);
    // The old password stands in there, without which nobody opens the old file again.
    if (there)
        copyPrivately(settings, freeName(movedName(settings)));
    writeKey(settings, u"ayar"_s, u"dbpass"_s, password);
    if (value(u"mdbparola"_s) != wantedOther)
        writeKey(settings, u"ayar"_s, u"mdbparola"_s, wantedOther);
    writeKey(settings, u"ayar"_s, u"ip"_s, file);
    // Both hold the password of before until a till writes them at its next start.
    for (const QString& key : {u"ConnectionString"_s, u"con"_s}) {
        if (!value(key).isEmpty())
            writeKey(settings, u"ayar"_s, key, {});
    }
    if (!there)
        giveToFolderOwner(settings);
    return settings;
}

void giveToFolderOwner(const QString& path) {
    struct stat folder {};
    if (::geteuid() == 0 &&
        ::stat(QFile::encodeName(QFileInfo(path).absolutePath()).constData(), &folder) == 0 &&
        ::chown(QFile::encodeName(path).constData(), folder.st_uid, folder.st_gid) != 0)
        throw Failure(ExitCode::unfinished, u"Dosyanın sahibi değiştirilemedi: "_s + path);
}

}  // namespace kovanix::tasi
