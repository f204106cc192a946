#include "shopfile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlResult>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>
#include <vector>

#include "database/declaredtype.h"
#include "database/engineerror.h"
#include "database/sqltokens.h"
#include "failure.h"

namespace kovanix::tasi {

using namespace Qt::StringLiterals;

namespace {

using Kind = DatabaseError::Kind;

bool isSystemName(const QString& name) {
    return name.startsWith("sqlite_"_L1, Qt::CaseInsensitive);
}

QString systemWords() {
    return QString::fromLocal8Bit(std::strerror(errno));
}

}  // namespace

ShopFile::ShopFile(const QString& path, const QString& password)
    : m_path(QFileInfo(path).canonicalFilePath()), m_hasPassword(!password.isEmpty()) {
    if (m_path.isEmpty() || !QFileInfo(m_path).isFile())
        throw Failure(ExitCode::fileUnfit, u"Dosya bulunamadı: "_s + path);
    open(password);
    readCatalogue();
}

void ShopFile::open(const QString& password) {
    if (!m_handle.open(m_path, password))
        fail(m_handle.database().lastError());
    run(u"BEGIN EXCLUSIVE"_s);
}

void ShopFile::fail(const QSqlError& error) const {
    const DatabaseError failure =
        engineError(error, m_hasPassword ? u"SQLCipher"_s : u"SQLite"_s, m_hasPassword);
    switch (failure.kind()) {
        case Kind::busy:
            throw Failure(ExitCode::fileUnfit,
                          u"Dosya kullanımda: bütün kasaları kapatın, sonra yeniden deneyin. "_s + m_path);
        case Kind::notADatabase:
        case Kind::wrongPassword:
            throw Failure(ExitCode::fileUnfit,
                          m_hasPassword
                              ? u"Dosyanın parolası yanlış (ya da dosya bozuk): "_s + m_path
                              : u"Dosya açılamıyor; parolası varsa --parola ile verin: "_s + m_path);
        case Kind::readOnly:
            throw Failure(ExitCode::fileUnfit, u"Dosyaya yazma izni yok, kilitlenemiyor: "_s + m_path);
        default:
            throw Failure(ExitCode::fileUnfit, u"Dosya okunamadı: "_s + failure.description());
    }
}

QSqlQuery ShopFile::run(const QString& sql) {
    QSqlQuery query(m_handle.database());
    query.setForwardOnly(true);
    if (!query.exec(sql))
        fail(query.lastError());
    return query;
}

qint64 ShopFile::number(const QString& sql) {
    QSqlQuery query = run(sql);
    return query.next() ? query.value(0).toLongLong() : 0;
}

void ShopFile::readCatalogue() {
    QList<std::pair<QString, QString>> found;
    QSqlQuery catalogue = run(u"SELECT type, name, tbl_name, sql FROM sqlite_master ORDER BY rowid"_s);
    while (catalogue.next()) {
        const QString type = catalogue.value(0).toString();
        const QString name = catalogue.value(1).toString();
        const QString table = catalogue.value(2).toString();
        const QString sql = catalogue.value(3).toString();
        if (isSystemName(name))
            continue;
        if (type == u"table"_s && sql.startsWith("CREATE VIRTUAL"_L1, Qt::CaseInsensitive))
            m_notices.append({name, u"sanal tablo, taşınmadı"_s});
        else if (type == u"table"_s)
            found.append({name, sql});
        else if (type == u"view"_s)
            m_notices.append({name, u"görünüm (view), taşınmadı"_s});
        else if (type == u"trigger"_s)
            m_notices.append({table, u"tetikleyici (trigger) taşınmadı: "_s + name});
        else if (!name.startsWith("kovanix_"_L1))
            m_notices.append({table, u"dizin (index) taşınmadı: "_s + name});
    }
    catalogue.finish();
    for (const auto& [name, sql] : std::as_const(found)) {
        m_tables.append(readTable(name, sql));
        noteOddities(m_tables.constLast());
    }
    const bool shop = std::ranges::any_of(
        m_tables, [](const Table& table) { return tillTables().contains(dialect::foldedName(table.name)); });
    if (!shop)
        throw Failure(ExitCode::fileUnfit, u"Bu dosyada bir dükkânın tabloları yok: "_s + m_path);
}

Table ShopFile::readTable(const QString& name, const QString& createSql) {
    Table table;
    table.name = name;
    QStringList declared;
    int keys = 0;
    // The engine of files with a password knows no computed columns, nor the question that lists them.
    const QString shape = u"PRAGMA %1(%2)"_s;
    const bool tellsComputed = run(shape.arg(u"table_xinfo"_s, quotedSqlName(name))).next();
    QSqlQuery columns =
        run(shape.arg(tellsComputed ? u"table_xinfo"_s : u"table_info"_s, quotedSqlName(name)));
    while (columns.next()) {
        // The engine puts these words behind the type of a column that it computes.
        const QString type = columns.value(2).toString().remove(u"GENERATED ALWAYS"_s).trimmed();
        if (tellsComputed && columns.value(6).toInt() != 0)
            m_notices.append({name, u"hesaplanan sütun (generated): değerleri taşındı, hesabı taşınmadı: "_s +
                                        columns.value(1).toString()});
        const Column column(declaredColumn(columns.value(1).toString(), type));
        if (columns.value(5).toInt() > 0) {
            ++keys;
            if (type.compare("INTEGER"_L1, Qt::CaseInsensitive) == 0)
                table.counter = static_cast<int>(table.columns.size());
        }
        table.columns.append(column);
        declared.append(type);
    }
    columns.finish();
    const auto hasColumn = [&table](const QString& column) {
        return std::ranges::any_of(table.columns, [&](const Column& each) {
            return each.name.compare(column, Qt::CaseInsensitive) == 0;
        });
    };
    for (const QString& identity : {u"rowid"_s, u"_rowid_"_s, u"oid"_s}) {
        if (hasColumn(identity))
            continue;
        // A table may be made without.
        QSqlQuery probe(m_handle.database());
        if (probe.prepare(u"SELECT %1 FROM %2"_s.arg(identity, quotedSqlName(name))))
            table.order = identity;
        break;
    }
    if (keys != 1 || table.order.isEmpty())
        table.counter = -1;
    if (table.counter >= 0)
        table.columns[table.counter].type = ColumnType::counter;
    chooseForms(table, declared);
    table.rows = number(u"SELECT count(*) FROM "_s + quotedSqlName(name));
    if (table.counter >= 0) {
        table.lastNumber = number(u"SELECT max(%1) FROM %2"_s.arg(
            quotedSqlName(table.columns[table.counter].name), quotedSqlName(name)));
        // Numbers are never given twice, those of rows that were deleted neither.
        if (createSql.contains("AUTOINCREMENT"_L1, Qt::CaseInsensitive)) {
            QString text = name;
            const qint64 given = number(u"SELECT max(seq) FROM sqlite_sequence WHERE name = '%1'"_s.arg(
                text.replace(u'\'', u"''"_s)));
            table.lastNumber = std::max(table.lastNumber, given);
        }
    }
    return table;
}

void ShopFile::chooseForms(Table& table, const QStringList& declared) {
    QList<int> foreign;
    for (int i = 0; i < table.columns.size(); ++i) {
        Column& column = table.columns[i];
        const std::optional<TableColumn> own = tillColumn(table.name, column.name);
        if (column.type == ColumnType::counter)
            column.form = Form::whole;
        else if (own && own->type != ColumnType::counter)
            takeTillForm(column, *own);
        else
            foreign.append(i);
    }
    const QList<ColumnContents> contents = contentsOf(table, foreign);
    for (qsizetype i = 0; i < foreign.size(); ++i)
        takeFormOfContents(table.columns[foreign[i]], declared[foreign[i]], contents[i]);
}

QList<ColumnContents> ShopFile::contentsOf(const Table& table, const QList<int>& columns) {
    QList<ColumnContents> all(columns.size());
    if (columns.isEmpty())
        return all;
    QStringList names;
    std::vector<bool> numeric;
    for (const int column : columns) {
        names.append(quotedSqlName(table.columns[column].name));
        numeric.push_back(table.columns[column].type == ColumnType::number);
    }
    QSqlQuery query = run(u"SELECT %1 FROM %2"_s.arg(names.join(u", "), quotedSqlName(table.name)));
    auto* const cursor = query.result()->handle().value<engine::RowCursor*>();
    while (cursor->nextRow()) {
        for (int i = 0; i < static_cast<int>(columns.size()); ++i)
            all[i].add(cursor->cell(i), numeric[static_cast<std::size_t>(i)]);
    }
    if (query.lastError().isValid())
        fail(query.lastError());
    return all;
}

void ShopFile::noteOddities(const Table& table) {
    if (!tillTables().contains(dialect::foldedName(table.name))) {
        m_notices.append(
            {table.name, u"kasanın tanımadığı tablo; sütunları ve satırları taşındı, kısıtları taşınmadı"_s});
        return;
    }
    for (const Column& column : table.columns) {
        if (column.type != ColumnType::counter && !isTillColumn(table.name, column.name))
            m_notices.append({table.name, u"kasanın tanımadığı sütun, taşındı: "_s + column.name});
    }
    if (table.counter < 0) {
        m_notices.append({table.name, u"sayacı yok; satırlar giriş sırasıyla taşındı"_s});
    } else if (const QString& name = table.columns[table.counter].name; !isTillColumn(table.name, name)) {
        m_notices.append({table.name, u"sayacının adı başka, numaralarıyla taşındı: "_s + name});
    }
}

void ShopFile::forEachRow(const Table& table, const std::function<void(const engine::RowCursor& row)>& each) {
    QStringList names;
    for (const Column& column : table.columns)
        names.append(quotedSqlName(column.name));
    const QString identity = table.order.isEmpty() ? u"NULL"_s : table.order;
    QString sql = u"SELECT %1, %2 FROM %3"_s.arg(names.join(u", "), identity, quotedSqlName(table.name));
    if (!table.order.isEmpty())
        sql += u" ORDER BY "_s + table.order;
    QSqlQuery query = run(sql);
    auto* const cursor = query.result()->handle().value<engine::RowCursor*>();
    qint64 rows = 0;
    while (cursor->nextRow()) {
        ++rows;
        each(*cursor);
    }
    if (query.lastError().isValid())
        fail(query.lastError());
    // A damaged file may lose rows without a word.
    if (rows != table.rows)
        throw Failure(ExitCode::fileUnfit,
                      u"Dosya bozuk: %1 tablosunda %2 satır sayıldı, %3 satır okundu"_s.arg(
                          table.name, QString::number(table.rows), QString::number(rows)));
}

void ShopFile::rename(const QString& path) {
    // The log bears the old name: nothing may be left in it.
    run(u"ROLLBACK"_s);
    QSqlQuery emptied = run(u"PRAGMA wal_checkpoint(TRUNCATE)"_s);
    if (!emptied.next() || emptied.value(0).toInt() != 0)
        throw Failure(ExitCode::unfinished, u"Dosyanın günlüğü boşaltılamadı: "_s + m_path);
    emptied.finish();
    renameFile(m_path, path);
    // The engine leaves a file alone that isn't at its path any more: the empty log, and the memory of a till
    // that died.
    const QString old = std::exchange(m_path, path);
    for (const QString& ending : {u"-wal"_s, u"-shm"_s})
        QFile::remove(old + ending);
}

bool isDatabaseInUse(const QString& path) {
    const int file = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return false;
    // Where the engine puts its locks; a program that has a file with a write-ahead log open keeps one there.
    struct flock wanted {};
    wanted.l_type = F_WRLCK;
    wanted.l_whence = SEEK_SET;
    wanted.l_start = 0x40000000;
    wanted.l_len = 512;
    const bool asked = ::fcntl(file, F_OFD_GETLK, &wanted) == 0;
    ::close(file);
    return asked && wanted.l_type != F_UNLCK;
}

void syncFolder(const QString& path) {
    const int folder =
        ::open(QFile::encodeName(QFileInfo(path).absolutePath()).constData(), O_RDONLY | O_CLOEXEC);
    if (folder < 0)
        return;
    ::fsync(folder);
    ::close(folder);
}

void renameFile(const QString& from, const QString& to) {
    if (::renameat2(AT_FDCWD, QFile::encodeName(from).constData(), AT_FDCWD,
                    QFile::encodeName(to).constData(), RENAME_NOREPLACE) != 0) {
        // A file system that doesn't know the flag.
        if (errno != EINVAL || QFileInfo::exists(to) ||
            ::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) != 0)
            throw Failure(ExitCode::unfinished,
                          u"Dosyanın adı değiştirilemedi (%1): %2"_s.arg(systemWords(), from));
    }
    syncFolder(to);
}

}  // namespace kovanix::tasi
