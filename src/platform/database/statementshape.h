#pragma once

#include <QString>
#include <QVariantList>
#include <optional>

namespace kovanix {

/// What statements have in common that differ in their values only, as those of a sale's lines do: the text
/// with a "?" in each value's place, by which a prepared statement is found again, and the values.
struct StatementShape {
    QString text;
    QVariantList values;  ///< texts (QString), numbers (qint64, double) and moments (text) in their order

    /// Of a statement in the modules' SQL. Of an INSERT, UPDATE or DELETE all literals are values; of a
    /// SELECT the texts and moments of its condition are, since a number may stand for a column. Nothing for
    /// any other statement, and for one in which a value could mean more than itself or can't be read.
    static std::optional<StatementShape> of(const QString& sql);
};

}  // namespace kovanix
