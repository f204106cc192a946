#include "database/declaredtype.h"

#include <QRegularExpression>

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

ColumnType typeOf(const QString& declared) {
    const auto names = [&declared](QLatin1StringView part) {
        return declared.contains(part, Qt::CaseInsensitive);
    };
    if (names("DATE"_L1) || names("TIME"_L1))
        return ColumnType::moment;
    if (declared.isEmpty() || names("CHAR"_L1) || names("TEXT"_L1) || names("CLOB"_L1) || names("BLOB"_L1))
        return ColumnType::text;
    return ColumnType::number;
}

int widthOf(const QString& declared) {
    static const QRegularExpression width(u"\\(\\s*(\\d+)\\s*\\)"_s);
    return width.match(declared).captured(1).toInt();
}

}  // namespace

TableColumn declaredColumn(const QString& name, const QString& declared) {
    const ColumnType type = typeOf(declared);
    return {name, type, type == ColumnType::text ? widthOf(declared) : 0};
}

}  // namespace kovanix
