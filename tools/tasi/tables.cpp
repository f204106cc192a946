#include "tables.h"

#include <algorithm>

#include "data/schema.h"

namespace kovanix::tasi {

using namespace Qt::StringLiterals;

const QStringList& tillTables() {
    static const QStringList names = [] {
        QStringList list;
        for (const ShopTable& table : shopTables())
            list.append(table.name);
        return list;
    }();
    return names;
}

bool isTillColumn(const QString& table, const QString& column) {
    return std::ranges::any_of(shopTables(), [&](const ShopTable& known) {
        return known.name == dialect::foldedName(table) &&
               std::ranges::any_of(known.columns, [&](const ShopColumn& each) {
                   return each.name == dialect::foldedName(column);
               });
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
