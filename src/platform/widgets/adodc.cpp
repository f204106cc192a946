#include "widgets/adodc.h"

#include "database/connection.h"
#include "database/rowfilter.h"

namespace kovanix {

using namespace Qt::StringLiterals;

Adodc::Adodc(QWidget* parent) : QWidget(parent) {
    setFixedSize(0, 0);
    setFocusPolicy(Qt::NoFocus);
    hide();
}

Adodc::~Adodc() = default;

std::shared_ptr<Connection> Adodc::connection() {
    if (std::shared_ptr<Connection> open = Connection::findOpen(m_connectionString).lock())
        return open;
    m_ownConnection = std::make_shared<Connection>();
    m_ownConnection->open(m_connectionString);
    return m_ownConnection;
}

void Adodc::refresh(const ReadProgress& progress) {
    const QString sql =
        m_commandType == CommandType::table ? u"select * from "_s + m_recordSource : m_recordSource;
    if (!m_rows.read(*connection(), sql, progress))
        return;
    settleCurrent();
    Q_EMIT rowsChanged();
}

void Adodc::refreshRow(qint64 identity) {
    if (!m_rows.readRow(*connection(), identity))
        return;
    settleCurrent();
    Q_EMIT rowsChanged();
}

void Adodc::setSort(const QString& sort) {
    m_rows.setSort(sort);
    settleCurrent();
    Q_EMIT rowsChanged();
}

void Adodc::setFilter(const QString& filter) {
    m_rows.setFilter(RowFilter::parse(filter));
    settleCurrent();
    Q_EMIT rowsChanged();
}

void Adodc::setCurrent(qsizetype place) {
    m_chosen = place < 0 ? std::nullopt : std::optional(m_rows.identity(place));
    if (place == m_rows.current())
        return;
    m_rows.setCurrent(place);
    Q_EMIT currentChanged();
}

bool Adodc::isCurrentChosen() const {
    const qsizetype current = m_rows.current();
    return m_chosen && current >= 0 && m_rows.identity(current) == *m_chosen;
}

void Adodc::settleCurrent() {
    const qsizetype chosen = m_chosen ? m_rows.placeOf(*m_chosen) : -1;
    m_rows.setCurrent(chosen < 0 && m_rows.recordCount() > 0 ? 0 : chosen);
}

}  // namespace kovanix
