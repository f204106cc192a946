#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QPointer>
#include <QTest>
#include <QWindow>

#include "runtime/runtimeerror.h"
#include "runtime/screen.h"
#include "runtime/screenregistry.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

QStringList calls;

class First : public Screen {
public:
    ~First() override { calls << u"first deleted"_s; }
    void form_load() override { calls << u"first load"_s; }
    void form_activate() override { calls << u"first activate"_s; }

    int state = 0;
};

class Second : public Screen {
public:
    void form_load() override { calls << u"second load"_s; }
    void form_activate() override { calls << u"second activate"_s; }
};

class ReachesBack : public Screen {
public:
    void form_load() override {
        wasLoaded = loaded<ReachesBack>();
        found = &kovanix::screen<ReachesBack>();
        wasVisible = isVisible();
        ++loads;
    }

    bool wasLoaded = false;
    bool wasVisible = true;
    ReachesBack* found = nullptr;
    int loads = 0;
};

class LoadsAnother : public Screen {
public:
    void form_load() override { kovanix::screen<Second>(); }
};

class UnloadsItselfInLoad : public Screen {
public:
    void form_load() override { unload<UnloadsItselfInLoad>(); }
};

class FailsToLoad : public Screen {
public:
    FailsToLoad() { instances << this; }
    void form_load() override {
        if (fails)
            throw RuntimeError(RuntimeError::typeMismatch, u"no"_s);
    }

    static inline bool fails = true;
    static inline QList<QPointer<QObject>> instances;
};

class UnloadsAll : public Screen {
public:
    void run() {
        unloadAllScreens();
        state = 7;
    }

    int state = 0;
};

class LoadsAnotherWhenHidden : public Screen {
protected:
    void hideEvent(QHideEvent*) override { kovanix::screen<Second>(); }
};

class RefusesToClose : public Screen {
protected:
    void closeEvent(QCloseEvent* event) override { event->ignore(); }
};

void runPendingDeletes() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void activate(QWidget& window) {
    QEvent event(QEvent::WindowActivate);
    QCoreApplication::sendEvent(&window, &event);
}

void deactivate(QWidget& window) {
    QEvent event(QEvent::WindowDeactivate);
    QCoreApplication::sendEvent(&window, &event);
}

}  // namespace

class TestScreens : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        calls.clear();
        FailsToLoad::fails = true;
        FailsToLoad::instances.clear();
    }

    void cleanup() {
        ScreenRegistry::clear();
        runPendingDeletes();
    }

    void loadsOnFirstTouchOnly() {
        First& first = screen<First>();
        QCOMPARE(calls, QStringList{u"first load"_s});
        QCOMPARE(&screen<First>(), &first);
        QCOMPARE(calls, QStringList{u"first load"_s});
        QVERIFY(!first.isVisible());
        QVERIFY(first.isWindow());
    }

    void askingDoesNotLoad() {
        QVERIFY(!loaded<First>());
        QVERIFY(calls.isEmpty());
        screen<First>();
        QVERIFY(loaded<First>());
        QVERIFY(!loaded<Second>());
    }

    void loadMayReachBack() {
        ReachesBack& created = screen<ReachesBack>();
        QVERIFY(created.wasLoaded);
        QVERIFY(!created.wasVisible);
        QCOMPARE(created.found, &created);
        QCOMPARE(created.loads, 1);
    }

    void loadMayLoadAnother() {
        screen<LoadsAnother>();
        QVERIFY(loaded<LoadsAnother>());
        QVERIFY(loaded<Second>());
        QCOMPARE(calls, QStringList{u"second load"_s});
    }

    void unloadIsAtOnceAndDeletionLater() {
        First& running = screen<First>();
        const QPointer<First> first = &running;
        unload<First>();
        QVERIFY(!loaded<First>());
        QVERIFY(!first.isNull());
        running.state = 5;  // what stands behind an unload in one of its own procedures still runs
        QCOMPARE(calls, QStringList{u"first load"_s});
        runPendingDeletes();
        QVERIFY(first.isNull());
        QCOMPARE(calls, (QStringList{u"first load"_s, u"first deleted"_s}));
    }

    void unloadedScreenIsHidden() {
        First& first = screen<First>();
        first.show();
        QVERIFY(first.isVisible());
        unload<First>();
        QVERIFY(!first.isVisible());
    }

    void freshStateAfterUnload() {
        screen<First>().state = 5;
        unload<First>();
        runPendingDeletes();
        QCOMPARE(screen<First>().state, 0);
        QCOMPARE(calls, (QStringList{u"first load"_s, u"first deleted"_s, u"first load"_s}));
    }

    void unloadingAndLoadingInOneEvent() {
        First& first = screen<First>();
        const QPointer<First> old = &first;
        first.state = 5;
        unload<First>();
        First& second = screen<First>();
        const QPointer<First> fresh = &second;
        QVERIFY(old != fresh);
        QCOMPARE(second.state, 0);
        runPendingDeletes();
        QVERIFY(old.isNull());
        QVERIFY(!fresh.isNull());
        QCOMPARE(&screen<First>(), fresh.data());
    }

    void unloadOfWhatIsNotLoaded() {
        screen<Second>();
        unload<First>();
        unload<First>();
        QVERIFY(!loaded<First>());
        QVERIFY(loaded<Second>());
        QCOMPARE(calls, QStringList{u"second load"_s});
    }

    void failedLoadIsTakenOut() {
        QVERIFY_THROWS_EXCEPTION(RuntimeError, screen<FailsToLoad>());
        QVERIFY(!loaded<FailsToLoad>());
        QCOMPARE(FailsToLoad::instances.size(), 1);
        runPendingDeletes();
        QVERIFY(FailsToLoad::instances[0].isNull());

        FailsToLoad::fails = false;
        screen<FailsToLoad>();
        QVERIFY(loaded<FailsToLoad>());
        QCOMPARE(FailsToLoad::instances.size(), 2);
    }

    void screenMayUnloadItselfInLoad() {
        QPointer<UnloadsItselfInLoad> screenBehind = &screen<UnloadsItselfInLoad>();
        QVERIFY(!screenBehind.isNull());  // the caller's reference holds to the end of the event
        QVERIFY(!loaded<UnloadsItselfInLoad>());
        runPendingDeletes();
        QVERIFY(screenBehind.isNull());
    }

    void clearDeletesAtOnce() {
        QPointer<First> first = &screen<First>();
        QPointer<Second> second = &screen<Second>();
        ScreenRegistry::clear();
        QVERIFY(first.isNull());
        QVERIFY(second.isNull());
        QVERIFY(!loaded<First>());
        QVERIFY(!loaded<Second>());
        QCOMPARE(calls.count(u"first activate"_s), 0);
    }

    void unloadAllTakesEveryScreen() {
        First& first = screen<First>();
        Second& second = screen<Second>();
        const QPointer<First> firstAlive = &first;
        const QPointer<Second> secondAlive = &second;
        first.show();
        second.show();
        unloadAllScreens();
        QVERIFY(!loaded<First>());
        QVERIFY(!loaded<Second>());
        QVERIFY(firstAlive && secondAlive);
        QVERIFY(!first.isVisible());
        QVERIFY(!second.isVisible());
        runPendingDeletes();
        QVERIFY(!firstAlive);
        QVERIFY(!secondAlive);
    }

    void unloadAllFromAScreensOwnProcedure() {
        const QPointer<UnloadsAll> caller = &screen<UnloadsAll>();
        screen<First>();
        caller->run();
        // Its own procedure went on to the end, with what it held.
        QCOMPARE(caller->state, 7);
        QVERIFY(!loaded<UnloadsAll>());
        QVERIFY(!loaded<First>());
        runPendingDeletes();
        QVERIFY(!caller);
    }

    void unloadAllTakesWhatIsLoadedMeanwhile() {
        LoadsAnotherWhenHidden& first = screen<LoadsAnotherWhenHidden>();
        first.show();
        calls.clear();
        unloadAllScreens();
        QCOMPARE(calls, QStringList{u"second load"_s});
        QVERIFY(!loaded<LoadsAnotherWhenHidden>());
        QVERIFY(!loaded<Second>());
    }

    void unloadAllOfNothing() {
        unloadAllScreens();
        QVERIFY(calls.isEmpty());
    }

    void aScreenMayBeLoadedAfterUnloadAll() {
        First& old = screen<First>();
        old.state = 5;
        const QPointer<First> oldAlive = &old;
        unloadAllScreens();
        const QPointer<First> fresh = &screen<First>();
        QVERIFY(fresh != oldAlive);
        QCOMPARE(fresh->state, 0);
        runPendingDeletes();
        QVERIFY(!oldAlive);
        QVERIFY(fresh);
        QVERIFY(loaded<First>());
    }

    void closingUnloads() {
        First& first = screen<First>();
        const QPointer<First> alive = &first;
        first.show();
        QVERIFY(first.close());
        QVERIFY(!loaded<First>());
        QVERIFY(alive);
        QVERIFY(!first.isVisible());
        runPendingDeletes();
        QVERIFY(!alive);
    }

    void closingByTheWindowSystemUnloads() {
        First& first = screen<First>();
        const QPointer<First> alive = &first;
        screen<Second>().show();
        first.show();
        QVERIFY(QTest::qWaitForWindowExposed(&first));
        QVERIFY(first.windowHandle()->close());
        QVERIFY(!loaded<First>());
        QVERIFY(loaded<Second>());
        runPendingDeletes();
        QVERIFY(!alive);
    }

    void closingAScreenThatIsUnloadedAlready() {
        First& first = screen<First>();
        const QPointer<First> alive = &first;
        first.show();
        unload<First>();
        first.close();
        runPendingDeletes();
        QVERIFY(!alive);
        QCOMPARE(calls, (QStringList{u"first load"_s, u"first deleted"_s}));
    }

    void closingLeavesAFreshInstanceAlone() {
        First& old = screen<First>();
        unload<First>();
        const QPointer<First> fresh = &screen<First>();
        old.close();
        QVERIFY(loaded<First>());
        runPendingDeletes();
        QVERIFY(fresh);
        QCOMPARE(&screen<First>(), fresh.data());
    }

    void aScreenMayRefuseToClose() {
        RefusesToClose& refusing = screen<RefusesToClose>();
        refusing.show();
        QVERIFY(!refusing.close());
        QVERIFY(loaded<RefusesToClose>());
        QVERIFY(refusing.isVisible());
    }

    void activationRunsForTheFirstScreen() {
        First& first = screen<First>();
        calls.clear();
        activate(first);
        QCOMPARE(calls, QStringList{u"first activate"_s});
    }

    void activationRunsWhenAnotherWasActive() {
        First& first = screen<First>();
        Second& second = screen<Second>();
        calls.clear();
        activate(first);
        deactivate(first);
        activate(second);
        deactivate(second);
        activate(first);
        QCOMPARE(calls, (QStringList{u"first activate"_s, u"second activate"_s, u"first activate"_s}));
    }

    void activationDoesNotRunBehindADialog() {
        First& first = screen<First>();
        calls.clear();
        activate(first);
        QDialog dialog(&first);
        deactivate(first);
        activate(dialog);
        deactivate(dialog);
        activate(first);
        QCOMPARE(calls, QStringList{u"first activate"_s});
    }

    void activationRunsAfterADeletedScreen() {
        First& first = screen<First>();
        activate(first);
        activate(screen<Second>());
        unload<Second>();
        runPendingDeletes();
        calls.clear();
        activate(first);
        QCOMPARE(calls, QStringList{u"first activate"_s});
    }

    void activationOfAFreshInstance() {
        activate(screen<First>());
        unload<First>();
        runPendingDeletes();
        calls.clear();
        activate(screen<First>());
        QCOMPARE(calls, (QStringList{u"first load"_s, u"first activate"_s}));
    }

    void shownWindowIsActivated() {
        First& first = screen<First>();
        calls.clear();
        first.show();
        first.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&first));
        QCOMPARE(calls, QStringList{u"first activate"_s});

        QDialog dialog(&first);
        dialog.show();
        dialog.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        dialog.close();
        first.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&first));
        QCOMPARE(calls, QStringList{u"first activate"_s});

        Second& second = screen<Second>();
        second.show();
        second.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&second));
        first.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&first));
        QCOMPARE(calls, (QStringList{u"first activate"_s, u"second load"_s, u"second activate"_s,
                                     u"first activate"_s}));
    }
};

QTEST_MAIN(TestScreens)
#include "test_screens.moc"
