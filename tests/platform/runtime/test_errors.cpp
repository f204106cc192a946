#include <QTest>
#include <QTimer>
#include <stdexcept>
#include <vector>

#include "rows.h"
#include "runtime/attempt.h"
#include "runtime/clock.h"
#include "runtime/process.h"
#include "runtime/runtimeerror.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

class TestErrors : public QObject {
    Q_OBJECT

    struct CarriesWhatFailedRow {
        int number;
        QString description, source;
        QByteArray what;
    };

private Q_SLOTS:
    void cleanup() {
        Clock::setSource({});
        setProcessEnd({});
    }

    void carriesWhatFailed_data() {
        addRows<CarriesWhatFailedRow>(
            {{"all three", {RuntimeError::typeMismatch, "tür", "engine", QByteArray("13: t\xC3\xBCr")}},
             {"no description", {RuntimeError::overflow, "", "", QByteArray("6: ")}},
             {"negative number",
              {RuntimeError::databaseFailure, "locked", "sqlite", QByteArray("-2147467259: locked")}}});
    }
    void carriesWhatFailed() {
        QFETCH(const CarriesWhatFailedRow, row);
        try {
            throw RuntimeError(row.number, row.description, row.source);
        } catch (const std::exception& caught) {
            QCOMPARE(QByteArray(caught.what()), row.what);
            const auto* error = dynamic_cast<const RuntimeError*>(&caught);
            QVERIFY(error);
            QCOMPARE(error->number(), row.number);
            QCOMPARE(error->description(), row.description);
            QCOMPARE(error->source(), row.source);
        }
    }

    void attemptGoesOn() {
        bool wentOn = false;
        const auto failure = attempt([&] {
            throw RuntimeError(RuntimeError::printerError, u"no paper"_s, u"printer"_s);
            wentOn = true;
        });
        QVERIFY(!wentOn);
        QVERIFY(failure.has_value());
        QCOMPARE(failure->number(), RuntimeError::printerError);
        QCOMPARE(failure->description(), u"no paper"_s);
        QCOMPARE(failure->source(), u"printer"_s);

        int ran = 0;
        QVERIFY(!attempt([&] { ++ran; }).has_value());
        QCOMPARE(ran, 1);
    }

    void attemptPassesOnOtherFailures() {
        QVERIFY_THROWS_EXCEPTION(std::runtime_error, attempt([] { throw std::runtime_error("defect"); }));
        QVERIFY_THROWS_EXCEPTION(std::bad_alloc, attempt([] { throw std::bad_alloc(); }));
        QVERIFY_THROWS_EXCEPTION(int, attempt([] { throw 5; }));
    }

    void clockIsReplaceable() {
        QDateTime now(QDate(2021, 5, 3), QTime(7, 5, 9, 123));
        Clock::setSource([&] { return now; });
        QCOMPARE(Clock::now(), now);
        now = now.addDays(1);
        QCOMPARE(Clock::now(), now);
    }

    void clockComesBack() {
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

    void processEndIsReplaceable() {
        std::vector<int> ends;
        setProcessEnd([&](int status) { ends.push_back(status); });
        endProcess(1);
        endProcess(0);
        QCOMPARE(ends, (std::vector<int>{1, 0}));
    }

    void processEndIsHeardOutsideTheLoop() {
        // Were it not heard, this would end the loop with another status instead of hanging.
        QTimer::singleShot(5000, this, [] { QCoreApplication::exit(99); });
        endProcess(7);
        QCOMPARE(QCoreApplication::exec(), 7);
    }
};

QTEST_MAIN(TestErrors)
#include "test_errors.moc"
