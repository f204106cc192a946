// One till at a time on a machine: the built program started a second time, by the same user and by another.

#include <QSignalSpy>
#include <QTemporaryDir>

#include "desktop/singleinstance.h"
#include "programs.h"
#include "runtests.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

class InstanceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        isolateFromOtherTills();
        QTRY_VERIFY2_WITH_TIMEOUT(!someTillAnswers(), "a till is open on this machine: close it", patience);
    }

    void aSecondStart_data() {
        QTest::addColumn<bool>("asAnother");
        QTest::newRow("by the same user") << false;
        QTest::newRow("by another user of the machine") << true;
    }

    void aSecondStart() {
        QFETCH(bool, asAnother);
        if (asAnother && asOrdinaryUser().isEmpty())
            QSKIP("only root can start a program as another user");
        if (asAnother && !ordinaryUserTrouble().isEmpty())
            QSKIP(qPrintable(ordinaryUserTrouble()));

        const ClosedShop shop;
        shop.openToEveryone();
        Program first(shop.till());
        QTRY_VERIFY_WITH_TIMEOUT(someTillAnswers(), patience);

        const Outcome second = runProgram(asAnother ? asOrdinaryUser() + shop.till() : shop.till());
        QVERIFY(second.ended);
        QCOMPARE(second.status, 0);
        QCOMPARE(second.output, QString());
        QCOMPARE(second.errors, QString());
        QVERIFY(first.isRunning());
        QVERIFY(someTillAnswers());
    }

    void aSecondStartAsksTheFirstToComeToTheFront() {
        // The test holds the name itself, so that it hears what the second start says.
        const SingleInstance held(u"Global\\KovanixSingleInstance2026"_s);
        QVERIFY(held.isFirst());
        QSignalSpy raised(&held, &SingleInstance::raiseRequested);

        const ClosedShop shop;
        const Outcome second = runProgram(shop.till());
        QVERIFY(second.ended);
        QCOMPARE(second.status, 0);
        QCOMPARE(second.output + second.errors, QString());
        QCOMPARE(raised.size(), 1);
    }

    void aSecondStartLeavesTheShopAlone() {
        const SingleInstance held(u"Global\\KovanixSingleInstance2026"_s);
        QVERIFY(held.isFirst());
        QTemporaryDir place;
        const QString folder = place.filePath(u"new"_s);
        const Outcome second = runProgram({kovanixProgram(), u"--folder"_s, folder});
        QCOMPARE(second.status, 0);
        QVERIFY(!QFile::exists(folder));
    }

    void aKilledTillLeavesTheNameFree() {
        const ClosedShop shop;
        for (int round = 0; round < 3; ++round) {
            Program till(shop.till());
            QTRY_VERIFY_WITH_TIMEOUT(someTillAnswers(), patience);
            QVERIFY2(till.isRunning(), "this start wasn't the first");
            till.killHard();
            QVERIFY(!someTillAnswers());
        }
    }
};

int main(int argc, char** argv) {
    return runTests<InstanceTest>(argc, argv);
}

#include "test_instance.moc"
