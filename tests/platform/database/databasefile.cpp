#include "databasefile.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSqlError>
#include <QSqlRecord>
#include <QUrl>
#include <QUuid>
#include <utility>

#include "database/serveraddress.h"

namespace kovanix {

using namespace Qt::StringLiterals;

RawDatabase::RawDatabase(const QString& path, const QString& password, const QString& driver,
                         std::chrono::milliseconds busyTimeout)
    : m_name(QUuid::createUuid().toString()) {
    if (ServerAddress::isPointer(path)) {
        m_database = QSqlDatabase::addDatabase(u"KOVANIXPSQL"_s, m_name);
        m_database.setHostName(ServerCluster::host());
        m_database.setPort(testServer().port());
        m_database.setDatabaseName(QFileInfo(path).completeBaseName());
        m_database.setUserName(ServerCluster::role());
    } else {
        const QString usual = password.isEmpty() ? u"QSQLITE"_s : u"QSQLCIPHER"_s;
        m_database = QSqlDatabase::addDatabase(driver.isEmpty() ? usual : driver, m_name);
        const QString escaped = QString::fromLatin1(QUrl::toPercentEncoding(path, "/"));
        m_database.setDatabaseName(u"file:"_s + escaped);
        m_database.setConnectOptions(u"QSQLITE_OPEN_URI;QSQLITE_BUSY_TIMEOUT=%1"_s.arg(busyTimeout.count()));
    }
    m_database.setPassword(password);
    if (!m_database.open()) {
        qFatal("%s", qUtf8Printable(m_database.lastError().text()));
    }
}

RawDatabase::~RawDatabase() {
    m_database.close();
    m_database = QSqlDatabase();
    QSqlDatabase::removeDatabase(m_name);
}

bool RawDatabase::run(const QString& sql) {
    QSqlQuery query(m_database);
    return query.exec(sql);
}

QStringList RawDatabase::rows(const QString& sql) {
    QSqlQuery query(m_database);
    query.setForwardOnly(true);
    if (!query.exec(sql)) {
        return {query.lastError().text()};
    }
    QStringList rows;
    while (query.next()) {
        QStringList fields;
        for (int i = 0; i < query.record().count(); ++i) {
            fields.append(query.isNull(i) ? u"NULL"_s : query.value(i).toString());
        }
        rows.append(fields.join(u'|'));
    }
    return rows;
}

QList<QVariantList> RawDatabase::values(const QString& sql) {
    QSqlQuery query(m_database);
    query.setForwardOnly(true);
    if (!query.exec(sql)) {
        qFatal("%s: %s", qUtf8Printable(sql), qUtf8Printable(query.lastError().text()));
    }
    QList<QVariantList> rows;
    while (query.next()) {
        QVariantList row;
        for (int i = 0; i < query.record().count(); ++i) {
            row.append(query.value(i));
        }
        rows.append(row);
    }
    return rows;
}

void DatabaseFile::bothKinds() {
    QTest::addColumn<QString>("password");
    QTest::newRow(plain) << QString();
    QTest::newRow(withPassword) << u"gizli şifre"_s;
}

void DatabaseFile::allKinds() {
    bothKinds();
    if (const QString missing = ServerCluster::missing(); missing.isEmpty())
        QTest::newRow(server) << onServer();
    else
        qInfo().noquote() << "no row for a server:" << missing;
}

DatabaseFile::DatabaseFile()
    : DatabaseFile(*static_cast<QString*>(QTest::qData("password", QMetaType::QString))) {}

DatabaseFile::DatabaseFile(const QString& password)
    : m_path(m_folder.filePath(u"shop.data"_s)), m_password(password) {
    if (password == onServer()) {
        static const QString empty = testServer().createDatabase();
        m_database = testServer().createDatabase(empty);
        m_path = testServer().writePointer(m_folder.path(), m_database);
        m_password = ServerCluster::password();
        return;
    }
    QFile file(m_path);
    if (!file.open(QIODevice::WriteOnly)) {
        qFatal("no file in the temporary folder");
    }
}

QString DatabaseFile::driver(const QString& password) {
    return password.isEmpty() ? u"KOVANIXSQLITE"_s : u"QSQLCIPHER"_s;
}

QString DatabaseFile::source() const {
    if (isOnServer())
        return u"PostgreSQL"_s;
    return m_password.isEmpty() ? u"SQLite"_s : u"SQLCipher"_s;
}

QString DatabaseFile::connectionString(const QString& path, const QString& password) {
    const QString text =
        u"Provider=Microsoft.Jet.OLEDB.4.0;Data Source="_s + path + u";Persist Security Info=False"_s;
    return password.isEmpty() ? text : QString(text + u";Jet OLEDB:Database Password="_s + password);
}

void DatabaseFile::execute(const QStringList& statements) const {
    Connection connection;
    connection.open(connectionString());
    for (const QString& statement : statements) {
        connection.execute(statement);
    }
}

QStringList DatabaseFile::rows(const QString& sql) const {
    return RawDatabase(m_path, m_password).rows(sql);
}

void DatabaseFile::damage() const {
    QFile file(m_path);
    const qint64 page = 4096;
    const qint64 pages = file.size() / page;
    if (pages < 20 || !file.open(QIODevice::ReadWrite) || !file.seek(pages * 2 / 5 * page) ||
        file.write(QByteArray(pages / 5 * page, '\xAA')) < page) {
        qFatal("no pages to damage");
    }
}

std::optional<RuntimeError> errorOf(const std::function<void()>& step) {
    try {
        step();
    } catch (const RuntimeError& error) {
        return error;
    }
    return std::nullopt;
}

QString enginesWords(const QString& description) {
    static const QRegularExpression described(u"^(?:Veritaban|Dosya |Disk|Kayıt ).*? \\((.*)\\)$"_s);
    const QRegularExpressionMatch match = described.match(description);
    return match.hasMatch() ? match.captured(1) : description;
}

QString wordsOf(const std::function<void()>& step) {
    const std::optional<RuntimeError> error = errorOf(step);
    return error ? enginesWords(error->description()) : u"no error"_s;
}

}  // namespace kovanix
