#include "filehandle.h"

#include <QFileInfo>
#include <QSqlQuery>
#include <QUrl>

#include "database/databaseengine.h"
#include "failure.h"

namespace kovanix::tasi {

using namespace Qt::StringLiterals;

namespace {

// Of a till that stores a sale just now; one that has a write-ahead log never lets go.
constexpr int patience = 3000;  // milliseconds

QString fileUri(const QString& path) {
    const QByteArray encoded = QUrl::toPercentEncoding(QFileInfo(path).absoluteFilePath(), "/");
    return u"file://"_s + QString::fromLatin1(encoded) + u"?mode=rw"_s;
}

}  // namespace

FileHandle::FileHandle() {
    static int count = 0;
    m_name = u"kovanix-tasi-%1"_s.arg(++count);
}

FileHandle::~FileHandle() {
    close();
    m_database = QSqlDatabase();
    QSqlDatabase::removeDatabase(m_name);
}

bool FileHandle::open(const QString& path, const QString& password) {
    const QString driver = password.isEmpty() ? u"KOVANIXSQLITE"_s : u"QSQLCIPHER"_s;
    if (!findDriver(driver))
        throw Failure(ExitCode::failed, u"Veritabanı sürücüsü kurulu değil: "_s + driver);
    m_database = QSqlDatabase::addDatabase(driver, m_name);
    m_database.setDatabaseName(fileUri(path));
    m_database.setPassword(password);
    m_database.setConnectOptions(
        u"QSQLITE_OPEN_URI;KOVANIX_EXCLUSIVE;QSQLITE_BUSY_TIMEOUT=%1"_s.arg(patience));
    return m_database.open();
}

void FileHandle::close() {
    // What stood before stays; the close has the engine clear its log away.
    if (m_database.isOpen())
        QSqlQuery(m_database).exec(u"ROLLBACK"_s);
    m_database.close();
}

}  // namespace kovanix::tasi
