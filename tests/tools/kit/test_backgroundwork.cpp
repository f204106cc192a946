#include <QtTest>
#include <semaphore>

#include "kit/backgroundwork.h"
#include "runtime/runtimeerror.h"

namespace kovanix {

using namespace Qt::StringLiterals;

class BackgroundWorkTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theEndIsToldInTheWindowsThread() {
        BackgroundWork work;
        QThread* worker = nullptr;
        QThread* told = nullptr;
        connect(&work, &BackgroundWork::finished, this, [&] { told = QThread::currentThread(); });
        work.start([&](WorkProgress&) { worker = QThread::currentThread(); });
        QVERIFY(work.isRunning());
        QTRY_VERIFY(told);
        QVERIFY(!work.isRunning());
        QCOMPARE(told, thread());
        QVERIFY(worker != told);
    }

    void aFailureIsToldInItsWords() {
        BackgroundWork work;
        QSignalSpy failed(&work, &BackgroundWork::failed);
        work.start([](WorkProgress&) { throw RuntimeError(1, u"disk dolu"_s); });
        QTRY_COMPARE(failed.size(), 1);
        QCOMPARE(failed[0][0].toString(), u"disk dolu"_s);
        QVERIFY(!work.isRunning());
    }

    void progressComesAheadOfTheEnd() {
        BackgroundWork work;
        QStringList told;
        connect(&work, &BackgroundWork::progressed, this,
                [&](const QString& what, qint64 done, qint64 total) {
                    told << u"%1 %2/%3"_s.arg(what).arg(done).arg(total);
                });
        connect(&work, &BackgroundWork::finished, this, [&] { told << u"end"_s; });
        work.start([](WorkProgress& progress) { progress.tell(u"rows"_s, 1, 2); });
        QTRY_COMPARE(told, (QStringList{u"rows 1/2"_s, u"end"_s}));
    }

    void cancelledWorkCleansUp() {
        BackgroundWork work;
        std::binary_semaphore begun{0};
        bool cleaned = false;
        QSignalSpy cancelled(&work, &BackgroundWork::cancelled);
        QSignalSpy finished(&work, &BackgroundWork::finished);
        work.start([&](WorkProgress& progress) {
            const auto clean = qScopeGuard([&] { cleaned = true; });
            begun.release();
            while (true)
                progress.tell({}, 0, 0);
        });
        begun.acquire();
        work.cancel();
        QTRY_COMPARE(cancelled.size(), 1);
        QVERIFY(cleaned);
        QVERIFY(finished.isEmpty());
    }

    void whoGoesWaitsForItsWork() {
        bool ended = false;
        {
            BackgroundWork work;
            std::binary_semaphore begun{0};
            work.start([&](WorkProgress& progress) {
                const auto end = qScopeGuard([&] { ended = true; });
                begun.release();
                while (true)
                    progress.tell({}, 0, 0);
            });
            begun.acquire();
        }
        QVERIFY(ended);
    }

    void oneEndsAndTheNextBegins() {
        BackgroundWork work;
        QSignalSpy finished(&work, &BackgroundWork::finished);
        work.start([](WorkProgress&) {});
        QTRY_COMPARE(finished.size(), 1);
        work.start([](WorkProgress&) {});
        QTRY_COMPARE(finished.size(), 2);
    }
};

}  // namespace kovanix

QTEST_GUILESS_MAIN(kovanix::BackgroundWorkTest)
#include "test_backgroundwork.moc"
