#include <QTest>
#include <QTimer>
#include <stdexcept>
#include <vector>

#include "runtime/attempt.h"
#include "runtime/clock.h"
#include "runtime/process.h"
#include "runtime/runtimeerror.h"

using namespace kovanix;

class TestErrors : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void carriesWhatFailed_data();
    void carriesWhatFailed();
    void attemptGoesOn();
    void attemptPassesOnOtherFailures();
    void clockIsReplaceable();
    void clockComesBack();
    void processEndIsReplaceable();
    void processEndIsHeardOutsideTheLoop();
};

void TestErrors::cleanup() {
    Clock::setSource({});
    setProcessEnd({});
}

void TestErrors::carriesWhatFailed_data() {
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("description");
    QTest::addColumn<QString>("source");
    QTest::addColumn<QByteArray>("what");

    QTest::newRow("all three") << RuntimeError::typeMismatch << "tür"
                               << "engine" << QByteArray("13: t\xC3\xBCr");
    QTest::newRow("no description") << RuntimeError::overflow << ""
                                    << "" << QByteArray("6: ");
    QTest::newRow("negative number") << RuntimeError::databaseFailure << "locked"
                                     << "sqlite" << QByteArray("-2147467259: locked");
}

void TestErrors::carriesWhatFailed() {
    QFETCH(int, number);
    QFETCH(QString, description);
    QFETCH(QString, source);
    QFETCH(QByteArray, what);
    try {
        throw RuntimeError(number, description, source);
    } catch (const std::exception& caught) {
        QCOMPARE(QByteArray(caught.what()), what);
        const auto* error = dynamic_cast<const RuntimeError*>(&caught);
        QVERIFY(error);
        QCOMPARE(error->number(), number);
        QCOMPARE(error->description(), description);
        QCOMPARE(error->source(), source);
    }
}

void TestErrors::attemptGoesOn() {
    bool wentOn = false;
    const auto failure = attempt([&] {
        throw RuntimeError(RuntimeError::printerError, QStringLiteral("no paper"), QStringLiteral("printer"));
        wentOn = true;
    });
    QVERIFY(!wentOn);
    QVERIFY(failure.has_value());
    QCOMPARE(failure->number(), RuntimeError::printerError);
    QCOMPARE(failure->description(), QStringLiteral("no paper"));
    QCOMPARE(failure->source(), QStringLiteral("printer"));

    int ran = 0;
    QVERIFY(!attempt([&] { ++ran; }).has_value());
    QCOMPARE(ran, 1);
}

void TestErrors::attemptPassesOnOtherFailures() {
    QVERIFY_THROWS_EXCEPTION(std::runtime_error, attempt([] { throw std::runtime_error("defect"); }));
    QVERIFY_THROWS_EXCEPTION(std::bad_alloc, attempt([] { throw std::bad_alloc(); }));
    QVERIFY_THROWS_EXCEPTION(int, attempt([] { throw 5; }));
}

void TestErrors::clockIsReplaceable() {
    QDateTime now(QDate(2021, 5, 3), QTime(7, 5, 9, 123));
    Clock::setSource([&] { return now; });
    QCOMPARE(Clock::now(), now);
    now = now.addDays(1);
    QCOMPARE(Clock::now(), now);
}

void TestErrors::clockComesBack() {
    const QDateTime past(QDate(1999, 1, 1), QTime(0, 0));
    Clock::setSource([=] { return past; });
    QCOMPARE(Clock::now(), past);
    Clock::setSource({});
    const QDateTime before = QDateTime::currentDateTime();
    const QDateTime now = Clock::now();
    const QDateTime after = QDateTime::currentDateTime();
    QVERIFY(before <= now);
    QVERIFY(now <= after);
    QCOMPARE(now.timeSpec(), Qt::LocalTime);
}

void TestErrors::processEndIsReplaceable() {
    std::vector<int> ends;
    setProcessEnd([&](int status) { ends.push_back(status); });
    endProcess(1);
    endProcess(0);
    QCOMPARE(ends, (std::vector<int>{1, 0}));
}

void TestErrors::processEndIsHeardOutsideTheLoop() {
    // Were it not heard, this would end the loop with another status instead of hanging.
    QTimer::singleShot(5000, this, [] { QCoreApplication::exit(99); });
    endProcess(7);
    QCOMPARE(QCoreApplication::exec(), 7);
}

QTEST_MAIN(TestErrors)
#include "test_errors.moc"
