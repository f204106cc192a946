// How the process ends: by failures that nothing catches, and by its two doors.

#include "programs.h"
#include "rows.h"
#include "runtests.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

qsizetype boxes(const QString& output) {
    return output.count(u"box "_s);
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
        QTest::newRow("Enter in an empty adet") << QStringList{u"type adet"_s, u"key Return"_s};
        QTest::newRow("a label of seven characters") << QStringList{u"scan 2700012"_s};
        QTest::newRow("a label of its prefix alone") << QStringList{u"scan 28"_s};
        QTest::newRow("a short label in adet") << QStringList{u"type adet 29"_s, u"key Return"_s};
        QTest::newRow("with a ticket open") << QStringList{u"scan "_s + shelf::bread, u"scan 2900012"_s};
    }

    void aFailureThatNothingCatches() {
        QFETCH(QStringList, steps);
        const ClosedShop shop;
        const Outcome outcome =
            runProgram(shop.replay(QStringList{u"answer Tamam"_s} + steps + QStringList{u"say alive"_s}));
        QVERIFY(outcome.ended);
        QCOMPARE(outcome.status, 1);
        QCOMPARE(
            outcome.output,
            u"critical box Kovanix: Beklenmeyen bir hata oldu, program kapanacak. Sayı beklenen bir yerde "
            "sayı yok.\\n\\nKaydedilen satışlar güvende. Kaydedilmemiş fiş varsa yeniden girin.\\n\\n"
            "Destek için: 13: Type mismatch\n"_s);
        QCOMPARE(outcome.errors, u"13: Type mismatch\n"_s);
        QVERIFY(!QFile::exists(shop.databaseFile() + u"-wal"));
        QCOMPARE(shop.value(u"SELECT count(*) FROM satislar"_s).toInt(), 0);
        QCOMPARE(shop.value(u"PRAGMA integrity_check"_s).toString(), u"ok"_s);
    }

    void theShortestLabelIsSold() {
        // The eighth character is a weight of its own, one digit long.
        const ClosedShop shop;
        const Outcome outcome = runProgram(shop.replay({u"scan 27000128"_s, u"key F1"_s}));
        QCOMPARE(outcome.errors + outcome.output, QString());
        QCOMPARE(outcome.status, 0);
        QCOMPARE(shop.value(u"SELECT adet FROM satislar"_s).toDouble(), 0.008);
    }

    void aScriptThatTheProgramsEndCutsShort() {
        const ClosedShop shop;
        const Outcome outcome = runProgram(shop.replay({u"answer Evet"_s, u"press kapat"_s, u"say alive"_s}));
        QVERIFY(outcome.ended);
        QCOMPARE(outcome.status, 1);
        QVERIFY2(outcome.errors.contains(u"the program has ended before this step"),
                 qPrintable(outcome.errors));
    }

    void theDoors_data() {
        addRows<TheDoorsRow>({{"Yes at the kapat button", {u"Evet"_s, u"press kapat"_s, true}},
                              {"Yes after F9", {u"Evet"_s, u"key F9"_s, true}},
                              {"Yes at the close request", {u"Evet"_s, u"close"_s, true}},
                              {"No at the close request", {u"Hayır"_s, u"close"_s, true}},
                              {"Escape at the close request", {u"Escape"_s, u"close"_s, true}},
                              {"No at the kapat button", {u"Hayır"_s, u"press kapat"_s, false}},
                              {"Escape after F9", {u"Escape"_s, u"key F9"_s, false}}});
    }

    void theDoors() {
        QFETCH(const TheDoorsRow, row);
        const ClosedShop shop;
        QStringList steps{u"scan "_s + shelf::bread, u"answer "_s + row.answer, row.door};
        if (row.ends)
            steps << u"stay"_s;
        else
            steps << u"expect toplam 10,00"_s << u"key F1"_s << u"say alive"_s;
        const Outcome outcome = runProgram(shop.replay(steps));
        QVERIFY(outcome.ended);
        QCOMPARE(outcome.status, 0);
        QCOMPARE(outcome.errors, QString());
        QCOMPARE(boxes(outcome.output), 1);
        QCOMPARE(outcome.output.contains(u"alive"_s), !row.ends);
        // The open ticket is dropped, or it is still there to be stored.
        QCOMPARE(shop.value(u"SELECT count(*) FROM satislar"_s).toInt(), row.ends ? 0 : 1);
        // Connections were closed on the way out: nothing is left in a log.
        QVERIFY(!QFile::exists(shop.databaseFile() + u"-wal"));
    }
};

int main(int argc, char** argv) {
    return runTests<UncaughtTest>(argc, argv);
}

#include "test_uncaught.moc"
