// How the process ends: by failures that nothing catches, and by its two doors.

#include "programs.h"
#include "rows.h"
#include "runtests.h"

using namespace kovanix;

namespace {

qsizetype boxes(const QString& output) {
    return output.count(QStringLiteral("box "));
}

}  // namespace

class UncaughtTest : public QObject {
    Q_OBJECT

    struct TheDoorsRow {
        QString answer, door;
        bool ends;
    };

private Q_SLOTS:
    void aFailureThatNothingCatches_data() {
        QTest::addColumn<QStringList>("steps");
        QTest::newRow("Enter in an empty adet")
            << QStringList{QStringLiteral("type adet"), QStringLiteral("key Return")};
        QTest::newRow("a label of seven characters") << QStringList{QStringLiteral("scan 2700012")};
        QTest::newRow("a label of its prefix alone") << QStringList{QStringLiteral("scan 28")};
        QTest::newRow("a short label in adet")
            << QStringList{QStringLiteral("type adet 29"), QStringLiteral("key Return")};
        QTest::newRow("with a ticket open")
            << QStringList{QStringLiteral("scan ") + shelf::bread, QStringLiteral("scan 2900012")};
    }

    void aFailureThatNothingCatches() {
        QFETCH(QStringList, steps);
        const ClosedShop shop;
        const Outcome outcome = runProgram(shop.replay(QStringList{QStringLiteral("answer Tamam")} + steps +
                                                       QStringList{QStringLiteral("say alive")}));
        QVERIFY(outcome.ended);
        QCOMPARE(outcome.status, 1);
        QCOMPARE(outcome.output, QStringLiteral("critical box Kovanix: 13\\nType mismatch\n"));
        QCOMPARE(outcome.errors, QStringLiteral("13: Type mismatch\n"));
        QCOMPARE(shop.value(QStringLiteral("SELECT count(*) FROM satislar")).toInt(), 0);
        QCOMPARE(shop.value(QStringLiteral("PRAGMA integrity_check")).toString(), QStringLiteral("ok"));
    }

    void theShortestLabelIsSold() {
        // The eighth character is a weight of its own, one digit long.
        const ClosedShop shop;
        const Outcome outcome =
            runProgram(shop.replay({QStringLiteral("scan 27000128"), QStringLiteral("key F1")}));
        QCOMPARE(outcome.errors + outcome.output, QString());
        QCOMPARE(outcome.status, 0);
        QCOMPARE(shop.value(QStringLiteral("SELECT adet FROM satislar")).toDouble(), 0.008);
    }

    void theDoors_data() {
        addRows<TheDoorsRow>(
            {{"Yes at the kapat button", {QStringLiteral("Evet"), QStringLiteral("press kapat"), true}},
             {"Yes after F9", {QStringLiteral("Evet"), QStringLiteral("key F9"), true}},
             {"Yes at the close request", {QStringLiteral("Evet"), QStringLiteral("close"), true}},
             {"No at the close request", {QStringLiteral("Hayır"), QStringLiteral("close"), true}},
             {"Escape at the close request", {QStringLiteral("Escape"), QStringLiteral("close"), true}},
             {"No at the kapat button", {QStringLiteral("Hayır"), QStringLiteral("press kapat"), false}},
             {"Escape after F9", {QStringLiteral("Escape"), QStringLiteral("key F9"), false}}});
    }

    void theDoors() {
        QFETCH(const TheDoorsRow, row);
        const ClosedShop shop;
        QStringList steps{QStringLiteral("scan ") + shelf::bread, QStringLiteral("answer ") + row.answer,
                          row.door};
        if (row.ends)
            steps << QStringLiteral("stay");
        else
            steps << QStringLiteral("expect toplam 10,00") << QStringLiteral("key F1")
                  << QStringLiteral("say alive");
        const Outcome outcome = runProgram(shop.replay(steps));
        QVERIFY(outcome.ended);
        QCOMPARE(outcome.status, 0);
        QCOMPARE(outcome.errors, QString());
        QCOMPARE(boxes(outcome.output), 1);
        QCOMPARE(outcome.output.contains(QStringLiteral("alive")), !row.ends);
        // The open ticket is dropped, or it is still there to be stored.
        QCOMPARE(shop.value(QStringLiteral("SELECT count(*) FROM satislar")).toInt(), row.ends ? 0 : 1);
        // Connections were closed on the way out: nothing is left in a log.
        QVERIFY(!QFile::exists(shop.databaseFile() + u"-wal"));
    }
};

int main(int argc, char** argv) {
    return runTests<UncaughtTest>(argc, argv);
}

#include "test_uncaught.moc"
