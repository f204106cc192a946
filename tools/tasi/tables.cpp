#include "tables.h"

#include <algorithm>

namespace kovanix::tasi {

using namespace Qt::StringLiterals;

namespace {

struct TillTable {
    QString name;
    QStringList columns;
};

const QList<TillTable>& tables() {
    const QStringList product{u"no"_s, u"barkod"_s, u"urun"_s, u"alis"_s, u"satis"_s, u"stok"_s};
    static const QList<TillTable> list{
        {u"urunler"_s, product},
        {u"satislar"_s,
         {u"no"_s, u"tarih"_s, u"barkod"_s, u"urun"_s, u"adet"_s, u"fiyat"_s, u"alis"_s, u"kar"_s,
          u"toplam"_s, u"satis"_s}},
        {u"kullanici"_s, {u"id"_s, u"personeladi"_s, u"sifre"_s, u"yetki"_s}},
        {u"musteri"_s, {u"no"_s, u"adi"_s, u"telefon"_s, u"adres"_s}},
        {u"urunler_hazir"_s, product},
    };
    return list;
}

}  // namespace

ColumnType declaredType(const QString& declared) {
    const auto names = [&declared](QLatin1StringView part) {
        return declared.contains(part, Qt::CaseInsensitive);
    };
    if (names("DATE"_L1) || names("TIME"_L1))
        return ColumnType::moment;
    if (declared.isEmpty() || names("CHAR"_L1) || names("TEXT"_L1) || names("CLOB"_L1) || names("BLOB"_L1))
        return ColumnType::text;
    return ColumnType::number;
}

const QStringList& tillTables() {
    static const QStringList names = [] {
        QStringList list;
        for (const TillTable& table : tables())
            list.append(table.name);
        return list;
    }();
    return names;
}

bool isTillColumn(const QString& table, const QString& column) {
    return std::ranges::any_of(tables(), [&](const TillTable& known) {
        return known.name == dialect::foldedName(table) &&
               known.columns.contains(dialect::foldedName(column));
    });
}

QString moduleType(const Column& column, dialect::Target target) {
    const bool server = target == dialect::Target::server;
    switch (column.type) {
        case ColumnType::counter:
            return u"COUNTER"_s;
        case ColumnType::moment:
            return u"DATETIME"_s;
        case ColumnType::number:
            if (column.form == Form::whole)
                return server ? u"bigint"_s : u"INTEGER"_s;
            return u"DOUBLE"_s;
        case ColumnType::text:
            break;
    }
    if (column.form == Form::bytes)
        return server ? u"bytea"_s : u"BLOB"_s;
    return column.width > 0 ? u"TEXT(%1)"_s.arg(column.width) : u"TEXT"_s;
}

QString createStatement(const Table& table, dialect::Target target) {
    QStringList definitions;
    for (const Column& column : table.columns)
        definitions.append(dialect::quotedName(column.name, target) + u' ' + moduleType(column, target));
    return u"CREATE TABLE %1 (%2)"_s.arg(dialect::quotedName(table.name, target), definitions.join(u", "));
}

}  // namespace kovanix::tasi
