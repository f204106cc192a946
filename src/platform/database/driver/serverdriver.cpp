#include "serverdriver.h"

#include "serverresult.h"

namespace kovanix::engine {

using namespace Qt::StringLiterals;

ServerDriver::ServerDriver(QObject* parent)
    : QSqlDriver(parent), m_connection(std::make_shared<ServerConnection>()) {
    m_connection->setWaitBegins([this] { Q_EMIT notification(u"wait"_s, SelfSource, {}); });
}

ServerDriver::~ServerDriver() {
    // A statement of the shared connection may outlive this.
    m_connection->setWaitBegins({});
    m_connection->close();
}

bool ServerDriver::hasFeature(DriverFeature feature) const {
    switch (feature) {
        case Transactions:
        case QuerySize:
        case BLOB:
        case Unicode:
        case PreparedQueries:
        case PositionalPlaceholders:
        case FinishQuery:
        case LowPrecisionNumbers:
            return true;
        case NamedPlaceholders:
        case LastInsertId:
        case SimpleLocking:
        case BatchOperations:
        case EventNotifications:
        case MultipleResultSets:
        case CancelQuery:
            return false;
    }
    return false;
}

bool ServerDriver::open(const QString& db, const QString& user, const QString& password, const QString& host,
                        int port, const QString& options) {
    close();
    ServerSettings settings;
    for (const QString& address : host.split(u','))
        settings.hosts.append(address.trimmed().toUtf8());
    settings.words = {
        {"dbname", db.toUtf8()},         {"user", user.toUtf8()},
        {"password", password.toUtf8()}, {"port", port > 0 ? QByteArray::number(port) : QByteArray()},
        {"client_encoding", "UTF8"},     {"gssencmode", "disable"},
        {"application_name", "kovanix"}, {"target_session_attrs", "read-write"}};
    QSqlError error;
    if (settings.addOptions(options))
        error = m_connection->open(settings);
    else
        error = {u"Unknown connection option"_s, options, QSqlError::ConnectionError};
    setOpenError(error.isValid());
    setOpen(!error.isValid());
    if (error.isValid())
        setLastError(error);
    return !error.isValid();
}

void ServerDriver::close() {
    m_connection->close();
    setOpen(false);
    setOpenError(false);
}

QSqlResult* ServerDriver::createResult() const {
    return new ServerResult(this, m_connection);
}

bool ServerDriver::execute(const char* sql) {
    const QSqlError error = m_connection->run(sql).error;
    if (error.isValid())
        setLastError({QString::fromLatin1(sql), error.databaseText(), QSqlError::TransactionError,
                      error.nativeErrorCode()});
    return !error.isValid();
}

QString ServerDriver::escapeIdentifier(const QString& identifier, IdentifierType /*type*/) const {
    QString name = identifier;
    name.replace(u'"', u"\"\""_s);
    return u'"' + name + u'"';
}

}  // namespace kovanix::engine
