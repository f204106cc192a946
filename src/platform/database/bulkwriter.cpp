#include "database/bulkwriter.h"

#include <QSqlError>

#include "database/cell.h"
#include "database/connectionprivate.h"
#include "database/dialect.h"
#include "runtime/attempt.h"

namespace kovanix {

using namespace Qt::StringLiterals;

BulkWriter::BulkWriter(Connection& connection) : m_core(*connection.d) {
    m_core.requireOpen();
    m_core.aboutToWrite();
    m_core.engine->beginTransaction();
}

BulkWriter::~BulkWriter() {
    m_insert.finish();
    if (!m_finished)
        attempt([this] { m_core.engine->endTransaction(false); });
}

QString BulkWriter::quoted(const QString& name) const {
    return dialect::quotedName(name, m_core.engine->target());
}

void BulkWriter::into(const QString& table, const QStringList& columns) {
    QStringList names;
    for (const QString& column : columns)
        names.append(quoted(column));
    const QStringList places(columns.size(), u"?"_s);
    QSqlQuery insert;
    const QString sql =
        u"INSERT INTO %1 (%2) VALUES (%3)"_s.arg(quoted(table), names.join(u", "), places.join(u", "));
    if (!m_core.engine->prepare(insert, sql, DatabaseEngine::Use::kept))
        throw m_core.failure(insert.lastError());
    m_insert = std::move(insert);
}

void BulkWriter::add(const QVariantList& values) {
    for (qsizetype place = 0; place < values.size(); ++place)
        m_insert.bindValue(static_cast<int>(place), stored(values[place]));
    if (!m_insert.exec())
        throw m_core.failure(m_insert.lastError());
}

void BulkWriter::finish() {
    m_core.engine->endTransaction(true);
    m_finished = true;
}

}  // namespace kovanix
