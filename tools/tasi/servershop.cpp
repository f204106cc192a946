#include "servershop.h"

#include <QRegularExpression>
#include <algorithm>

#include "database/failuretext.h"

#include "database/serversession.h"

namespace kovanix::tasi {

using namespace Qt::StringLiterals;
using dialect::Target;

namespace {

constexpr int longestName = 63;  // bytes; the server cuts what is longer without a word

QString quoted(const QString& name) {
    return dialect::quotedName(name, Target::server);
}

/// The column by which rows come in order of entry, quoted.
QString orderColumn(const Table& table) {
    return table.counter >= 0 ? quoted(table.columns[table.counter].name) : quoted(dialect::hiddenIdentity);
}

QString columnList(const Table& table) {
    QStringList names;
    for (const Column& column : table.columns)
        names.append(quoted(column.name));
    return names.join(u", ");
}

[[noreturn]] void refuseName(const QString& name) {
    throw Failure(ExitCode::fileUnfit,
                  u"Bu adı sunucu kendisi kullanıyor, dosyada değiştirin (tablo ya da sütun): "_s + name);
}

void checkTableName(Server& server, const QString& name) {
    const QString folded = dialect::foldedName(name);
    // A name of the server's own goes before all others of that name.
    if (folded == markTable() ||
        !server.value(u"SELECT to_regclass(%1)"_s.arg(serverText(u"pg_catalog."_s + quoted(name)))).isEmpty())
        refuseName(name);
}

void checkColumnName(const QString& name) {
    static const QStringList taken{
        dialect::hiddenIdentity, u"ctid"_s, u"xmin"_s, u"xmax"_s, u"cmin"_s, u"cmax"_s, u"tableoid"_s};
    if (taken.contains(dialect::foldedName(name)))
        refuseName(name);
}

void checkLength(const QString& name) {
    if (dialect::foldedName(name).toUtf8().size() > longestName)
        throw Failure(ExitCode::fileUnfit, u"Bu ad sunucu için çok uzun: "_s + name);
}

/// The form and type of a column that a till or somebody else has made on the server.
/// @param type  the type's name, of a domain its own; @param base  what that is over
Column columnOf(const QString& name, const QString& type, const QString& base) {
    static const QRegularExpression textDomain(u"^kovanix_metin(\\d*)$"_s);
    Column column;
    column.name = name;
    if (const auto match = textDomain.match(type); match.hasMatch()) {
        column.width = match.captured(1).toInt();
    } else if (type == u"kovanix_an"_s || base.startsWith("timestamp"_L1) || base == u"date"_s) {
        column.type = ColumnType::moment;
        column.form = Form::moment;
    } else if (base == u"bool"_s) {
        column.type = ColumnType::number;
        column.form = Form::whole;
        column.isTruth = true;
    } else if (base == u"int8"_s) {
        column.type = ColumnType::number;
        column.form = Form::whole;
    } else if (QStringList{u"float8"_s, u"float4"_s, u"int4"_s, u"int2"_s, u"numeric"_s}.contains(base)) {
        column.type = ColumnType::number;
        column.form = Form::number;
    } else if (base == u"bytea"_s) {
        column.form = Form::bytes;
    }
    return column;
}

/// What gives a column's cells in its form.
QString formExpression(const Column& column) {
    const QString name = quoted(column.name);
    switch (column.form) {
        case Form::number:
            return name + u"::float8"_s;
        case Form::whole:
            return column.isTruth ? name + u"::int4::int8"_s : name + u"::int8"_s;
        case Form::text:
        case Form::moment:
            return name + u"::text"_s;
        case Form::bytes:
            break;
    }
    return name;
}

Table readTable(Server& server, const QString& name, const QString& oid) {
    Table table;
    table.name = name;
    table.order = u"ctid"_s;
    const QList<QStringList> columns = server.rows(
        u"SELECT a.attname, t.typname, coalesce(b.typname, t.typname), a.attidentity, "
        u"pg_get_serial_sequence(quote_ident(%2), a.attname) FROM pg_attribute a "
        u"JOIN pg_type t ON t.oid = a.atttypid LEFT JOIN pg_type b ON b.oid = t.typbasetype AND "
        u"t.typbasetype <> 0 "
        u"WHERE a.attrelid = %1 AND a.attnum > 0 AND NOT a.attisdropped ORDER BY a.attnum"_s.arg(
            oid, serverText(name)));
    for (const QStringList& row : columns) {
        const bool identity = !row[3].isEmpty();
        if (identity)
            table.order = quoted(row[0]);
        if (row[0] == dialect::hiddenIdentity)
            continue;
        Column column = columnOf(row[0], row[1], row[2]);
        if (identity && table.counter < 0) {
            column.type = ColumnType::counter;
            column.form = Form::whole;
            table.counter = static_cast<int>(table.columns.size());
            table.lastNumber =
                server.value(u"SELECT CASE WHEN is_called THEN last_value ELSE 0 END FROM %1"_s.arg(row[4]))
                    .toLongLong();
        }
        table.columns.append(column);
    }
    table.rows = server.value(u"SELECT count(*) FROM "_s + quoted(name)).toLongLong();
    if (table.counter >= 0) {
        const QString last = server.value(u"SELECT max(%1) FROM %2"_s.arg(table.order, quoted(name)));
        table.lastNumber = std::max(table.lastNumber, last.toLongLong());
    }
    return table;
}

}  // namespace

QString markTable() {
    return u"kovanix_tasima"_s;
}

void checkDatabase(Server& server) {
    const QStringList found = server
                                  .rows(
                                      u"SELECT pg_encoding_to_char(encoding), datcollate, datctype, "
                                      u"datlocprovider, current_schema() IS NOT NULL FROM pg_database "
                                      u"WHERE datname = current_database()"_s)
                                  .constFirst();
    const auto plain = [](const QString& locale) { return locale == u"C"_s || locale == u"POSIX"_s; };
    if (found[0] != u"UTF8"_s || !plain(found[1]) || !plain(found[2]) || found[3] != u"c"_s)
        throw Failure(
            ExitCode::serverUnfit,
            u"Veritabanı yanlış kurulmuş: ENCODING 'UTF8' LOCALE 'C' gerekli, bulunan %1. "
            u"Yeni bir veritabanı açın: createdb --template=template0 --encoding=UTF8 --locale=C"_s.arg(
                localeText({found[0], found[3], found[1], found[2]})));
    if (found[4] != u"t"_s)
        throw Failure(ExitCode::serverUnfit, u"Bu kullanıcının veritabanında tablo yeri (şema) yok."_s);
}

std::optional<MoveMark> findMark(Server& server) {
    const QString table = serverText(quoted(markTable()));
    if (server.value(u"SELECT to_regclass(%1)"_s.arg(table)).isEmpty())
        return std::nullopt;
    const QList<QStringList> rows = server.rows(u"SELECT ozet, dosya, an FROM "_s + quoted(markTable()));
    if (rows.isEmpty())
        return std::nullopt;
    const QStringList& row = rows.constFirst();
    return MoveMark{row[0], row[1], row[2]};
}

QStringList findTables(Server& server, const QList<Table>& tables) {
    QStringList names = tillTables();
    names.append(markTable());
    for (const Table& table : tables)
        names.append(dialect::foldedName(table.name));
    names.removeDuplicates();
    QStringList texts;
    for (const QString& name : std::as_const(names))
        texts.append(serverText(name));
    const QList<QStringList> rows = server.rows(
        u"SELECT relname, relkind = 'r' AND has_table_privilege(oid, 'SELECT') FROM pg_class WHERE "
        u"relnamespace = current_schema()::regnamespace AND relname IN (%1) ORDER BY relname"_s.arg(
            texts.join(u", ")));
    QStringList found;
    for (const QStringList& row : rows) {
        const QString count =
            row[1] == u"t"_s ? server.value(u"SELECT count(*) FROM "_s + quoted(row[0])) : u"?"_s;
        found.append(u"%1 (%2 satır)"_s.arg(row[0], count));
    }
    return found;
}

void lockSchema(Server& server) {
    try {
        server.execute(u"SELECT pg_advisory_xact_lock(%1)"_s.arg(serverTableLock));
    } catch (const ServerFailure& failure) {
        if (failure.state() != "55P03")
            throw;
        throw Failure(
            ExitCode::serverUnfit,
            u"Bir kasa şu anda bu veritabanında tablo açıyor; bütün kasaları kapatın, yeniden deneyin."_s);
    }
}

void prepareTypes(Server& server, const QList<Table>& tables) {
    if (server.value(u"SELECT to_regtype('citext')"_s).isEmpty()) {
        try {
            server.execute(u"CREATE EXTENSION citext"_s);
        } catch (const ServerFailure& failure) {
            if (failure.state().isEmpty())
                throw;
            throw Failure(
                ExitCode::serverUnfit,
                u"Veritabanında citext eklentisi yok ve bu kullanıcı kuramıyor; sunucunun yöneticisi "
                u"veritabanında CREATE EXTENSION citext çalıştırsın. %1"_s.arg(failure.description()));
        }
    }
    for (const Table& table : tables) {
        for (const dialect::Domain& domain : dialect::domains(createStatement(table, Target::server))) {
            if (server.value(u"SELECT to_regtype(%1)"_s.arg(serverText(domain.name))).isEmpty())
                server.execute(domain.statement);
        }
    }
}

void makeTable(Server& server, const Table& table) {
    checkLength(table.name);
    checkTableName(server, table.name);
    for (const Column& column : table.columns) {
        checkLength(column.name);
        checkColumnName(column.name);
    }
    server.execute(
        dialect::translate(createStatement(table, Target::server), {}, dialect::Engine(Target::server)));
}

void beginFill(Server& server, const Table& table) {
    const QString place = table.counter >= 0 ? QString() : quoted(dialect::hiddenIdentity) + u", ";
    // Frozen: these rows are nobody's but this transaction's, and the server needn't look at them again.
    server.beginCopyIn(u"COPY %1 (%2%3) FROM STDIN (FORMAT binary, FREEZE)"_s.arg(quoted(table.name), place,
                                                                                  columnList(table)));
}

void beginRead(Server& server, const Table& table) {
    QStringList expressions;
    for (const Column& column : table.columns)
        expressions.append(formExpression(column));
    const QString order = table.order.isEmpty() ? orderColumn(table) : table.order;
    server.beginCopyOut(u"COPY (SELECT %1 FROM %2 ORDER BY %3) TO STDOUT (FORMAT binary)"_s.arg(
        expressions.join(u", "), quoted(table.name), order));
}

void setCounter(Server& server, const Table& table) {
    const QString column =
        table.counter >= 0 ? dialect::foldedName(table.columns[table.counter].name) : dialect::hiddenIdentity;
    const qint64 last = table.counter >= 0 ? table.lastNumber : table.rows;
    server.execute(u"SELECT setval(pg_get_serial_sequence(%1, %2), %3, %4)"_s.arg(
        serverText(quoted(table.name)), serverText(column), QString::number(std::max<qint64>(last, 1)),
        last >= 1 ? u"true"_s : u"false"_s));
}

void makeIndexes(Server& server, const QList<Table>& tables) {
    const auto make = [&](const QString& name, const QString& column) {
        for (const Table& table : tables) {
            if (dialect::foldedName(table.name) != name)
                continue;
            const bool there = std::ranges::any_of(
                table.columns, [&](const Column& each) { return dialect::foldedName(each.name) == column; });
            if (there)
                server.execute(u"CREATE INDEX %1 ON %2 (%3)"_s.arg(
                    quoted(u"kovanix_%1_%2"_s.arg(name, column)), quoted(name), quoted(column)));
        }
    };
    make(u"urunler"_s, u"barkod"_s);
    make(u"satislar"_s, u"tarih"_s);
}

void analyse(Server& server, const QList<Table>& tables) {
    QStringList names;
    for (const Table& table : tables)
        names.append(quoted(table.name));
    server.execute(u"ANALYZE "_s + names.join(u", "));
}

void writeMark(Server& server, const MoveMark& mark) {
    server.execute(u"CREATE TABLE %1 (ozet text, dosya text, an text)"_s.arg(quoted(markTable())));
    server.execute(u"INSERT INTO %1 VALUES (%2, %3, %4)"_s.arg(
        quoted(markTable()), serverText(mark.digest), serverText(mark.file), serverText(mark.moment)));
}

ServerCatalogue readCatalogue(Server& server) {
    ServerCatalogue catalogue;
    const QList<QStringList> relations = server.rows(
        u"SELECT relname, relkind, oid FROM pg_class c WHERE relnamespace = current_schema()::regnamespace "
        u"AND relkind IN ('r', 'v', 'm', 'f', 'p') AND relname <> %1 AND NOT EXISTS (SELECT 1 FROM pg_depend "
        u"d "
        u"WHERE d.objid = c.oid AND d.deptype = 'e') ORDER BY oid"_s.arg(serverText(markTable())));
    for (const QStringList& relation : relations) {
        if (relation[1] == u"r"_s || relation[1] == u"p"_s)
            catalogue.tables.append(readTable(server, relation[0], relation[2]));
        else
            catalogue.notices.append({relation[0], u"görünüm (view), taşınmadı"_s});
    }
    std::ranges::stable_sort(catalogue.tables, {}, [](const Table& table) {
        const qsizetype place = tillTables().indexOf(table.name);
        return place < 0 ? tillTables().size() : place;
    });
    return catalogue;
}

}  // namespace kovanix::tasi
