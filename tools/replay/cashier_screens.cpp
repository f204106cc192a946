// Other screens, the background and the question at the end.

#include <QApplication>

#include "app/modTurkce.h"
#include "appearance/saatt.h"
#include "cashier.h"
#include "desktop/messagebox.h"
#include "hands.h"
#include "player.h"
#include "runtime/screenregistry.h"

namespace kovanix {

namespace {

/// A window without a size of its own has nothing to show yet.
bool clockHasWindow() {
    const saatt& clock = screen<saatt>();
    const bool sized = !clock.sizeHint().isEmpty() || !clock.minimumSize().isEmpty();
    unload<saatt>();
    return sized;
}

}  // namespace

bool Cashier::endPressable() const {
    return atCounter() && canPress(*ui().kapat);
}

bool Cashier::totalPressable() const {
    return atCounter() && canPress(*ui().toplam);
}

bool Cashier::menuPressable() const {
    return atCounter() && canPress(*ui().vkCommand1);
}

bool Cashier::aboutPressable() const {
    return atCounter() && canPress(*ui().vkCommand4);
}

bool Cashier::clockPressable() const {
    static const bool hasWindow = clockHasWindow();
    return hasWindow && atCounter() && canPress(*ui().saat);
}

/// A yes would end the process.
void Cashier::willAskForEnd() {
    m_subtracting = false;
    expectBox(QStringLiteral("PROGRAM_KAPAT_SORU"), {MessageBoxAnswer::no, BoxAnswers::escape},
              metin(QStringLiteral("PROGRAM_KAPAT_BASLIK")));
}

void Cashier::endByKey() {
    announce(QStringLiteral("presses F9"));
    m_deed.barcodeFocused = true;
    willAskForEnd();
    sendKey(Qt::Key_F9);
}

void Cashier::end() {
    willAskForEnd();
    pressButton(*ui().kapat);
}

void Cashier::minimiseByKey() {
    announce(QStringLiteral("presses F10"));
    m_subtracting = false;
    sendKey(Qt::Key_F10);
}

void Cashier::minimise() {
    m_subtracting = false;
    pressButton(*ui().toplam);
}

void Cashier::willOpenScreen() {
    m_deed.until = [this] { return otherScreenInFront(); };
}

void Cashier::openMenuByKey() {
    announce(QStringLiteral("presses F7"));
    m_subtracting = false;
    willOpenScreen();
    sendKey(Qt::Key_F7);
}

void Cashier::openMenu() {
    m_subtracting = false;
    willOpenScreen();
    pressButton(*ui().vkCommand1);
}

void Cashier::openAboutByKey() {
    announce(QStringLiteral("presses F8"));
    m_subtracting = false;
    willOpenScreen();
    sendKey(Qt::Key_F8);
}

void Cashier::openAbout() {
    m_subtracting = false;
    willOpenScreen();
    pressButton(*ui().vkCommand4);
}

void Cashier::openTotalThemes() {
    announce(QStringLiteral("presses toplam with the right button"));
    willOpenScreen();
    pressOn(*ui().toplam, Qt::RightButton);
}

void Cashier::openClock() {
    announce(QStringLiteral("presses saat twice"));
    willOpenScreen();
    pressTwice(*ui().saat);
}

void Cashier::closeOtherScreen() {
    QWidget& front = *QApplication::activeWindow();
    announce(u"closes " + front.objectName());
    m_deed.until = [this] { return !otherScreenInFront(); };
    front.close();
}

}  // namespace kovanix
