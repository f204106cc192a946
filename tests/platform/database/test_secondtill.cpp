// How long a second till waits with its sales while a report is read. That till is a process of its own.

#include <QElapsedTimer>
#include <QProcess>
#include <QTextStream>
#include <QThread>
#include <algorithm>

#include "database/connection.h"
#include "database/rowset.h"
#include "database/rowwalk.h"
#include "databasefile.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

const QString year = u"satislar where tarih between #1/1/2026 00:00:00# and #12/31/2026 23:59:59#"_s;

void salesReport(Connection& connection) {
    RowSet rows;
    rows.read(connection, u"select * from "_s + year);
}

void zReport(Connection& connection) {
    double total = 0;
    for (int times = 0; times < 2; ++times)  // it is quick
        RowWalk(connection, u"select tarih, toplam from "_s + year).forEach([&](const RowWalk::Row& row) {
            total += row.number(1).value_or(0);
        });
}

struct ReportRow {
    const char* name;
    bool network;
    void (*read)(Connection& connection);
};

/// A file that ends the second till's day once it is there.
QString closingTime(const QString& path) {
    return path + u".kapat"_s;
}

/// The second till: sells a hundred times a second, and writes how many milliseconds each sale took, or what
/// went wrong.
void sell(const QString& path) {
    Connection connection;
    connection.open(DatabaseFile::connectionString(path, {}));
    QTextStream out(stdout);
    while (!QFile::exists(closingTime(path))) {
        QElapsedTimer timer;
        timer.start();
        const QString failure = wordsOf([&] {
            connection.execute(
                u"INSERT INTO satislar (tarih, urun, adet, toplam, kar) VALUES "
                "(#6/1/2026 10:00:00#, 'Ekmek', 1, 10, 3)"_s);
        });
        out << (failure == u"no error" ? QString::number(timer.elapsed()) : failure) << Qt::endl;
        QThread::msleep(10);  // never stopping, it would let nobody read over the network
    }
}

}  // namespace

Q_DECLARE_METATYPE(ReportRow)

class TestSecondTill : public QObject {
    Q_OBJECT

    DatabaseFile m_file{QString()};

private Q_SLOTS:
    void initTestCase() {
        m_file.execute(
            {u"CREATE TABLE satislar (no COUNTER, tarih DATETIME, barkod TEXT(50), urun TEXT(50), "
             "fiyat DOUBLE, adet DOUBLE, toplam DOUBLE, kar DOUBLE)"_s});
        RawDatabase raw(m_file.path(), {});
        QVERIFY(raw.run(
            u"INSERT INTO satislar (tarih, barkod, urun, fiyat, adet, toplam, kar) WITH RECURSIVE n(i) "
            "AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 300000) SELECT "
            "datetime(1767225600 + i * 60, 'unixepoch'), '8690000000012', 'Ekmek', 10, 1, 10, 3 FROM n"_s));
    }

    void sellsMeanwhile_data() {
        QTest::addColumn<ReportRow>("row");
        for (const ReportRow& row : {ReportRow{"sales report", false, salesReport},
                                     ReportRow{"sales report over the network", true, salesReport},
                                     ReportRow{"Z report over the network", true, zReport}})
            QTest::newRow(row.name) << row;
    }

    /// Over the network a statement that is being read keeps the other till out: it gets in between two.
    void sellsMeanwhile() {
        QFETCH(const ReportRow, row);
        setNetworkFileTest([&](const QString&) { return row.network; });
        const auto restore = qScopeGuard([] { setNetworkFileTest({}); });
        Connection connection;
        connection.open(m_file.connectionString());  // which settles the journal that both write
        QFile::remove(closingTime(m_file.path()));
        QProcess till;
        till.start(QCoreApplication::applicationFilePath(),
                   {u"sell"_s, m_file.path(), row.network ? u"network"_s : u"local"_s});
        QVERIFY(till.waitForReadyRead());
        till.readAllStandardOutput();

        QElapsedTimer timer;
        timer.start();
        row.read(connection);
        const qint64 taken = timer.elapsed();
        till.waitForReadyRead(0);
        QByteArray told = till.readAllStandardOutput();
        QVERIFY(till.waitForReadyRead());  // the sale that was waiting as the read ended
        told += till.readAllStandardOutput();
        const QByteArrayList sales = told.trimmed().split('\n');

        QFile closing(closingTime(m_file.path()));
        QVERIFY(closing.open(QIODevice::WriteOnly));
        QVERIFY(till.waitForFinished());
        QCOMPARE(till.exitCode(), 0);
        qint64 longest = 0;
        for (const QByteArray& sale : sales) {
            bool stored = false;
            longest = std::max(longest, sale.toLongLong(&stored));
            QVERIFY2(stored, sale.constData());
        }
        const QByteArray sum = QByteArray::number(sales.size()) + " sales in " + QByteArray::number(taken) +
                               " ms, the longest took " + QByteArray::number(longest);
        QVERIFY2(sales.size() >= 5 && longest < taken / 2, sum.constData());
    }
};

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == u"sell") {
        setNetworkFileTest([&](const QString&) { return arguments.value(3) == u"network"; });
        sell(arguments.value(2));
        return 0;
    }
    TestSecondTill test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_secondtill.moc"
