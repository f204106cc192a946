#include <QLineEdit>
#include <QTest>
#include <QVBoxLayout>
#include <QWidget>

#include "desktop/focus.h"

using namespace kovanix;

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

}  // namespace

class FocusTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
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
};

QTEST_MAIN(FocusTest)
#include "focus_test.moc"
