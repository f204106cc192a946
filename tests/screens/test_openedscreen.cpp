#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <functional>
#include <memory>

#include "desktop/focus.h"
#include "runtests.h"
#include "runtime/screenregistry.h"
#include "screens/focusreturn.h"
#include "screens/openedscreen.h"

using namespace kovanix;

namespace {

/// An opened screen with a close button.
class Opened : public OpenedScreen {
public:
    Opened() {
        connect(&button, &QAbstractButton::clicked, this, [this] {
            ++closings;
            leave();
        });
        setCloseButton(button);
    }

    QLineEdit before{this};  // first in the tab order, so that the focus at the start is no accident
    QPushButton button{this};
    int closings = 0;
};

/// One of buttons alone.
class Buttons : public OpenedScreen {
public:
    Buttons() {
        other.move(0, 40);
        for (QPushButton* each : {&other, &button})
            each->setFocusPolicy(Qt::StrongFocus);
        setCloseButton(button);
        restOnCloseButton();
    }

    QPushButton other{this};
    QPushButton button{this};
};

/// One that has none.
class Bare : public OpenedScreen {};

/// The screen that the others are opened from.
class Workplace : public Screen {
public:
    void form_load() override { setFocusReturn(entry); }

    QLineEdit other{this};
    QLineEdit entry{this};
};

template <class S>
S& openInFront() {
    S& opened = screen<S>();
    showInFront(opened);
    // The toolkit's own wait takes a window for active as soon as the one that it belongs to is.
    if (!QTest::qWaitForWindowActive(&opened) ||
        !QTest::qWaitFor([&opened] { return opened.isActiveWindow(); }))
        qFatal("the screen doesn't become active");
    return opened;
}

using Way = std::function<void(Screen&)>;

struct Closing {
    Way close;
    int presses = 0;  ///< of the close button
};

/// What stands there when an opened screen is left.
struct Place {
    std::function<void()> prepare;
    bool focused = false;  ///< the return target has the keyboard afterwards
    bool shown = false;    ///< its window is seen afterwards
};

}  // namespace

Q_DECLARE_METATYPE(Way)
Q_DECLARE_METATYPE(Closing)
Q_DECLARE_METATYPE(Place)

class OpenedScreenTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { ScreenRegistry::clear(); }

    void closing_data() {
        QTest::addColumn<Closing>("row");
        const auto key = [](Qt::Key pressed) {
            return [pressed](Screen& opened) { QTest::keyClick(opened.window()->focusWidget(), pressed); };
        };
        QTest::newRow("its button") << Closing{
            [](Screen& opened) { static_cast<Opened&>(opened).button.click(); }, 1};
        QTest::newRow("Space, as it opens") << Closing{key(Qt::Key_Space), 1};
        QTest::newRow("Escape") << Closing{key(Qt::Key_Escape), 1};
        QTest::newRow("Escape in another control")
            << Closing{[](Screen& opened) {
                           static_cast<Opened&>(opened).before.setFocus();
                           QTest::keyClick(&static_cast<Opened&>(opened).before, Qt::Key_Escape);
                       },
                       1};
        QTest::newRow("the window's X") << Closing{[](Screen& opened) { opened.close(); }, 0};
    }
    void closing() {
        QFETCH(const Closing, row);
        Workplace& workplace = openInFront<Workplace>();
        workplace.other.setFocus();
        const QPointer<Opened> opened(&openInFront<Opened>());
        row.close(*opened);
        QVERIFY(!loaded<Opened>());
        QVERIFY(opened);  // what runs behind the closing still runs
        QCOMPARE(opened->closings, row.presses);
        QTRY_VERIFY(!opened);
        QTRY_VERIFY(workplace.entry.hasFocus());
        QVERIFY(workplace.isActiveWindow());
    }

    // A window manager makes one active by itself when the active one goes; a user does so by a press.
    void anotherWindowBecomesActive_data() {
        QTest::addColumn<bool>("pressed");
        QTest::newRow("by itself") << false;
        QTest::newRow("by the user") << true;
    }
    void anotherWindowBecomesActive() {
        QFETCH(const bool, pressed);
        Workplace& workplace = openInFront<Workplace>();
        QLineEdit beside;
        showInFront(beside);
        openInFront<Opened>().close();
        QTRY_VERIFY(workplace.entry.hasFocus());
        if (pressed)
            QTest::mouseClick(&beside, Qt::LeftButton);
        beside.activateWindow();
        QCoreApplication::processEvents();
        QTRY_COMPARE(workplace.isActiveWindow(), !pressed);
        QCOMPARE(beside.isActiveWindow(), pressed);
    }

    void aScreenOfButtonsRestsOnItsCloseButton_data() {
        QTest::addColumn<Way>("press");
        QTest::newRow("by hand") << Way(
            [](Screen& opened) { QTest::mouseClick(&static_cast<Buttons&>(opened).other, Qt::LeftButton); });
        QTest::newRow("by the keyboard")
            << Way([](Screen& opened) { static_cast<Buttons&>(opened).other.setFocus(); });
    }
    void aScreenOfButtonsRestsOnItsCloseButton() {
        QFETCH(const Way, press);
        Buttons& opened = openInFront<Buttons>();
        press(opened);
        Opened& above = openInFront<Opened>();
        QTRY_VERIFY(above.before.isVisible());
        opened.activateWindow();
        QTRY_VERIFY(opened.isActiveWindow());
        QCOMPARE(QApplication::focusWidget(), &opened.button);
    }

    void aPressByHandDoesntTakeTheKeyboard() {
        Buttons& opened = openInFront<Buttons>();
        QTest::mouseClick(&opened.other, Qt::LeftButton);
        QCOMPARE(QApplication::focusWidget(), &opened.button);
    }

    void aDisabledCloseButtonStaysDead() {
        Opened& opened = openInFront<Opened>();
        opened.button.setEnabled(false);
        QTest::keyClick(&opened, Qt::Key_Escape);
        QVERIFY(loaded<Opened>());
    }

    void otherKeysDontClose() {
        Opened& opened = openInFront<Opened>();
        QTest::keyClick(&opened, Qt::Key_F4);
        QVERIFY(loaded<Opened>());
    }

    void withoutAButtonEscapeCloses() {
        Workplace& workplace = openInFront<Workplace>();
        workplace.other.setFocus();
        Bare& opened = openInFront<Bare>();
        QTest::keyClick(&opened, Qt::Key_Escape);
        QVERIFY(!loaded<Bare>());
        QTRY_VERIFY(workplace.entry.hasFocus());
    }

    void leaving_data() {
        QTest::addColumn<Place>("row");
        QTest::newRow("nothing was ever loaded, as from the login") << Place{[] {}};
        QTest::newRow("being loaded, not shown yet") << Place{[] { screen<Workplace>(); }};
        QTest::newRow("hidden") << Place{[] {
            openInFront<Workplace>();
            screen<Workplace>().hide();
        }};
        QTest::newRow("minimised") << Place{[] {
                                                openInFront<Workplace>();
                                                screen<Workplace>().showMinimized();
                                            },
                                            true, true};
        QTest::newRow("unloaded, not deleted yet") << Place{[] {
            openInFront<Workplace>();
            unload<Workplace>();
        }};
        QTest::newRow("deleted") << Place{[] {
            openInFront<Workplace>();
            ScreenRegistry::clear();
        }};
        QTest::newRow("loaded anew") << Place{[] {
                                                  openInFront<Workplace>();
                                                  unload<Workplace>();
                                                  openInFront<Workplace>();
                                              },
                                              true, true};
    }
    void leaving() {
        QFETCH(const Place, row);
        row.prepare();
        const bool stood = loaded<Workplace>();
        openInFront<Opened>().close();
        QVERIFY(!loaded<Opened>());
        QCOMPARE(loaded<Workplace>(), stood);  // never loaded by the way back
        QCoreApplication::processEvents();
        if (!stood)
            return;
        QCOMPARE(screen<Workplace>().isVisible(), row.shown);
        if (row.focused)
            QTRY_VERIFY(screen<Workplace>().entry.hasFocus());
        QCOMPARE(screen<Workplace>().entry.hasFocus(), row.focused);
    }
};

int main(int argc, char** argv) {
    return runTests<OpenedScreenTest>(argc, argv);
}
#include "test_openedscreen.moc"
