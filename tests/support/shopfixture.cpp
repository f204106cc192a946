#include "shopfixture.h"

#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QtTest>

#include "app/ayarmodul.h"
#include "app/session.h"
#include "data/baglanmamodulu.h"
#include "desktop/folders.h"
#include "desktop/screensize.h"
#include "runtime/clock.h"
#include "runtime/process.h"
#include "runtime/screenregistry.h"

namespace kovanix {

namespace {

/// Runs statements on a connection that the code under test doesn't know.
QList<QVariantList> independently(const QString& file, const QString& password, const QString& sql) {
    static int serial = 0;
    const QString name = u"check" + QString::number(++serial);
    QList<QVariantList> result;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(
            password.isEmpty() ? QStringLiteral("QSQLITE") : QStringLiteral("QSQLCIPHER"), name);
        database.setDatabaseName(file);
        database.setPassword(password);
        database.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=5000"));
        if (!database.open())
            qFatal("check connection: %s", qUtf8Printable(database.lastError().text()));
        QSqlQuery query(database);
        if (!query.exec(sql))
            qFatal("check statement: %s", qUtf8Printable(query.lastError().text()));
        while (query.next()) {
            QVariantList row;
            for (int column = 0; column < query.record().count(); ++column)
                row.append(query.value(column));
            result.append(row);
        }
    }
    QSqlDatabase::removeDatabase(name);
    return result;
}

}  // namespace

ShopFixture::ShopFixture() {
    reset();
    setApplicationFolder(m_folder.path());
    setNow(QDateTime(QDate(2026, 5, 3), QTime(7, 5, 9)));
    setScreenWidth(1024);
}

ShopFixture::~ShopFixture() {
    reset();
    Clock::setSource({});
    setScreenMetricsSource({});
}

void ShopFixture::reset() {
    ScreenRegistry::clear();
    kayitkapat();
    baglantikapatsessiz();
    baglantidurumu = 0;
    baglantimetni.clear();
    semahazir = false;
    girisyetki = 0;
    for (QString* value : {&girissifre, &ekledznlsil, &sifresor2, &ensonkikisayol})
        value->clear();
    setProcessEnd({});
}

QString ShopFixture::file(const QString& name) const {
    return m_folder.filePath(name);
}

void ShopFixture::makeDatabase(const QString& password) {
    QFile database(databaseFile());
    if (!database.open(QIODevice::WriteOnly))
        qFatal("no database file");
    m_password = password;
    if (!password.isEmpty())
        ayaryaz(QStringLiteral("ayar"), QStringLiteral("dbpass"), password, ayardosyasi());
}

void ShopFixture::openShop(const QString& password) {
    makeDatabase(password);
    if (!baglantihazir())
        qFatal("the shop doesn't open");
}

void ShopFixture::addProduct(const QString& barcode, const QString& name, double purchase, double sale,
                             const QVariant& stock) {
    run(QStringLiteral(
            "INSERT INTO urunler (barkod, urun, alis, satis, stok) VALUES ('%1', '%2', %3, %4, %5)")
            .arg(sqlmetin(barcode), sqlmetin(name), sqlsayi(purchase), sqlsayi(sale),
                 stock.isNull() ? QStringLiteral("NULL") : sqlsayi(stock.toDouble())));
}

void ShopFixture::writeConfig(const QByteArray& bytes) const {
    QFile config(file(QStringLiteral("Kovanix.config")));
    if (!config.open(QIODevice::WriteOnly) || config.write(bytes) != bytes.size())
        qFatal("no configuration file");
}

QByteArray ShopFixture::config() const {
    QFile config(file(QStringLiteral("Kovanix.config")));
    return config.open(QIODevice::ReadOnly) ? config.readAll() : QByteArray();
}

QList<QVariantList> ShopFixture::rows(const QString& sql) const {
    return independently(databaseFile(), m_password, sql);
}

void ShopFixture::run(const QString& sql) const {
    independently(databaseFile(), m_password, sql);
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
