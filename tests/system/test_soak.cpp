// The soak: a thousand actions by chance go through on a demo shop, and what breaks on purpose is noticed.

#include <QDir>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <functional>
#include <memory>
#include <vector>

#include "app/modTurkce.h"
#include "exactamounts.h"
#include "programs.h"
#include "rows.h"
#include "runtests.h"
#include "salesfixture.h"
#include "soak.h"

using namespace kovanix;

namespace {

constexpr int products = 200;
constexpr int pastSales = 300;
constexpr int fewActions = 1000;
constexpr qsizetype remembered = 20;  // actions

/// A demo shop of its own, looked at and disturbed from outside of the soak.
class DemoShop {
public:
    DemoShop() {
        const Outcome made =
            runProgram({demoShopProgram(), QStringLiteral("--folder"), folder(), QStringLiteral("--products"),
                        QString::number(products), QStringLiteral("--sales"), QString::number(pastSales)});
        if (made.status != 0)
            qFatal("no demo shop: %s", qUtf8Printable(made.errors));
    }

    QString folder() const { return m_place.filePath(QStringLiteral("shop")); }

    QStringList soak(int actions, int seed) const {
        return {replayProgram(),          QStringLiteral("--folder"), folder(),
                QStringLiteral("--soak"), QString::number(actions),   QStringLiteral("--seed"),
                QString::number(seed)};
    }

    /// Runs a statement on the shop's file. @return the one value that a select gives
    QVariant run(const QString& sql) const {
        QVariant value;
        {
            QSqlDatabase database =
                QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("aside"));
            database.setDatabaseName(QDir(folder()).filePath(QStringLiteral("kovanix.data")));
            database.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=5000"));
            QSqlQuery query(database.open() ? database : QSqlDatabase());
            if (!query.exec(sql))
                qFatal("%s: %s", qUtf8Printable(sql), qUtf8Printable(query.lastError().text()));
            if (query.next())
                value = query.value(0);
        }
        QSqlDatabase::removeDatabase(QStringLiteral("aside"));
        return value;
    }

private:
    QTemporaryDir m_place;
};

/// The number behind a word's place in a summary ("%1 sales of ...").
int figure(const QString& report, const QString& pattern) {
    const QRegularExpressionMatch match = QRegularExpression(pattern).match(report);
    return match.hasMatch() ? match.captured(1).toInt() : -1;
}

/// Without the time that it took.
QString timeless(QString report) {
    return report.remove(QRegularExpression(QStringLiteral(", [0-9.]+ s:")));
}

/// A soak on this process's own sales screen, which a case can reach into.
struct OwnSoak {
    explicit OwnSoak(int actions) : soak({actions, 1, receipts.path()}, shop.boxes) {
        qputenv("KOVANIX_PRINTER", "pdf:" + receipts.path().toLocal8Bit());
    }
    ~OwnSoak() { qunsetenv("KOVANIX_PRINTER"); }

    /// Does something behind the soak's back between an action with lines on the ticket and the next one.
    void disturbOnce(const std::function<void(SalesFixture&)>& disturb) {
        QObject::connect(&soak, &Soak::acting, &soak, [this, disturb](int number) {
            if (disturbedAt > 0)
                return;
            QTimer::singleShot(0, &soak, [this, disturb, number] {
                if (shop.lines() == 0)
                    return;
                disturbedAt = number;
                disturb(shop);
            });
        });
    }

    /// Runs it to its end. @return what it reports
    QString run() {
        QSignalSpy finished(&soak, &Soak::finished);
        soak.start();
        if (finished.isEmpty() && !finished.wait(patience))
            qFatal("the soak doesn't end");
        return soak.report().join(u'\n');
    }

    QTemporaryDir receipts;
    SalesFixture shop;
    Soak soak;
    int disturbedAt = 0;
};

}  // namespace

class SoakTest : public QObject {
    Q_OBJECT

    struct ExactAmountsRow {
        QString quantity, price, total;
    };
    struct WhatTheFileDoesIsNoticedRow {
        QString trigger, fault;
    };

private Q_SLOTS:
    void exactAmounts_data() {
        addRows<ExactAmountsRow>(
            {{"whole numbers", {"3", "12,50", "37,50"}},
             {"groups and decimals", {"2,5", "1.234,50", "3086,25"}},
             {"half away from zero", {"0,1", "0,05", "0,01"}},
             {"below a half", {"0,1", "0,04", "0,00"}},
             {"a half that binary numbers lack", {"1,005", "1,00", "1,01"}},
             {"open ends", {",5", "12,", "6,00"}},
             {"nothing", {"0", "99,90", "0,00"}},
             {"as many digits as a total is exact to", {"9999999", "999999,99", "9999998900000,01"}},
             {"too many digits", {"99999999", "9999999,99", QString()}},
             {"no number", {"1,,2", "1,00", QString()}}});
    }
    void exactAmounts() {
        QFETCH(const ExactAmountsRow, row);
        const std::optional<qint64> kurus = lineInKurus(row.quantity, row.price);
        QCOMPARE(kurus ? amountText(*kurus) : QString(), row.total);
    }

    void aThousandActionsHold() {
        const std::vector<int> seeds{1, 2, 3};
        std::vector<std::unique_ptr<DemoShop>> shops;
        std::vector<std::unique_ptr<Program>> soaks;
        for (const int seed : seeds) {
            shops.push_back(std::make_unique<DemoShop>());
            soaks.push_back(std::make_unique<Program>(shops.back()->soak(fewActions, seed)));
        }
        for (std::size_t i = 0; i < seeds.size(); ++i) {
            const Outcome outcome = soaks[i]->finish();
            QCOMPARE(outcome.errors, QString());
            QVERIFY(outcome.ended);
            QCOMPARE(outcome.status, 0);
            const QString& report = outcome.output;
            QVERIFY2(report.startsWith(QStringLiteral("soak: %1 actions of ").arg(fewActions)),
                     qPrintable(report));
            QVERIFY(report.contains(QStringLiteral(", seed %1, ").arg(seeds[i])));
            // It did what a cashier does, and what it says it did.
            QVERIFY2(figure(report, QStringLiteral("of (\\d+) kinds")) >= 50, qPrintable(report));
            QVERIFY2(figure(report, QStringLiteral("(\\d+) sales of")) > 10, qPrintable(report));
            QVERIFY2(figure(report, QStringLiteral("(\\d+) receipts")) > 0, qPrintable(report));
            QVERIFY2(figure(report, QStringLiteral("(\\d+) boxes")) > 10, qPrintable(report));
            const int stored = figure(report, QStringLiteral("sales of (\\d+) lines"));
            QVERIFY2(stored > 30, qPrintable(report));
            QCOMPARE(shops[i]->run(QStringLiteral("SELECT count(*) FROM satislar")).toInt(),
                     pastSales + stored);
            const int made = figure(report, QStringLiteral("(\\d+) products made"));
            QVERIFY2(made > 0, qPrintable(report));
            QCOMPARE(shops[i]->run(QStringLiteral("SELECT count(*) FROM urunler")).toInt(), products + made);
        }
    }

    void whatTheFileDoesIsNoticed_data() {
        addRows<WhatTheFileDoesIsNoticedRow>(
            {{"a quantity stored wrongly",
              {"AFTER INSERT ON satislar BEGIN UPDATE satislar SET adet = adet + 1 WHERE no = new.no; END",
               "the row stored for"}},
             {"a profit stored wrongly",
              {"AFTER INSERT ON satislar BEGIN UPDATE satislar SET kar = kar + 0.01 WHERE no = new.no; END",
               "the row stored for"}},
             {"a row that isn't stored",
              {"AFTER INSERT ON satislar BEGIN DELETE FROM satislar WHERE no = new.no; END",
               "no row was stored for"}},
             {"a row too many",
              {"AFTER INSERT ON satislar BEGIN INSERT INTO satislar (barkod) VALUES (new.barkod); END",
               "(the row stored for|more rows are stored)"}},
             {"an older row that goes",
              {"AFTER INSERT ON satislar BEGIN DELETE FROM satislar "
               "WHERE no = (SELECT min(no) FROM satislar); END",
               "\\d+ rows are stored, \\d+ should be"}},
             {"stock taken off twice",
              {"AFTER UPDATE OF stok ON urunler BEGIN UPDATE urunler SET "
               "stok = stok - 1 WHERE no = new.no; END",
               "the stock of \\d+ is"}},
             {"stock of another product",
              {"AFTER UPDATE OF stok ON urunler BEGIN UPDATE urunler SET stok = stok - 1 WHERE no = "
               "(SELECT max(no) FROM urunler WHERE no <> new.no); END",
               "the stock of \\d+ is"}},
             {"a new product with another stock",
              {"AFTER INSERT ON urunler BEGIN UPDATE urunler SET stok = 7 WHERE no = new.no; END",
               "the product made of"}},
             {"a sale that the file refuses",
              {"BEFORE INSERT ON satislar BEGIN SELECT RAISE(ABORT, 'refused'); END",
               "unexpected box .*refused"}}});
    }
    void whatTheFileDoesIsNoticed() {
        QFETCH(const WhatTheFileDoesIsNoticedRow, row);
        const DemoShop shop;
        shop.run(u"CREATE TRIGGER disturb " + row.trigger);
        const Outcome outcome = runProgram(shop.soak(fewActions, 1));
        QVERIFY(outcome.ended);
        QCOMPARE(outcome.status, 1);
        QCOMPARE(outcome.output, QString());
        const QStringList lines = outcome.errors.trimmed().split(u'\n');
        const QRegularExpression first(u"^soak: broken at action (\\d+) of 1000, seed 1: .*" + row.fault);
        const QRegularExpressionMatch match = first.match(lines.constFirst());
        QVERIFY2(match.hasMatch(), qPrintable(outcome.errors));
        // The last actions follow, the one that broke it at the end.
        const int number = match.captured(1).toInt();
        QCOMPARE(lines.size() - 1, std::min<qsizetype>(number, remembered));
        QVERIFY2(lines.constLast().startsWith(QStringLiteral("  %1 ").arg(number)),
                 qPrintable(outcome.errors));
    }

    void equalSeedsMakeEqualActions() {
        QStringList reports;
        for (const int seed : {4, 4, 5}) {
            const DemoShop shop;
            const Outcome outcome =
                runProgram(shop.soak(100, seed) + QStringList{QStringLiteral("--actions")});
            QCOMPARE(outcome.errors, QString());
            reports.append(timeless(outcome.output));
        }
        QCOMPARE(reports.at(0).count(
                     QRegularExpression(QStringLiteral("^\\d+ "), QRegularExpression::MultilineOption)),
                 100);
        QCOMPARE(reports.at(0), reports.at(1));
        QVERIFY(reports.at(0) != reports.at(2));
    }

    void anotherProgramThatWritesIsNoticed() {
        const DemoShop shop;
        Program soak(shop.soak(100'000, 1) + QStringList{QStringLiteral("--actions")});
        QVERIFY(QTest::qWaitFor([&soak] { return soak.lines().size() > 50; }, patience));
        shop.run(QStringLiteral("UPDATE urunler SET stok = stok + 1 WHERE no = 7"));
        const Outcome outcome = soak.finish();
        QCOMPARE(outcome.status, 1);
        QVERIFY2(outcome.errors.contains(QStringLiteral(": the stock of ")), qPrintable(outcome.errors));
    }

    void whatHappensBetweenTwoActionsIsNoticed_data() {
        using Disturb = std::function<void(SalesFixture&)>;
        QTest::addColumn<Disturb>("disturb");
        QTest::addColumn<QString>("fault");
        QTest::newRow("a wrong total")
            << Disturb([](SalesFixture& shop) { shop.ui().toplam->setCaption(QStringLiteral("0,01")); })
            << "the total shows 0,01, the lines make ";
        QTest::newRow("a wrong line") << Disturb([](SalesFixture& shop) {
            shop.ui().satisekrani1->setTextMatrix(1, 5, QStringLiteral("0,01"));
        }) << "a line comes to ";
        QTest::newRow("a wrong change")
            << Disturb([](SalesFixture& shop) { shop.ui().kalan->setCaption(QStringLiteral("0,01")); })
            << "the change shows 0,01 for a cash of ";
        QTest::newRow("cash that nobody gave")
            << Disturb([](SalesFixture& shop) { shop.sales().paraekle(5); }) << "the cash is ";
        QTest::newRow("a line that nobody scanned") << Disturb([](SalesFixture& shop) {
            shop.ui().barkod->setText(goods::bag);
            shop.sales().urunekle();
        }) << "the ticket holds ";
        QTest::newRow("a name in the entry row") << Disturb([](SalesFixture& shop) {
            VSFlexGrid& grid = *shop.ui().satisekrani1;
            grid.setTextMatrix(grid.rows() - 1, 2, QStringLiteral("x"));
        }) << "the entry row isn't empty";
        QTest::newRow("a quantity that nobody typed")
            << Disturb([](SalesFixture& shop) { shop.ui().adet->setText(QStringLiteral("12345678901234")); })
            << "the quantity holds ";
        QTest::newRow("a stock that somebody else changes") << Disturb([](SalesFixture& shop) {
            shop.run(QStringLiteral("UPDATE urunler SET stok = stok + 1 WHERE no = 1"));
        }) << "the stock of ";
        QTest::newRow("a box that nobody asked for")
            << Disturb([](SalesFixture&) { mesaj(QStringLiteral("ADET_LIMIT"), 0, QString()); })
            << "unexpected box ";
    }
    void whatHappensBetweenTwoActionsIsNoticed() {
        QFETCH(std::function<void(SalesFixture&)>, disturb);
        QFETCH(QString, fault);
        OwnSoak own(fewActions);
        own.disturbOnce(disturb);
        const QString report = own.run();
        QVERIFY(!own.soak.held());
        // At once: no later action has been made.
        const QString expected =
            QStringLiteral("soak: broken at action %1 of 1000, seed 1: ").arg(own.disturbedAt) + fault;
        QVERIFY2(report.startsWith(expected), qPrintable(report));
    }

    void memoryThatGrowsIsNoticed() {
        constexpr int actions = Soak::settled + 10;
        OwnSoak own(actions);
        std::vector<QByteArray> leak;
        connect(&own.soak, &Soak::acting, this, [&leak](int number) {
            if (number > Soak::settled)
                leak.emplace_back(2'000'000, 'x');
        });
        const QString report = own.run();
        QVERIFY2(report.startsWith(
                     QStringLiteral("soak: broken at action %1 of %1, seed 1: memory isn't ").arg(actions)),
                 qPrintable(report));
    }
};

int main(int argc, char** argv) {
    return runTests<SoakTest>(argc, argv);
}

#include "test_soak.moc"
