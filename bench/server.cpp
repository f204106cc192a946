// A shop on a database server against the same shop in a file, in one run: the look-up of a barcode, storing
// a sale of 20 lines, reading the products and the lines of a day. The server is one of the benchmark's own,
// and syncs its log as a shop's does.

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QThread>
#include <memory>

#include "countingproxy.h"
#include "database/connection.h"
#include "database/press.h"
#include "database/recordset.h"
#include "database/rowset.h"
#include "figures.h"
#include "runtime/process.h"
#include "servercluster.h"

namespace {

using namespace kovanix;
using namespace kovanix::bench;
using namespace Qt::StringLiterals;

constexpr int ticketLines = 20;

template <class Step>
double milliseconds(Step&& step) {
    QElapsedTimer timer;
    timer.start();
    step();
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

QString barcodeOf(quint32 product) {
    return u"869%1"_s.arg(product, 10, 10, QChar(u'0'));
}

QString connectionString(const QString& path, const QString& password) {
    return u"Provider=Microsoft.Jet.OLEDB.4.0;Data Source=%1;Persist Security Info=False"_s.arg(path) +
           (password.isEmpty() ? QString() : u";Jet OLEDB:Database Password="_s + password);
}

/// One of the two shops.
class Shop {
public:
    Shop(const QString& path, const QString& password) : m_path(path) {
        m_connection.open(connectionString(path, password), Connection::Handle::shared);
    }

    Connection& connection() { return m_connection; }

    void makeTables() {
        m_connection.execute(
            u"CREATE TABLE urunler (no COUNTER, barkod TEXT(50), urun TEXT(50), alis DOUBLE, satis DOUBLE, stok DOUBLE)"_s);
        m_connection.execute(
            u"CREATE TABLE satislar (no COUNTER, tarih DATETIME, barkod TEXT(50), urun TEXT(50), adet DOUBLE, fiyat DOUBLE, alis DOUBLE, kar DOUBLE, toplam DOUBLE, satis DOUBLE)"_s);
        m_connection.keepIndex(u"urunler"_s, u"barkod"_s);
        m_connection.keepIndex(u"satislar"_s, u"tarih"_s);
    }

    void lookUp(quint32 product) {
        Recordset found;
        found.open(u"SELECT * FROM urunler WHERE barkod='%1'"_s.arg(barcodeOf(product)), m_connection);
        if (found.field(u"barkod"_s).toString() != barcodeOf(product))
            giveUp("a product wasn't found");
    }

    void sell(quint32 products) {
        Press press(m_connection);
        QList<quint32> sold;
        for (int line = 0; line < ticketLines; ++line) {
            sold.append(m_random.bounded(products));
            lookUp(sold.last());
            m_connection.execute(
                u"INSERT INTO satislar (tarih, barkod, urun, adet, fiyat, alis, kar, toplam) VALUES (#5/4/2026 07:05:09#, '%1', 'Ürün', 1, 10, 7, 3, 10)"_s
                    .arg(barcodeOf(sold.last())));
        }
        for (const quint32 product : sold)
            m_connection.execute(
                u"UPDATE urunler SET stok = IIF(stok IS NULL, 0, stok) - 1 WHERE barkod='%1'"_s.arg(
                    barcodeOf(product)));
        press.finish();
    }

    double read(const QString& sql, qsizetype rows) {
        RowSet list;
        const double time = milliseconds([&] { list.read(m_connection, sql); });
        if (list.recordCount() < rows)
            giveUp("rows are missing");
        return time;
    }

private:
    QString m_path;
    Connection m_connection;
    QRandomGenerator m_random{1};
};

/// What fills both shops alike. @param numbers  a source of rows with the column n
QStringList fillings(const QString& productNumbers, const QString& lineNumbers, const QString& barcode) {
    return {
        u"INSERT INTO urunler (barkod, urun, alis, satis, stok) SELECT %1, 'Ürün ' || n, 7, 10, 1000 FROM %2"_s
            .arg(barcode, productNumbers),
        u"INSERT INTO satislar (tarih, barkod, urun, adet, fiyat, alis, kar, toplam) SELECT '2026-05-03 10:00:00', %1, 'Ürün ' || n, 1, 10, 7, 3, 10 FROM %2"_s
            .arg(barcode, lineNumbers)};
}

qint64 logSyncs(const ServerCluster& cluster) {
    return cluster.rows(u"postgres"_s, u"SELECT wal_sync FROM pg_stat_wal"_s).value(0).value(0).toLongLong();
}

}  // namespace

int main(int argc, char** argv) {
    Figures figures(argc, argv);
    hashInNarrowRegisters();
    int none = 1;
    const QCoreApplication application(none, argv);
    if (const QString missing = ServerCluster::missing(); !missing.isEmpty())
        giveUp(missing.toStdString());
    const auto products = static_cast<quint32>(std::stoul(figures.option("products", "1000000")));
    const auto lines = static_cast<quint32>(std::stoul(figures.option("lines", "1000000")));
    const int rounds = figures.quick() ? 2 : 5;

    const QTemporaryDir folder;
    ServerCluster cluster;
    if (!cluster.start({u"fsync=on"_s, u"shared_buffers=512MB"_s, u"max_wal_size=4GB"_s}))
        giveUp("no server");
    const QString database = cluster.createDatabase();
    Shop server(cluster.writePointer(folder.path(), database), ServerCluster::password());
    const QString path = folder.filePath(u"shop.data"_s);
    {
        QFile made(path);
        if (!made.open(QIODevice::WriteOnly))
            giveUp("no file");
    }
    server.makeTables();
    {
        Shop made(path, {});
        made.makeTables();
    }
    const QString numbers =
        u"(WITH RECURSIVE c(n) AS (SELECT 0 UNION ALL SELECT n + 1 FROM c WHERE n < %1) SELECT n FROM c)"_s;
    for (const QString& sql :
         fillings(u"generate_series(0, %1) AS n"_s.arg(products - 1),
                  u"generate_series(0, %1) AS n"_s.arg(lines - 1), u"'869' || lpad(n::text, 10, '0')"_s))
        cluster.rows(database, sql);
    cluster.rows(database, u"ANALYZE"_s);
    cluster.rows(database, u"CHECKPOINT"_s);
    Shop file(path, {});
    for (const QString& sql :
         fillings(numbers.arg(products - 1), numbers.arg(lines - 1), u"printf('869%010d', n)"_s))
        file.connection().execute(sql);

    QRandomGenerator random(7);
    std::vector<double> onFile;
    std::vector<double> onServer;
    for (int i = 0; i < 1000 * rounds; ++i) {
        const quint32 product = random.bounded(products);
        onFile.push_back(milliseconds([&] { file.lookUp(product); }));
        onServer.push_back(milliseconds([&] { server.lookUp(product); }));
    }
    figures.tell("Look-up of a barcode, file", percentile(onFile, 0.5), "ms");
    figures.atMost(0.1, "Look-up of a barcode, server on this machine", percentile(onServer, 0.5), "ms");

    onFile.clear();
    onServer.clear();
    server.sell(products);
    file.sell(products);
    for (int i = 0; i < 20 * rounds; ++i) {
        onFile.push_back(milliseconds([&] { file.sell(products); }));
        onServer.push_back(milliseconds([&] { server.sell(products); }));
    }
    figures.tell("Storing 20 lines, file", percentile(onFile, 0.5), "ms");
    figures.tell("Storing 20 lines, server on this machine", percentile(onServer, 0.5), "ms");
    // The server's processes tell of their counts once a second, when they have done something.
    const auto syncsByNow = [&] {
        QThread::msleep(1100);
        server.lookUp(1);
        return logSyncs(cluster);
    };
    const qint64 before = syncsByNow();
    const int sales = 20 * rounds;
    for (int i = 0; i < sales; ++i)
        server.sell(products);
    figures.atMost(1.2, "Syncs of the server's log for 20 lines, those of its own writer among them",
                   static_cast<double>(syncsByNow() - before) / sales, "");

    for (const int delay : {0, 300, 3000}) {
        CountingProxy proxy(cluster.port());
        proxy.setDelay(delay);
        QFile pointer(folder.filePath(u"vekil%1.sunucu"_s.arg(delay)));
        if (!pointer.open(QIODevice::WriteOnly) ||
            pointer.write(u"[sunucu]\nadres=127.0.0.1\nport=%1\nveritabani=%2\nkullanici=%3\ntls=yok\n"_s
                              .arg(QString::number(proxy.port()), database, ServerCluster::role())
                              .toLatin1()) < 0)
            giveUp("no pointer");
        pointer.close();
        Shop far(pointer.fileName(), ServerCluster::password());
        far.sell(products);
        proxy.takeTrips();
        far.sell(products);
        const int trips = proxy.takeTrips();
        const std::string away = delay == 0 ? ", through a proxy" : ", " + std::to_string(delay) + " µs away";
        figures.atMost(62, "Round trips for 20 lines" + away, trips, "");
        std::vector<double> times;
        std::vector<double> scans;
        for (int i = 0; i < 3 * rounds; ++i) {
            times.push_back(milliseconds([&] { far.sell(products); }));
            scans.push_back(milliseconds([&] { far.lookUp(random.bounded(products)); }));
        }
        figures.tell("Look-up of a barcode" + away, percentile(scans, 0.5), "ms");
        figures.tell("Storing 20 lines" + away, percentile(times, 0.5), "ms");
    }

    struct List {
        const char* name;
        QString sql;
        quint32 rows;
        double limit;
    };
    for (const List& list :
         {List{"Reading the products", u"select * from urunler"_s, products, 2},
          List{
              "Reading the lines of a day",
              u"select * from satislar where tarih between #05/03/2026 00:00:00# and #05/03/2026 23:59:59#"_s,
              lines, 1.5}}) {
        onFile.clear();
        onServer.clear();
        for (int i = 0; i < rounds; ++i) {
            onFile.push_back(file.read(list.sql, list.rows));
            onServer.push_back(server.read(list.sql, list.rows));
        }
        const std::string name = list.name + u", %L1 rows"_s.arg(list.rows).toStdString();
        figures.tell(name + ", file", percentile(onFile, 0.5), "ms");
        figures.tell(name + ", server on this machine", percentile(onServer, 0.5), "ms");
        figures.atMost(list.limit, name + ", server against file",
                       percentile(onServer, 0.5) / percentile(onFile, 0.5), "×");
    }
    return figures.status();
}
