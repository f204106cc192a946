// The soak: a thousand actions by chance go through on a demo shop, and what breaks on purpose is noticed.

#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTemporaryDir>
#include <functional>
#include <vector>

#include "app/modTurkce.h"
#include "app/session.h"
#include "appearance/ekoz.h"
#include "appearance/modTema.h"
#include "desktop/focus.h"
#include "programs.h"
#include "runtests.h"
#include "salesfixture.h"
#include "sanitized.h"
#include "soak.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

constexpr int fewActions = 1000;
constexpr qsizetype remembered = 20;  // actions

/// A soak on this process's own sales screen, which a case can reach into.
struct OwnSoak {
    explicit OwnSoak(SoakPlan plan) : soak(withReceipts(std::move(plan)), shop.boxes) {
        qputenv("KOVANIX_PRINTER", "pdf:" + receipts.path().toLocal8Bit());
        girisyetki = 1;
        QObject::connect(&soak, &Soak::acting, &soak,
                         [this](int, const QString& what) { actions.append(what); });
    }
    ~OwnSoak() { qunsetenv("KOVANIX_PRINTER"); }

    SoakPlan withReceipts(SoakPlan plan) const {
        plan.receipts = receipts.path();
        return plan;
    }

    /// Does something behind the soak's back between an action with lines on the ticket and its judgement.
    void disturbOnce(const std::function<void(SalesFixture&)>& disturb) {
        QObject::connect(&soak, &Soak::acting, &soak, [this, disturb](int number) {
            QTimer::singleShot(0, &soak, [this, disturb, number] {
                if (disturbedAt > 0 || shop.lines() == 0 || !shop.ui().barkod->hasFocus())
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
    QStringList actions;
    int disturbedAt = 0;
};

/// What the file does by itself, and what the soak says of it.
struct Trigger {
    const char* name;
    QString sql;
    QString fault;
};

/// What happens behind the soak's back, and what it says of it.
struct Disturbance {
    const char* name;
    std::function<void(SalesFixture&)> disturb;
    QString fault;
};

}  // namespace

Q_DECLARE_METATYPE(Trigger)
Q_DECLARE_METATYPE(Disturbance)

class SoakTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aThousandActionsHold() {
        const QTemporaryDir place;
        const QString folder = place.filePath(u"shop"_s);
        const Outcome made =
            runProgram({demoShopProgram(), "--folder", folder, "--products", "200", "--sales", "300"});
        QCOMPARE(made.status, 0);
        const Outcome outcome = runProgram(
            {SOAK_PROGRAM, "--folder", folder, "--seed", "2", "--actions", QString::number(fewActions)});
        QCOMPARE(outcome.errors, QString());
        QVERIFY(outcome.ended);
        QCOMPARE(outcome.status, 0);
        const auto figure = [&outcome](const QString& pattern) {
            return QRegularExpression(pattern).match(outcome.output).captured(1).toInt();
        };
        // It did what a cashier does.
        const QByteArray report = outcome.output.toUtf8();
        QVERIFY2(report.startsWith("soak: 1000 actions of "), report.constData());
        QVERIFY2(figure(u"of (\\d+) kinds"_s) >= 70, report.constData());
        QVERIFY2(figure(u"(\\d+) sales of"_s) > 10, report.constData());
        QVERIFY2(figure(u"sales of (\\d+) lines"_s) > 30, report.constData());
        QVERIFY2(figure(u"(\\d+) receipts"_s) > 0, report.constData());
        QVERIFY2(figure(u"(\\d+) products made"_s) > 0, report.constData());
        QVERIFY2(figure(u"(\\d+) boxes"_s) > 10, report.constData());
    }

    void whatTheFileDoesIsNoticed_data() {
        const std::vector<Trigger> rows{
            {"a quantity stored wrongly",
             "AFTER INSERT ON satislar BEGIN UPDATE satislar SET adet = adet + 1 WHERE no = new.no; END",
             "the row stored for"},
            {"a profit stored wrongly",
             "AFTER INSERT ON satislar BEGIN UPDATE satislar SET kar = kar + 0.01 WHERE no = new.no; END",
             "the row stored for"},
            {"a row that isn't stored",
             "AFTER INSERT ON satislar BEGIN DELETE FROM satislar WHERE no = new.no; END",
             "no row was stored for"},
            {"a row too many",
             "AFTER UPDATE OF stok ON urunler BEGIN INSERT INTO satislar (barkod) VALUES (new.barkod); END",
             "more rows are stored"},
            {"an older row that changes",
             "AFTER INSERT ON satislar WHEN new.no > 20 BEGIN UPDATE satislar SET toplam = 1 WHERE no = 1; "
             "END",
             "the sales stored earlier were"},
            {"stock taken off twice",
             "AFTER UPDATE OF stok ON urunler BEGIN UPDATE urunler SET stok = stok - 1 WHERE no = new.no; "
             "END",
             "the stock of \\d+ is"},
            {"stock of another product",
             "AFTER UPDATE OF stok ON urunler BEGIN UPDATE urunler SET stok = stok - 1 WHERE no <> new.no; "
             "END",
             "the stock of \\d+ is"},
            {"a price changed by a sale",
             "AFTER INSERT ON satislar BEGIN UPDATE urunler SET satis = new.fiyat + 1; END",
             "the product is \\d+ "},
            {"a new product with another stock",
             "AFTER INSERT ON urunler BEGIN UPDATE urunler SET stok = 7 WHERE no = new.no; END",
             "the stock of [0-9,]+ is"},
            {"another table that grows",
             "AFTER INSERT ON satislar BEGIN INSERT INTO musteri (adi) VALUES ('x'); END",
             "the table musteri has \\d+ rows"},
            {"a sale that the file refuses",
             "BEFORE INSERT ON satislar BEGIN SELECT RAISE(ABORT, 'refused'); END",
             "unexpected box .*refused"}};
        QTest::addColumn<Trigger>("row");
        for (const Trigger& row : rows)
            QTest::newRow(row.name) << row;
    }
    void whatTheFileDoesIsNoticed() {
        QFETCH(Trigger, row);
        OwnSoak own({fewActions, 1});
        own.shop.run(u"CREATE TRIGGER disturb " + row.sql);
        const QString report = own.run();
        QVERIFY(!own.soak.held());
        const QRegularExpression first(u"^soak: broken at action (\\d+) of 1000, seed 1: .*" + row.fault);
        const QRegularExpressionMatch match = first.match(report);
        QVERIFY2(match.hasMatch(), qPrintable(report));
        // The last actions follow, the one that broke it at the end.
        const int number = match.captured(1).toInt();
        QCOMPARE(report.count(u'\n'), std::min<qsizetype>(number, remembered));
        QCOMPARE(report.section(u'\n', -1), u"  %1 "_s.arg(number) + own.actions.constLast());
    }

    void equalSeedsMakeEqualActions() {
        std::vector<QStringList> actions;
        for (const quint64 seed : {4, 4, 5}) {
            OwnSoak own({100, seed});
            own.run();
            actions.push_back(own.actions);
        }
        QVERIFY(actions[0].size() >= 100);  // some are told in steps
        QCOMPARE(actions[0], actions[1]);
        QVERIFY(actions[0] != actions[2]);
    }

    void whatHappensBetweenTwoActionsIsNoticed_data() {
        const std::vector<Disturbance> rows{
            {"a wrong total", [](SalesFixture& shop) { shop.ui().toplam->setCaption("0,01"); },
             "the total shows 0,01, the lines make "},
            {"a wrong line", [](SalesFixture& shop) { shop.ui().satisekrani1->setTextMatrix(1, 5, "0,01"); },
             "a line's total isn't "},
            {"a wrong change", [](SalesFixture& shop) { shop.ui().kalan->setCaption("0,01"); },
             "the change shows 0,01 for a cash of "},
            {"cash that nobody gave", [](SalesFixture& shop) { shop.sales().paraekle(5); }, "the cash was "},
            {"two lines that nobody scanned",
             [](SalesFixture& shop) {
                 for (const QString& barcode : {goods::bag, goods::milk, goods::bread, goods::tea}) {
                     shop.ui().barkod->setText(barcode);
                     shop.sales().urunekle();
                 }
             },
             "the ticket's lines have changed"},
            {"a name in the entry row",
             [](SalesFixture& shop) {
                 VSFlexGrid& grid = *shop.ui().satisekrani1;
                 grid.setTextMatrix(grid.rows() - 1, 2, "x");
             },
             "the entry row isn't empty"},
            {"a stock that somebody else changes",
             [](SalesFixture& shop) { shop.run("UPDATE urunler SET stok = stok + 1 WHERE no = 1"); },
             "the stock of "},
            {"a customer that somebody else adds",
             [](SalesFixture& shop) { shop.run("INSERT INTO musteri (adi) VALUES ('x')"); },
             "the table musteri has 1 rows"},
            {"a box that nobody asked for", [](SalesFixture&) { mesaj("MSG_EKLENDI", 0, QString()); },
             "unexpected box "},
            {"a focus that is gone", [](SalesFixture& shop) { shop.ui().barkod->clearFocus(); },
             "nothing has the focus"},
            {"a window left over",
             [](SalesFixture& shop) { (new QWidget(&shop.sales(), Qt::Dialog))->show(); },
             "a window is left over: QWidget"},
            {"a screen left over",
             [](SalesFixture& shop) { (new ekoz)->setParent(&shop.sales(), Qt::Window); },
             "a screen is left over: ekoz"},
            {"a value of the looks", [](SalesFixture&) { sonrenk = 3; }, "a value of the looks"}};
        QTest::addColumn<Disturbance>("row");
        for (const Disturbance& row : rows)
            QTest::newRow(row.name) << row;
    }
    void whatHappensBetweenTwoActionsIsNoticed() {
        QFETCH(Disturbance, row);
        OwnSoak own({fewActions, 1});
        own.disturbOnce(row.disturb);
        const QString report = own.run();
        sonrenk = 0;
        QVERIFY(!own.soak.held());
        // At once: no later action has been made.
        const QString expected =
            u"soak: broken at action %1 of 1000, seed 1: "_s.arg(own.disturbedAt) + row.fault;
        QVERIFY2(report.startsWith(expected), qPrintable(report));
    }

    void memoryThatGrowsIsNoticed() {
        if (sanitized)
            QSKIP("the sanitizers' allocator doesn't tell how much is in use");
        SoakPlan plan{1200, 1};
        plan.settled = 300;
        for (WindowRow& row : plan.windows)
            row.ways.clear();  // none that must have been opened before
        OwnSoak own(plan);
        std::vector<QByteArray> leak;
        connect(&own.soak, &Soak::acting, this, [&leak] { leak.emplace_back(2000, 'x'); });
        const QString report = own.run();
        QVERIFY2(report.startsWith(u"soak: broken at action 1200 of 1200, seed 1: memory isn't "_s),
                 qPrintable(report));
    }

    void aWindowThatNothingOpensIsNoticed() {
        SoakPlan plan{250, 1};
        plan.settled = 100;
        plan.windows.push_back({.name = "saatt2", .ways = {{u"satisekrani"_s, "saat2"}}, .exits = {}});
        OwnSoak own(plan);
        const QString report = own.run();
        QVERIFY2(report.startsWith(u"soak: broken at action 250 of 250, seed 1: these windows were never "_s),
                 qPrintable(report));
        QVERIFY2(report.contains(u"saatt2"_s), qPrintable(report));
    }

    void theFinderIsOpenedAndChosenFrom() {
        SoakPlan plan{400, 1};
        const auto finder = std::ranges::find(plan.windows, u"urunbul"_s, &WindowRow::name);
        QVERIFY(finder != plan.windows.end());
        finder->ways =
            std::vector<WindowRow::Way>(20, finder->ways.front());  // as often as by twenty buttons
        OwnSoak own(plan);
        const QString report = own.run();
        QVERIFY2(own.soak.held(), qPrintable(report));
        const QString never = report.section(u"never made: "_s, 1);
        QVERIFY2(!never.contains(u"choice in urunbul"), qPrintable(never));
        QVERIFY2(!never.contains(u"\"vkCommand4\" of urunbul"), qPrintable(never));
    }
};

int main(int argc, char** argv) {
    return runTests<SoakTest>(argc, argv);
}

#include "test_soak.moc"
