#include <cmath>
#include <optional>

#include "database/databaseerror.h"
#include "database/dialect.h"
#include "database/likepattern.h"
#include "database/sqltokens.h"

namespace kovanix::dialect {

namespace {

using namespace Qt::StringLiterals;
using Comparison = RowFilter::Comparison;

constexpr char16_t escapeSign = u'\\';

/// A LIKE pattern as the engine takes it, with an escape sign ahead of every bare one that would stand for
/// something.
QString enginePattern(QStringView pattern) {
    QString text;
    for (qsizetype place = 0; place < pattern.size();) {
        const PatternSign sign = PatternSign::next(pattern, place);
        if (sign.kind == PatternSign::Kind::anyOne) {
            text += u'_';
        } else if (sign.kind == PatternSign::Kind::anyMany) {
            text += u'%';
        } else {
            if (sign.character == u'%' || sign.character == u'_' || sign.character == escapeSign)
                text += QChar(escapeSign);
            text += QChar(sign.character);
        }
    }
    return text;
}

QVariant numberOf(const QString& text) {
    bool whole = false;
    if (const qint64 number = text.trimmed().toLongLong(&whole); whole)
        return QVariant(number);
    bool valid = false;
    const double number = text.trimmed().toDouble(&valid);
    if (!valid || !std::isfinite(number))
        throw DatabaseError(DatabaseError::Kind::value, u"Data type mismatch in criteria expression."_s);
    return number;
}

/// One term; nothing where the engine can't be asked.
std::optional<Condition> termCondition(const RowFilter::Term& term, const TableShape& shape, Target target) {
    const qsizetype place = shape.indexOf(term.field);
    if (place < 0)
        throw DatabaseError(DatabaseError::Kind::value,
                            u"Item cannot be found in the collection: %1"_s.arg(term.field));
    const TableColumn& column = shape.columns[place];
    const QString name = quotedSqlName(column.name) + (column.isTruth ? u"::int4"_s : QString());
    const bool isNumber = column.type == ColumnType::number || column.type == ColumnType::counter;
    if (term.hasWildcards()) {
        // How a number is written is the shop's affair, not the engine's.
        if (isNumber)
            return std::nullopt;
        return Condition{name + u" LIKE ? ESCAPE '\\'"_s, {enginePattern(term.pattern)}};
    }
    if (isNumber) {
        const QVariant number = numberOf(term.literal());
        // A server would refuse a fraction in the place of a whole number.
        const bool fraction = target == Target::server && number.typeId() == QMetaType::Double;
        return Condition{name + (fraction ? u" = CAST(? AS double precision)"_s : u" = ?"_s), {number}};
    }
    const bool collated = target == Target::file && column.type == ColumnType::text;
    const QString collation = collated ? u" COLLATE NOCASE"_s : QString();
    return Condition{name + u" = ?"_s + collation, {term.literal().isNull() ? u""_s : term.literal()}};
}

}  // namespace

std::optional<Condition> condition(const RowFilter& filter, const TableShape& shape, Target target) {
    Condition all;
    bool askable = true;
    QStringList parts;
    for (const RowFilter::Term& term : filter.terms()) {
        // Every term is looked at, so that a wrong one is refused whatever stands ahead of it.
        const std::optional<Condition> part = termCondition(term, shape, target);
        askable = askable && part;
        if (part) {
            parts.append(part->sql);
            all.values += part->values;
        }
    }
    if (!askable)
        return std::nullopt;
    all.sql = parts.join(u" AND ");
    return all;
}

}  // namespace kovanix::dialect
