#include "shopfixture.h"

#include <sys/stat.h>

#include <QFile>
#include <QHash>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QtTest>
#include <map>

#include "app/ayarmodul.h"
#include "data/baglanmamodulu.h"
#include "desktop/folders.h"
#include "desktop/screensize.h"
#include "resetprocess.h"
#include "runtime/clock.h"

namespace kovanix {

using namespace Qt::StringLiterals;

/// A connection that the code under test doesn't know.
class ShopFixture::SecondConnection {
public:
    /// @param name  its own among those that are open
    SecondConnection(const QString& file, const QString& password, const QString& name = u"check"_s)
        : m_name(name), m_inode(inodeOf(file)) {
        m_database = QSqlDatabase::addDatabase(password.isEmpty() ? u"QSQLITE"_s : u"QSQLCIPHER"_s, m_name);
        m_database.setDatabaseName(file);
        m_database.setPassword(password);
        m_database.setConnectOptions(u"QSQLITE_BUSY_TIMEOUT=5000"_s);
        if (!m_database.open())
            qFatal("check connection: %s", qUtf8Printable(m_database.lastError().text()));
    }
    ~SecondConnection() {
        m_database = QSqlDatabase();
        QSqlDatabase::removeDatabase(m_name);
    }
    SecondConnection(const SecondConnection&) = delete;
    SecondConnection& operator=(const SecondConnection&) = delete;

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

    /// Whether that path still leads to the file that was opened.
    bool isOf(const QString& file) const { return m_inode == inodeOf(file); }

private:
    static ino_t inodeOf(const QString& file) {
        struct stat status {};
        return ::stat(QFile::encodeName(file).constData(), &status) == 0 ? status.st_ino : 0;
    }

    QString m_name;
    QSqlDatabase m_database;
    ino_t m_inode;
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
}

QString ShopFixture::file(const QString& name) const {
    return m_folder.filePath(name);
}

void ShopFixture::makeDatabase(const QString& password, const QByteArray& bytes) {
    m_second.reset();
    QFile database(databaseFile());
    if (!database.open(QIODevice::WriteOnly) || database.write(bytes) != bytes.size())
        qFatal("no database file");
    m_password = password;
    if (!password.isEmpty())
        ayaryaz(u"ayar"_s, u"dbpass"_s, password, ayardosyasi());
}

void ShopFixture::openShop(const QString& password, Stock stock) {
    static std::map<Stock, QHash<QString, QByteArray>> prepared;
    QByteArray& bytes = prepared[stock][password];
    if (bytes.isEmpty()) {
        makeDatabase(password);
        if (!baglantihazir())
            qFatal("the shop doesn't open");
        if (stock)
            stock(*this);
        m_second.reset();  // what it holds open would keep the till from finishing the file
        baglantikapat();
        semahazir = false;
        bytes = bytesOf(databaseFile());
    }
    makeDatabase(password, bytes);
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
}

QByteArray ShopFixture::config() const {
    return bytesOf(file(u"Kovanix.config"_s));
}

QList<QVariantList> ShopFixture::rows(const QString& sql) const {
    return second()->rows(sql);
}

void ShopFixture::run(const QString& sql) const {
    rows(sql);
}

QMap<QString, QList<QVariantList>> ShopFixture::tables() const {
    const auto connection = second();
    QMap<QString, QList<QVariantList>> dump;
    for (const QVariantList& name :
         connection->rows(u"SELECT name FROM sqlite_master WHERE type='table' ORDER BY name"_s))
        dump[name.at(0).toString()] = connection->rows(u"SELECT * FROM \"" + name.at(0).toString() + u'"');
    return dump;
}

// A password's key takes long to work out: such a connection is kept while the till has the same file open.
// One that is kept longer would keep other programs from finishing the file.
std::shared_ptr<const void> ShopFixture::lockFile() const {
    auto other = std::make_shared<SecondConnection>(databaseFile(), m_password, u"lock"_s);
    static_cast<void>(other->rows(u"BEGIN IMMEDIATE"_s));
    return other;
}

std::shared_ptr<const ShopFixture::SecondConnection> ShopFixture::second() const {
    const bool keep = !m_password.isEmpty() && baglanti().isOpen();
    if (keep && m_second && m_second->isOf(databaseFile())) {
        m_second->rows(u"SELECT count(*) FROM sqlite_master"_s);  // or it keeps to the old tables
        return m_second;
    }
    m_second.reset();
    auto opened = std::make_shared<const SecondConnection>(databaseFile(), m_password);
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
