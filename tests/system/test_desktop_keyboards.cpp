// The on-screen keyboards on a display with a window manager, worked by its pointer alone: whom their Enter
// reaches, and what stands above what.

#include "access/firstscreen.h"
#include "app/ayarmodul.h"
#include "appearance/keyboard.h"
#include "appearance/keyboardfield.h"
#include "appearance/keyboardscreen.h"
#include "appearance/mdlMonitors.h"
#include "catalogue/urunbul.h"
#include "desktop/screensize.h"
#include "loginfixture.h"
#include "runtests.h"
#include "salesfixture.h"
#include "virtualdisplay.h"

using namespace kovanix;

namespace {

constexpr int soon = 10000;  // milliseconds

bool hasKeyboard(const QWidget& control) {
    return QApplication::focusWidget() == &control && control.isActiveWindow();
}

/// The steps of a press. Without the delay, the tool moves the pointer on before the display has seen the
/// release.
QStringList pressAt(const QPoint& place) {
    return {"mousemove", QString::number(place.x()), QString::number(place.y()), "click", "--delay", "20",
            "1"};
}

QStringList pressOn(const QWidget& control) {
    return pressAt(control.mapToGlobal(control.rect().center()));
}

QWidget& key(const QWidget& board, const QString& caption) {
    for (auto* found : board.findChildren<DrawnButton*>()) {
        if (found->caption() == caption)
            return *found;
    }
    qFatal("no key %s", qPrintable(caption));
}

/// Presses keys of a keyboard with the display's pointer, each as soon as the one before has typed: a window
/// manager that is slow to let a press through makes the display lose the next one.
void touch(const KeyboardScreen& keyboard, const QString& captions, const QString& last = {}) {
    for (const QChar caption : captions) {
        const qsizetype typed = keyboard.ui.yazilan->text().size();
        xdotool(pressOn(key(keyboard, caption)));
        QTRY_COMPARE_WITH_TIMEOUT(keyboard.ui.yazilan->text().size(), typed + 1, soon);
    }
    if (!last.isEmpty())
        xdotool(pressOn(key(keyboard, last)));
}

void setDisplay(QSize size) {
    setScreenMetricsSource([size] { return ScreenMetrics{size, 15, 15}; });
    monitorlerioku();
}

}  // namespace

class DesktopKeyboardsTest : public QObject {
    Q_OBJECT

    /// Waits until a keyboard stands where it stays, and can be pressed.
    static bool isReady(const KeyboardScreen& keyboard) {
        return QTest::qWaitFor(
            [&keyboard] {
                const bool large = Monitors.front().width <= 1280;
                return keyboard.isActiveWindow() && keyboard.windowHandle()->isExposed() &&
                       keyboard.isMaximized() == large && hasKeyboard(*keyboard.ui.yazilan);
            },
            soon);
    }

    static double sold(const SalesFixture& shop) {
        double sum = 0;
        for (int row = 1; row <= shop.lines(); ++row)
            sum += shop.line(row).at(2).toDouble();
        return sum;
    }

private Q_SLOTS:
    void initTestCase() {
        if (!displayTrouble().isEmpty())
            QSKIP(qPrintable(displayTrouble()));
    }

    void cleanup() {
        unloadAllScreens();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        setScreenMetricsSource({});
    }

    void everyEnterOfTwentySells() {
        SalesFixture shop;
        setDisplay({1024, 768});
        const QStringList codes{goods::tomatoes, goods::bread, goods::milk};
        constexpr int rounds = 20;
        for (int round = 0; round < rounds; ++round) {
            xdotool(pressOn(*shop.ui().Image4));
            QTRY_VERIFY_WITH_TIMEOUT(loaded<klavyesayi>(), soon);
            QPointer<KeyboardScreen> pad(&screen<klavyesayi>());
            QVERIFY(isReady(*pad));
            touch(*pad, codes.at(round % codes.size()), "ENTER");
            // The next one as soon as the pad is gone, whether or not its Enter has arrived.
            QTRY_VERIFY_WITH_TIMEOUT(!pad, soon);
        }
        QTRY_COMPARE_WITH_TIMEOUT(sold(shop), double(rounds), soon);
        QVERIFY(!loaded<klavyesayi>());
        QVERIFY(!shop.ui().urunbulunamadiframesi->isVisible());
        QTRY_VERIFY_WITH_TIMEOUT(hasKeyboard(*shop.ui().barkod), soon);
        QVERIFY(allAnswered(shop.boxes));
    }

    void aMorningByTouchAlone() {
        LoginFixture shop;
        shop.addUser("Ayşe", "ŞA7");
        shop.addProduct(goods::tomatoes, "Domates", 30, 40);
        shop.open();
        ayarla("1hizliurun0", "Domates");
        ayarla("1hizlibarkod0", goods::tomatoes);
        setDisplay({1024, 768});
        QTRY_VERIFY_WITH_TIMEOUT(hasKeyboard(*shop.ui().sifre), soon);
        xdotool(pressOn(*shop.ui().Image3));
        QTRY_VERIFY_WITH_TIMEOUT(loaded<klavyeyeni2>(), soon);
        QVERIFY(isReady(screen<klavyeyeni2>()));
        touch(screen<klavyeyeni2>(), "ŞA7", "ENTER");
        QTRY_VERIFY_WITH_TIMEOUT(shop.isLoggedIn(), soon);
        auto& sales = screen<satisekrani>();
        QTRY_VERIFY_WITH_TIMEOUT(hasKeyboard(*sales.ui.barkod), soon);
        xdotool(pressOn(*sales.ui.Image4));
        QTRY_VERIFY_WITH_TIMEOUT(loaded<klavyesayi>(), soon);
        QVERIFY(isReady(screen<klavyesayi>()));
        touch(screen<klavyesayi>(), goods::tomatoes, "ENTER");
        QTRY_COMPARE_WITH_TIMEOUT(sales.ui.toplam->caption(), "40,00", soon);
        // A barcode that nobody knows, and its price.
        xdotool(pressOn(*sales.ui.Image4));
        QTRY_VERIFY_WITH_TIMEOUT(loaded<klavyesayi>(), soon);
        QVERIFY(isReady(screen<klavyesayi>()));
        touch(screen<klavyesayi>(), "4567", "ENTER");
        QTRY_VERIFY_WITH_TIMEOUT(hasKeyboard(*sales.ui.urunbuunamadibeklet), soon);
        xdotool(pressOn(key(*sales.ui.urunbulunamadiframesi, "5")));
        QTRY_COMPARE_WITH_TIMEOUT(sales.ui.urunsatisi->text(), "5", soon);
        xdotool(pressOn(*sales.ui.urunbuunamadikaydet));
        QTRY_COMPARE_WITH_TIMEOUT(sales.ui.toplam->caption(), "45,00", soon);
        xdotool(pressOn(key(sales, "Domates")));
        QTRY_COMPARE_WITH_TIMEOUT(sales.ui.toplam->caption(), "85,00", soon);
        QVERIFY(allAnswered(shop.boxes));
    }

    // Though the sales screen goes to its barcode when it becomes active.
    void theFilledFieldKeepsTheKeyboard_data() {
        QTest::addColumn<QString>("row");
        QTest::newRow("after ENTER") << "ENTER";
        QTest::newRow("after KAPAT") << "KAPAT";
    }
    void theFilledFieldKeepsTheKeyboard() {
        QFETCH(const QString, row);
        SalesFixture shop;
        setDisplay({1024, 768});
        shop.ui().Frame2->show();
        openKeyboard(19, shop.sales());
        QPointer<KeyboardScreen> keyboard(&screen<klavyeyeni2>());
        QVERIFY(isReady(*keyboard));
        touch(*keyboard, "FİRİN", row);
        QTRY_VERIFY_WITH_TIMEOUT(!keyboard, soon);
        QTRY_VERIFY_WITH_TIMEOUT(hasKeyboard(*shop.ui().hizliurunadi), soon);
        QCOMPARE(shop.ui().hizliurunadi->text(), row == u"ENTER" ? "FİRİN" : "");
        QCOMPARE(shop.lines(), 0);
    }

    void staysAboveItsOpenerWhenThatIsTouched_data() {
        QTest::addColumn<bool>("finder");
        QTest::newRow("the sales screen") << false;
        QTest::newRow("a screen above that") << true;
    }
    void staysAboveItsOpenerWhenThatIsTouched() {
        QFETCH(const bool, finder);
        SalesFixture shop;
        setDisplay({1366, 768});  // a pad of its own size
        openNumberPad(8, shop.sales());
        KeyboardScreen& pad = screen<klavyesayi>();
        QVERIFY(isReady(pad));
        QWidget* opener = &shop.sales();
        if (finder) {
            shop.ui().urunbulmak->click();
            opener = &screen<urunbul>();
            QTRY_VERIFY_WITH_TIMEOUT(opener->isActiveWindow(), soon);
            openNumberPad(8, *opener);  // it changes hands
            QVERIFY(isReady(pad));
        }
        pad.move(480, 60);
        QTRY_COMPARE_WITH_TIMEOUT(pad.x(), 480, soon);
        xdotool(pressAt(opener->mapToGlobal(QPoint(200, 300))));
        QTRY_VERIFY_WITH_TIMEOUT(opener->isActiveWindow(), soon);
        opener->raise();
        // The pad lies above, so that the press hits it.
        touch(pad, "7");
        QTRY_COMPARE_WITH_TIMEOUT(pad.ui.yazilan->text(), "7", soon);
        QTRY_VERIFY_WITH_TIMEOUT(pad.isActiveWindow(), soon);
        // And it goes with its opener.
        QPointer<KeyboardScreen> left(&pad);
        ScreenRegistry::unload(static_cast<Screen&>(*opener));
        QTRY_VERIFY_WITH_TIMEOUT(!left, soon);
    }
};

int main(int argc, char** argv) {
    if (displayTrouble().isEmpty() && !isOnVirtualDisplay())
        return runOnVirtualDisplay(argc, argv);
    return runTests<DesktopKeyboardsTest>(argc, argv);
}

#include "test_desktop_keyboards.moc"
