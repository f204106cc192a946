#include "shopfixture.h"

#include <sys/stat.h>

#include <QFile>
#include <QHash>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QtTest>
#include <map>
#include <utility>

#include "app/ayarmodul.h"
#include "data/baglanmamodulu.h"
#include "desktop/folders.h"
#include "desktop/screensize.h"
#include "resetprocess.h"
#include "runtime/clock.h"
#include "servercluster.h"

namespace kovanix {

using namespace Qt::StringLiterals;

/// A connection that the code under test doesn't know.
class ShopFixture::SecondConnection {
public:
    /// @param name  its own among those that are open
    explicit SecondConnection(const ShopFixture& shop, const QString& name = u"check"_s)
        : m_name(name), m_identity(identityOf(shop)) {
        if (isOnServer()) {
            m_database = QSqlDatabase::addDatabase(u"KOVANIXPSQL"_s, m_name);
            m_database.setHostName(ServerCluster::host());
            m_database.setPort(testServer().port());
            m_database.setDatabaseName(shop.m_database);
            m_database.setUserName(ServerCluster::role());
            m_database.setPassword(ServerCluster::password());
        } else {
            const QString& password = shop.m_password;
            m_database =
                QSqlDatabase::addDatabase(password.isEmpty() ? u"QSQLITE"_s : u"QSQLCIPHER"_s, m_name);
            m_database.setDatabaseName(shop.databaseFile());
            m_database.setPassword(password);
            m_database.setConnectOptions(u"QSQLITE_BUSY_TIMEOUT=5000"_s);
        }
        if (!m_database.open())
            qFatal("check connection: %s", qUtf8Printable(m_database.lastError().text()));
    }
    ~SecondConnection() {
        m_database = QSqlDatabase();
        QSqlDatabase::removeDatabase(m_name);
    }
    SecondConnection(const SecondConnection&) = delete;
    SecondConnection& operator=(const SecondConnection&) = delete;

    bool takes(const QString& sql) const { return QSqlQuery(m_database).exec(sql); }
    QList<QVariantList> rows(const QString& sql) const {
        QSqlQuery query(m_database);
        if (!query.exec(sql))
            qFatal("check statement: %s", qUtf8Printable(query.lastError().text()));
        QList<QVariantList> result;
        while (query.next()) {
            QVariantList row;
            for (int column = 0; column < query.record().count(); ++column)
                row.append(query.value(column));
            result.append(row);
        }
        return result;
    }

    /// Whether the shop's database is still the one that was opened.
    bool isOf(const ShopFixture& shop) const {
        return m_identity == identityOf(shop) && (!isOnServer() || QSqlQuery(m_database).exec(u"SELECT 1"_s));
    }

private:
    static QString identityOf(const ShopFixture& shop) {
        if (isOnServer())
            return shop.m_database;
        struct stat status {};
        const bool found = ::stat(QFile::encodeName(shop.databaseFile()).constData(), &status) == 0;
        return QString::number(found ? status.st_ino : 0);
    }

    QString m_name;
    QSqlDatabase m_database;
    QString m_identity;
};

namespace {

QByteArray bytesOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

}  // namespace

ShopFixture::ShopFixture() {
    resetProcess();
    setApplicationFolder(m_folder.path());
    setNow(QDateTime(QDate(2026, 5, 3), QTime(7, 5, 9)));
    setScreenWidth(1024);
}

ShopFixture::~ShopFixture() {
    resetProcess();
    dropDatabase();
}

bool ShopFixture::isOnServer() {
    return qEnvironmentVariableIntValue("KOVANIX_TEST_SERVER") == 1;
}

QString ShopFixture::databaseFile() const {
    return isOnServer() ? file(m_database + u".sunucu"_s) : file(u"kovanix.data"_s);
}

void ShopFixture::dropDatabase() {
    m_second.reset();
    if (m_database.isEmpty())
        return;
    QFile::remove(databaseFile());
    testServer().dropLater(std::exchange(m_database, {}));
}

QString ShopFixture::file(const QString& name) const {
    return m_folder.filePath(name);
}

void ShopFixture::makeDatabase(const QString& password, const QByteArray& original) {
    m_second.reset();
    if (isOnServer()) {
        static const QString empty = testServer().createDatabase();
        dropDatabase();
        m_database = testServer().createDatabase(original.isEmpty() ? empty : QString::fromUtf8(original));
        if (m_database.isEmpty() || testServer().writePointer(folder(), m_database).isEmpty())
            qFatal("no database on the server");
        pointToServer();
        return;
    }
    QFile database(databaseFile());
    if (!database.open(QIODevice::WriteOnly) || database.write(original) != original.size())
        qFatal("no database file");
    m_password = password;
    if (!password.isEmpty())
        ayaryaz(u"ayar"_s, u"dbpass"_s, password, ayardosyasi());
}

void ShopFixture::pointToServer() const {
    ayaryaz(u"ayar"_s, u"ip"_s, databaseFile(), ayardosyasi());
    if (ayaroku(u"ayar"_s, u"dbpass"_s, ayardosyasi()).isEmpty())
        ayaryaz(u"ayar"_s, u"dbpass"_s, ServerCluster::password(), ayardosyasi());
}

/// Closes what the till has made. @return of what makeDatabase makes a copy
QByteArray ShopFixture::finishOriginal() {
    m_second.reset();  // what it holds open would keep the till from finishing the file
    baglantikapat();
    semahazir = false;
    return isOnServer() ? std::exchange(m_database, {}).toUtf8() : bytesOf(databaseFile());
}

void ShopFixture::openShop(const QString& password, Stock stock) {
    static std::map<Stock, QHash<QString, QByteArray>> prepared;
    QByteArray& original = prepared[stock][password];
    if (original.isEmpty()) {
        makeDatabase(password);
        if (!baglantihazir())
            qFatal("the shop doesn't open");
        if (stock)
            stock(*this);
        original = finishOriginal();
    }
    makeDatabase(password, original);
    if (!baglantihazir())
        qFatal("the shop doesn't open");
}

void ShopFixture::addProduct(const QString& barcode, const QString& name, double purchase, double sale,
                             const QVariant& stock) {
    run(u"INSERT INTO urunler (barkod, urun, alis, satis, stok) VALUES ('%1', '%2', %3, %4, %5)"_s.arg(
        sqlmetin(barcode), sqlmetin(name), sqlsayi(purchase), sqlsayi(sale),
        stock.isNull() ? u"NULL"_s : sqlsayi(stock.toDouble())));
}

void ShopFixture::writeConfig(const QByteArray& bytes) const {
    QFile config(file(u"Kovanix.config"_s));
    if (!config.open(QIODevice::WriteOnly) || config.write(bytes) != bytes.size())
        qFatal("no configuration file");
    config.close();
    if (!m_database.isEmpty())
        pointToServer();
}

QByteArray ShopFixture::config() const {
    return bytesOf(file(u"Kovanix.config"_s));
}

QList<QVariantList> ShopFixture::rows(const QString& sql) const {
    if (isOnServer() && sql.startsWith(u"CREATE TABLE"_s)) {
        // The server has other names for the types.
        static const QRegularExpression counter(u"INTEGER PRIMARY KEY( AUTOINCREMENT)?"_s);
        QString text = sql;
        text.replace(counter, u"COUNTER"_s).remove(u" COLLATE NOCASE"_s);
        Connection connection;
        connection.open(baglantimetniyap(databaseFile()));
        connection.execute(text);
        if (baglanti().isOpen()) {
            // A till doesn't ask for the tables as long as it works.
            baglantikapat();
            baglantihazir();
        }
        return {};
    }
    return second()->rows(sql);
}

void ShopFixture::run(const QString& sql) const {
    rows(sql);
}

bool ShopFixture::takes(const QString& sql) const {
    if (isOnServer())
        return second()->takes(sql);
    run(sql);
    return true;
}

QString ShopFixture::noTable(const QString& name) {
    const QString words = isOnServer() ? u"relation \"%1\" does not exist"_s : u"no such table: %1"_s;
    return words.arg(name);
}

QMap<QString, QList<QVariantList>> ShopFixture::tables() const {
    const auto connection = second();
    QMap<QString, QList<QVariantList>> dump;
    const QString names = isOnServer()
                              ? u"SELECT tablename FROM pg_tables WHERE schemaname = 'public' ORDER BY 1"_s
                              : u"SELECT name FROM sqlite_master WHERE type='table' ORDER BY name"_s;
    for (const QVariantList& name : connection->rows(names))
        dump[name.at(0).toString()] =
            connection->rows(u"SELECT * FROM \"%1\" ORDER BY 1"_s.arg(name.at(0).toString()));
    return dump;
}

void ShopFixture::refuse(const QString& change, const QString& table, const QString& words,
                         const QString& condition) const {
    const QString name = u"dur_%1_%2"_s.arg(change, table);
    const QString when = condition.isEmpty() ? QString() : u"WHEN (%1)"_s.arg(condition);
    if (!isOnServer()) {
        run(u"CREATE TRIGGER %1 BEFORE %2 ON %3 %4 BEGIN SELECT RAISE(ABORT, '%5'); END"_s.arg(
            name, change, table, when, words));
        return;
    }
    run(u"CREATE OR REPLACE FUNCTION %1() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN RAISE EXCEPTION '%2' USING ERRCODE = 'check_violation'; END $$"_s
            .arg(name, words));
    run(u"CREATE TRIGGER %1 BEFORE %2 ON %3 FOR EACH ROW %4 EXECUTE FUNCTION %1()"_s.arg(name, change, table,
                                                                                         when));
}

void ShopFixture::allow(const QString& change, const QString& table) const {
    run(u"DROP TRIGGER dur_%1_%2"_s.arg(change, table) + (isOnServer() ? u" ON "_s + table : QString()));
}

std::shared_ptr<const void> ShopFixture::lockFile() const {
    auto other = std::make_shared<SecondConnection>(*this, u"lock"_s);
    other->rows(isOnServer() ? u"BEGIN"_s : u"BEGIN IMMEDIATE"_s);
    if (isOnServer())
        other->rows(u"LOCK TABLE urunler, satislar, musteri, kullanici IN EXCLUSIVE MODE"_s);
    return other;
}

// A password's key takes long to work out: such a connection is kept while the till has the same file open.
// One that is kept longer would keep other programs from finishing the file.
std::shared_ptr<const ShopFixture::SecondConnection> ShopFixture::second() const {
    const bool keep = isOnServer() || (!m_password.isEmpty() && baglanti().isOpen());
    if (keep && m_second && m_second->isOf(*this)) {
        if (!isOnServer())
            m_second->rows(u"SELECT count(*) FROM sqlite_master"_s);  // or it keeps to the old tables
        return m_second;
    }
    m_second.reset();
    auto opened = std::make_shared<const SecondConnection>(*this);
    if (keep)
        m_second = opened;
    return opened;
}

void ShopFixture::setNow(const QDateTime& now) {
    Clock::setSource([now] { return now; });
}

void ShopFixture::setScreenWidth(int pixels) {
    setScreenMetricsSource([pixels] { return ScreenMetrics{QSize(pixels, pixels * 3 / 4), 15, 15}; });
}

bool allAnswered(const BoxAnswers& boxes) {
    for (const QString& failure : boxes.failures())
        qWarning("%s", qUtf8Printable(failure));
    if (boxes.waiting() > 0)
        qWarning("%d answer(s) left over", static_cast<int>(boxes.waiting()));
    return boxes.failures().isEmpty() && boxes.waiting() == 0;
}

}  // namespace kovanix
