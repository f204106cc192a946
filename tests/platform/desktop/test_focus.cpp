#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QTest>
#include <QVBoxLayout>
#include <QWidget>
#include <QWindow>
#include <memory>

#include "desktop/focus.h"
#include "desktop/screensize.h"
#include "rows.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

/// A window with two fields.
struct Window {
    QWidget widget;
    QLineEdit* first = new QLineEdit(&widget);
    QLineEdit* second = new QLineEdit(&widget);

    Window() {
        auto* layout = new QVBoxLayout(&widget);
        layout->addWidget(first);
        layout->addWidget(second);
    }

    void showActive() {
        widget.show();
        widget.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&widget));
    }
};

/// Counts how often a window was raised.
class RaiseCounter : public QObject {
public:
    explicit RaiseCounter(QObject* watched) { watched->installEventFilter(this); }

    int raised = 0;

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::ZOrderChange)
            ++raised;
        return QObject::eventFilter(watched, event);
    }
};

/// A window that asks for a size, as a screen of the till does.
class Screenlike : public QWidget {
public:
    explicit Screenlike(QSize hint) : QWidget(nullptr, Qt::Window), m_hint(hint) {}
    QSize sizeHint() const override { return m_hint; }

private:
    QSize m_hint;
};

void setScreen(QSize pixels) {
    setScreenMetricsSource([pixels] { return ScreenMetrics{pixels, 15, 15}; });
}

/// Opens a window by itself, as the first of a program.
void openFirst(QWidget& window, const QRect& geometry) {
    window.setGeometry(geometry);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
}

void openInFront(QWidget& window) {
    showInFront(window);
    // Not qWaitForWindowActive: to it a window is active as soon as its owner is.
    QTRY_VERIFY(window.isActiveWindow());
}

/// Within the few pixels that the platform's window frames take.
bool centredOn(const QWidget& window, QPoint centre) {
    return (window.geometry().center() - centre).manhattanLength() <= 6;
}

}  // namespace

class FocusTest : public QObject {
    Q_OBJECT

    struct SizeGrowsWithTheScreenRow {
        QSize screen, size;
    };
    struct GoesWithItsOpenerRow {
        void (*act)(std::unique_ptr<QWidget>& opener);
        bool goes;
    };
    struct StandsAlongTheEdgesRow {
        Qt::Alignment place;
        QRect frame;
    };
    struct IsWholeOnTheScreenRow {
        QRect owner;
        QSize hint;
        QRect place;
    };

private Q_SLOTS:
    void init() { setScreen({1024, 768}); }
    void cleanup() { setScreenMetricsSource({}); }

    void focusMovesInTheActiveWindow() {
        Window window;
        window.showActive();
        giveFocus(*window.second);
        QVERIFY(window.second->hasFocus());
        giveFocus(*window.first);
        QVERIFY(window.first->hasFocus());
    }

    void aFocusedControlIsLeftAlone() {
        Window window;
        window.showActive();
        giveFocus(*window.second);
        const RaiseCounter counter(&window.widget);
        giveFocus(*window.second);
        QCOMPARE(counter.raised, 0);
        QVERIFY(window.second->hasFocus());
        giveFocus(*window.first);  // nor is the window raised when it is the active one
        QCOMPARE(counter.raised, 0);
        QVERIFY(window.first->hasFocus());
    }

    void aHiddenWindowIsShown() {
        Window window;
        giveFocus(*window.second);
        QVERIFY(window.widget.isVisible());
        QVERIFY(QTest::qWaitForWindowActive(&window.widget));
        QTRY_VERIFY(window.second->hasFocus());
    }

    void aMinimisedWindowComesBack() {
        Window window;
        window.showActive();
        window.widget.showMinimized();
        QTRY_VERIFY(window.widget.isMinimized());
        giveFocus(*window.second);
        QVERIFY(!window.widget.isMinimized());
        QVERIFY(window.widget.isVisible());
        QTRY_VERIFY(window.second->hasFocus());
    }

    void aMaximisedWindowStaysMaximised() {
        Window window;
        window.widget.showMaximized();
        QVERIFY(QTest::qWaitForWindowExposed(&window.widget));
        window.widget.setWindowState(window.widget.windowState() | Qt::WindowMinimized);
        giveFocus(*window.second);
        QVERIFY(!window.widget.isMinimized());
        QVERIFY(window.widget.isMaximized());
    }

    void focusComesFromAnotherWindow() {
        Window behind;
        behind.showActive();
        Window front;
        front.showActive();
        giveFocus(*front.first);
        QVERIFY(!behind.widget.isActiveWindow());
        giveFocus(*behind.second);
        QTRY_VERIFY(behind.widget.isActiveWindow());
        QTRY_VERIFY(behind.second->hasFocus());
        QVERIFY(!front.first->hasFocus());
    }

    void sizeGrowsWithTheScreen_data() {
        addRows<SizeGrowsWithTheScreenRow>({{"design size", {QSize(1024, 768), QSize(400, 300)}},
                                            {"half", {QSize(512, 384), QSize(200, 150)}},
                                            {"800x600", {QSize(800, 600), QSize(312, 234)}},
                                            {"wide: its height counts", {QSize(1366, 768), QSize(400, 300)}},
                                            {"high: its width counts", {QSize(768, 1366), QSize(300, 225)}},
                                            {"double", {QSize(2048, 1536), QSize(800, 600)}}});
    }
    void sizeGrowsWithTheScreen() {
        QFETCH(const SizeGrowsWithTheScreenRow, row);
        setScreen(row.screen);
        Screenlike window({400, 300});
        openInFront(window);
        QVERIFY2((window.size() - row.size).width() / 2 == 0 && (window.size() - row.size).height() / 2 == 0,
                 qPrintable(u"%1x%2"_s.arg(window.width()).arg(window.height())));
    }

    void opensCentredOnTheFirstWindow() {
        QWidget first;
        openFirst(first, {100, 60, 600, 400});
        Screenlike second({300, 200});
        openInFront(second);
        QVERIFY(second.isActiveWindow());
        QVERIFY(centredOn(second, first.geometry().center()));
        // Nor does a second one that was moved aside take the third with it.
        second.move(0, 0);
        Screenlike third({200, 100});
        openInFront(third);
        QVERIFY(centredOn(third, first.geometry().center()));
    }

    void opensCentredOnTheScreenWhereItIsTheFirst() {
        setScreen({1000, 700});
        Screenlike window({400, 300});
        openInFront(window);
        QVERIFY2(centredOn(window, {500, 350}), qPrintable(QString::number(window.x())));
    }

    void staysAboveTheFirstWindow() {
        QWidget first;
        openFirst(first, {100, 60, 600, 400});
        Screenlike second({300, 200});
        openInFront(second);
        QCOMPARE(second.windowHandle()->transientParent(), first.windowHandle());
        // The kind of window that window managers keep above its owner.
        QCOMPARE(second.windowHandle()->type(), Qt::Dialog);
        QCOMPARE(first.windowHandle()->type(), Qt::Window);
        // Opened from the second, above the first all the same: the second may go.
        Screenlike third({300, 200});
        openInFront(third);
        QCOMPARE(third.windowHandle()->transientParent(), first.windowHandle());
        QVERIFY(!first.windowHandle()->transientParent());
    }

    void staysAboveTheFirstWindowWhenADialogIsActive() {
        QWidget first;
        openFirst(first, {100, 60, 600, 400});
        QDialog dialog(&first);
        dialog.show();
        dialog.activateWindow();
        QTRY_VERIFY(dialog.isActiveWindow());
        Screenlike window({300, 200});
        openInFront(window);
        QCOMPARE(window.windowHandle()->transientParent(), first.windowHandle());
    }

    // A screen unloads itself and opens the next one: in between, no window is active.
    void staysAboveTheFirstWindowWhenNoneIsActive() {
        QWidget first;
        openFirst(first, {100, 60, 600, 400});
        Screenlike second({300, 200});
        openInFront(second);
        second.hide();
        QVERIFY(!QApplication::activeWindow());
        Screenlike third({300, 200});
        openInFront(third);
        QCOMPARE(third.windowHandle()->transientParent(), first.windowHandle());
        QVERIFY(centredOn(third, first.geometry().center()));
    }

    // The window that opened all others is hidden, gone for good: the next in the chain takes its place.
    void aHiddenOwnerIsPassedOver_data() {
        QTest::addColumn<bool>("active");
        QTest::newRow("the next is active") << true;
        QTest::newRow("none is active") << false;
    }
    void aHiddenOwnerIsPassedOver() {
        QFETCH(bool, active);
        QWidget first;
        openFirst(first, {100, 60, 600, 400});
        Screenlike second({300, 200});
        openInFront(second);
        first.hide();
        second.activateWindow();
        QTRY_VERIFY(second.isActiveWindow());
        if (!active) {
            Screenlike passing({100, 50});
            openInFront(passing);
            passing.hide();
            QVERIFY(!QApplication::activeWindow());
        }
        Screenlike third({200, 100});
        openInFront(third);
        QCOMPARE(third.windowHandle()->transientParent(), second.windowHandle());
    }

    void theFirstWindowNeverStandsAboveItself() {
        QWidget first;
        openFirst(first, {100, 60, 600, 400});
        Screenlike second({300, 200});
        openInFront(second);
        first.hide();
        second.activateWindow();
        QTRY_VERIFY(second.isActiveWindow());
        showInFront(first);
        QVERIFY(first.isVisible());
        QCOMPARE(first.size(), QSize(600, 400));  // a window without a hint keeps its size
        QVERIFY(!first.windowHandle()->transientParent());
        QCOMPARE(second.windowHandle()->transientParent(), first.windowHandle());
    }

    void anOpenWindowKeepsSizeAndPlace() {
        QWidget first;
        openFirst(first, {100, 60, 600, 400});
        Screenlike second({300, 200});
        openInFront(second);
        second.setGeometry(20, 30, 333, 222);
        first.activateWindow();
        QTRY_VERIFY(first.isActiveWindow());
        const QRect before = second.geometry();
        setScreen({2048, 1536});
        const RaiseCounter counter(&second);
        openInFront(second);
        QCOMPARE(second.geometry(), before);
        QVERIFY(second.isActiveWindow());
        QCOMPARE(counter.raised, 1);
    }

    void oneThatWasHiddenOpensAnew() {
        Screenlike window({300, 200});
        openInFront(window);
        window.setGeometry(0, 0, 50, 50);
        window.hide();
        showInFront(window);
        QVERIFY(window.isVisible());
        QCOMPARE(window.size(), QSize(300, 200));
    }

    void aMinimisedOneComesBack_data() {
        QTest::addColumn<bool>("maximised");
        QTest::newRow("usual") << false;
        QTest::newRow("maximised before") << true;
    }
    void aMinimisedOneComesBack() {
        QFETCH(bool, maximised);
        Screenlike window({300, 200});
        openInFront(window);
        if (maximised)
            window.showMaximized();
        window.setWindowState(window.windowState() | Qt::WindowMinimized);
        QTRY_VERIFY(window.isMinimized());
        openInFront(window);
        QVERIFY(!window.isMinimized());
        QCOMPARE(window.isMaximized(), maximised);
        QVERIFY(window.isVisible());
    }

    void belongsToTheWindowThatOpenedIt() {
        QWidget first;
        openFirst(first, {100, 60, 600, 400});
        Screenlike second({300, 200});
        openInFront(second);
        auto* picture = new QWidget(&second);
        Screenlike keyboard({200, 100});
        showInFront(keyboard, {.opener = picture});
        QTRY_VERIFY(keyboard.isActiveWindow());
        QCOMPARE(keyboard.windowHandle()->transientParent(), second.windowHandle());
        QCOMPARE(keyboard.windowHandle()->type(), Qt::Dialog);
        QVERIFY(centredOn(keyboard, second.geometry().center()));
        // Another window asks for it: it changes hands, and the first one's end no longer matters.
        const QRect before = keyboard.geometry();
        first.activateWindow();
        QTRY_VERIFY(first.isActiveWindow());
        showInFront(keyboard, {.opener = &first});
        QTRY_VERIFY(keyboard.isActiveWindow());
        QCOMPARE(keyboard.windowHandle()->transientParent(), first.windowHandle());
        QCOMPARE(keyboard.geometry(), before);
        second.hide();
        QCoreApplication::processEvents();
        QVERIFY(keyboard.isVisible());
    }

    void anOpenerThatIsNotShownIsNone() {
        QWidget first;
        openFirst(first, {100, 60, 600, 400});
        QWidget hidden;
        Screenlike window({300, 200});
        showInFront(window, {.opener = &hidden});
        QCOMPARE(window.windowHandle()->transientParent(), first.windowHandle());
    }

    void neverBelongsToWhatItOpened() {
        QWidget first;
        openFirst(first, {100, 60, 600, 400});
        Screenlike second({300, 200}), third({200, 100});
        showInFront(second, {.opener = &first});
        showInFront(third, {.opener = &second});
        QTRY_VERIFY(third.isActiveWindow());
        showInFront(second, {.opener = &third});
        QCOMPARE(second.windowHandle()->transientParent(), first.windowHandle());
        QVERIFY(second.isVisible());
    }

    void goesWithItsOpener_data() {
        addRows<GoesWithItsOpenerRow>(
            {{"hidden", {[](std::unique_ptr<QWidget>& opener) { opener->hide(); }, true}},
             {"closed", {[](std::unique_ptr<QWidget>& opener) { opener->close(); }, true}},
             {"gone", {[](std::unique_ptr<QWidget>& opener) { opener.reset(); }, true}},
             {"minimised", {[](std::unique_ptr<QWidget>& opener) { opener->showMinimized(); }, false}},
             {"hidden and shown at once",
              {[](std::unique_ptr<QWidget>& opener) {
                   opener->hide();
                   opener->show();
               },
               false}}});
    }
    void goesWithItsOpener() {
        QFETCH(const GoesWithItsOpenerRow, row);
        auto opener = std::make_unique<QWidget>();
        openFirst(*opener, {100, 60, 600, 400});
        Screenlike window({300, 200});
        showInFront(window, {.opener = opener.get()});
        row.act(opener);
        QVERIFY(window.isVisible());  // not in the opener's own event
        QCoreApplication::processEvents();
        QCOMPARE(window.isVisible(), !row.goes);
    }

    void standsAlongTheEdges_data() {
        addRows<StandsAlongTheEdgesRow>(
            {{"below", {Qt::AlignBottom | Qt::AlignHCenter, QRect(362, 568, 300, 200)}},
             {"at the right", {Qt::AlignRight | Qt::AlignVCenter, QRect(724, 284, 300, 200)}}});
    }
    void standsAlongTheEdges() {
        QFETCH(const StandsAlongTheEdgesRow, row);
        QWidget opener;
        openFirst(opener, {0, 0, 400, 300});
        Screenlike window({300, 200});
        showInFront(window, {.opener = &opener, .place = row.place});
        QTRY_VERIFY(window.isActiveWindow());
        // Within the few pixels of the platform's frame.
        QVERIFY(QRect(0, 0, 1024, 768).contains(window.frameGeometry()));
        QVERIFY2((window.geometry().center() - row.frame.center()).manhattanLength() <= 10,
                 qPrintable(u"%1,%2"_s.arg(window.x()).arg(window.y())));
    }

    void aMaximisedOneHasTheScreensSizeAtOnce() {
        Screenlike window({300, 200});
        window.setWindowState(Qt::WindowMaximized);
        QSize shown;
        struct FirstShow : QObject {
            QSize& size;
            explicit FirstShow(QSize& place) : size(place) {}
            bool eventFilter(QObject* watched, QEvent* event) override {
                if (event->type() == QEvent::Show)
                    size = static_cast<QWidget*>(watched)->size();
                return false;
            }
        } firstShow(shown);
        window.installEventFilter(&firstShow);
        showInFront(window);
        QCOMPARE(shown, QSize(1024, 768));
        QVERIFY(window.isMaximized());
        window.hide();
        showInFront(window);
        QVERIFY(window.isMaximized());
    }

    void isWholeOnTheScreen_data() {
        const QSize hint(300, 200);
        addRows<IsWholeOnTheScreenRow>(
            {{"upper left", {QRect(0, 0, 100, 50), hint, QRect(0, 0, 300, 200)}},
             {"lower right", {QRect(900, 700, 100, 50), hint, QRect(724, 568, 300, 200)}},
             {"beyond the right edge", {QRect(1500, 300, 100, 50), hint, QRect(724, 225, 300, 200)}},
             {"larger than the screen",
              {QRect(100, 100, 400, 300), QSize(2000, 300), QRect(0, 100, 1024, 300)}},
             {"larger in both", {QRect(100, 100, 400, 300), QSize(2000, 1000), QRect(0, 0, 1024, 768)}}});
    }
    void isWholeOnTheScreen() {
        QFETCH(const IsWholeOnTheScreenRow, row);
        QWidget first;
        openFirst(first, row.owner);
        Screenlike window(row.hint);
        openInFront(window);
        const QRect frame = window.frameGeometry();
        QVERIFY(QRect(0, 0, 1024, 768).contains(frame));
        // Within the few pixels of the platform's frame.
        const QPoint corners =
            (frame.topLeft() - row.place.topLeft()) + (frame.bottomRight() - row.place.bottomRight());
        QVERIFY2(corners.manhattanLength() <= 10 && frame.width() >= row.place.width() &&
                     frame.height() >= row.place.height(),
                 qPrintable(
                     u"%1,%2 %3x%4"_s.arg(frame.x()).arg(frame.y()).arg(frame.width()).arg(frame.height())));
    }
};

QTEST_MAIN(FocusTest)
#include "test_focus.moc"
