#include "database/bulkwriter.h"

#include <QSqlError>

#include "database/cell.h"
#include "database/connectionprivate.h"
#include "database/sqltokens.h"
#include "runtime/attempt.h"

namespace kovanix {

using namespace Qt::StringLiterals;

BulkWriter::BulkWriter(Connection& connection) : m_core(*connection.d) {
    m_core.requireOpen();
    m_core.write(u"BEGIN IMMEDIATE"_s);
}

BulkWriter::~BulkWriter() {
    m_insert.finish();
    m_update.finish();
    if (!m_finished)
        attempt([this] { m_core.write(u"ROLLBACK"_s); });
}

void BulkWriter::into(const QString& table, const QStringList& columns) {
    QStringList names;
    for (const QString& column : columns)
        names.append(quotedSqlName(column));
    const QStringList places(columns.size(), u"?"_s);
    QSqlQuery insert(m_core.database);
    if (!insert.prepare(u"INSERT INTO %1 (%2) VALUES (%3)"_s.arg(quotedSqlName(table), names.join(u", "),
                                                                 places.join(u", ")))) {
        throw m_core.failure(insert.lastError());
    }
    m_insert = std::move(insert);
}

void BulkWriter::add(const QVariantList& values) {
    for (qsizetype place = 0; place < values.size(); ++place)
        m_insert.bindValue(static_cast<int>(place), stored(values[place]));
    if (!m_insert.exec())
        throw m_core.failure(m_insert.lastError());
}

void BulkWriter::changing(const QString& table, const QString& key, const QStringList& columns) {
    QStringList cells;
    for (const QString& column : columns)
        cells.append(u"%1 = COALESCE(?, %1)"_s.arg(quotedSqlName(column)));
    const QString identity = m_core.schema.shape(m_core, table).identity;
    QSqlQuery update(m_core.database);
    if (!update.prepare(u"UPDATE %1 SET %2 WHERE %3 = ? AND %4 = ?"_s.arg(
            quotedSqlName(table), cells.join(u", "), identity, quotedSqlName(key)))) {
        throw m_core.failure(update.lastError());
    }
    m_update = std::move(update);
}

bool BulkWriter::change(qint64 row, const QString& key, const QVariantList& values) {
    int place = 0;
    for (const QVariant& value : values)
        m_update.bindValue(place++, stored(value));
    m_update.bindValue(place++, row);
    m_update.bindValue(place, key);
    if (!m_update.exec())
        throw m_core.failure(m_update.lastError());
    return m_update.numRowsAffected() > 0;
}

qint64 BulkWriter::lastRow(const QString& table) {
    const QString identity = m_core.schema.shape(m_core, table).identity;
    return m_core.number(u"SELECT COALESCE(MAX(%1), 0) FROM %2"_s.arg(identity, quotedSqlName(table)));
}

void BulkWriter::finish() {
    m_core.write(u"COMMIT"_s);
    m_finished = true;
}

}  // namespace kovanix
