#include "newfile.h"

#include <fcntl.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlResult>

#include "database/serveraddress.h"
#include "database/sqltokens.h"
#include "failure.h"
#include "handover.h"
#include "shopfile.h"

namespace kovanix::tasi {

using namespace Qt::StringLiterals;

NewFile::NewFile(const QString& path) : m_path(path), m_made(path + u".yarim"_s) {
    if (QFileInfo::exists(path))
        throw Failure(ExitCode::fileUnfit, u"Bu dosya zaten var: "_s + path);
    if (ServerAddress::isPointer(path))
        throw Failure(ExitCode::usage, u"Bir veritabanı dosyasının adı .sunucu ile bitemez: "_s + path);
    if (isDatabaseInUse(m_made))
        throw Failure(ExitCode::fileUnfit, u"Bu dosyaya şu anda yazılıyor: "_s + path);
    remove();  // of a run that was killed
    QFile file(m_made);
    // The till's engine takes an empty file for a new database.
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly,
                   QFileDevice::ReadOwner | QFileDevice::WriteOwner))
        throw Failure(ExitCode::failed, u"Dosya açılamadı (%1): %2"_s.arg(file.errorString(), m_made));
}

void NewFile::keep() {
    const int file = ::open(QFile::encodeName(m_made).constData(), O_RDONLY | O_CLOEXEC);
    const bool synced = file >= 0 && ::fsync(file) == 0;
    if (file >= 0)
        ::close(file);
    if (!synced)
        throw Failure(ExitCode::failed, u"Dosya diske yazılamadı: "_s + m_made);
    giveToFolderOwner(m_made);
    renameFile(m_made, m_path);
}

void NewFile::remove() const {
    for (const QString& ending : {u""_s, u"-wal"_s, u"-shm"_s, u"-journal"_s})
        QFile::remove(m_made + ending);
}

FileFiller::FileFiller(const QString& path, const QString& password) {
    if (!m_handle.open(path, password))
        fail(m_handle.database().lastError());
    for (const QString& setting : {u"journal_mode=OFF"_s, u"synchronous=OFF"_s})
        run(u"PRAGMA "_s + setting);
    run(u"BEGIN EXCLUSIVE"_s);
}

void FileFiller::into(const Table& table) {
    QStringList names;
    for (const Column& column : table.columns)
        names.append(quotedSqlName(column.name));
    const QStringList places(names.size(), u"?"_s);
    m_insert = QSqlQuery(m_handle.database());
    m_insert.setForwardOnly(true);
    if (!m_insert.prepare(u"INSERT INTO %1 (%2) VALUES (%3)"_s.arg(quotedSqlName(table.name),
                                                                   names.join(u", "), places.join(u", "))))
        fail(m_insert.lastError());
    m_rows = m_insert.result()->handle().value<engine::RowCursor*>();
}

void FileFiller::add(const std::vector<engine::Cell>& cells) {
    if (!m_rows->runWith(cells))
        fail(m_insert.lastError());
}

void FileFiller::setCounter(const Table& table) {
    if (table.counter < 0 || table.lastNumber < 1)
        return;
    const QString name = u'\'' + QString(table.name).replace(u'\'', u"''"_s) + u'\'';
    run(u"DELETE FROM sqlite_sequence WHERE name = %1"_s.arg(name));
    run(u"INSERT INTO sqlite_sequence (name, seq) VALUES (%1, %2)"_s.arg(name,
                                                                         QString::number(table.lastNumber)));
}

void FileFiller::finish() {
    m_rows = nullptr;
    m_insert = QSqlQuery();
    run(u"COMMIT"_s);
    m_handle.close();
}

void FileFiller::run(const QString& sql) {
    QSqlQuery query(m_handle.database());
    if (!query.exec(sql))
        fail(query.lastError());
}

void FileFiller::fail(const QSqlError& error) {
    throw Failure(ExitCode::failed, u"Dosya yazılamadı: "_s + error.databaseText());
}

}  // namespace kovanix::tasi
