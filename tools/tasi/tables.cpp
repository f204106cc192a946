#include "tables.h"

#include "data/schema.h"
#include "database/declaredtype.h"

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

std::optional<TableColumn> tillColumn(const QString& table, const QString& column) {
    for (const ShopTable& known : shopTables()) {
        if (known.name != dialect::foldedName(table))
            continue;
        for (const ShopColumn& each : known.columns) {
            if (each.name != dialect::foldedName(column))
                continue;
            TableColumn made = declaredColumn(each.name, each.type);
            if (each.type == u"COUNTER"_s)
                made.type = ColumnType::counter;
            return made;
        }
    }
    return std::nullopt;
}

bool isTillColumn(const QString& table, const QString& column) {
    return tillColumn(table, column).has_value();
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
