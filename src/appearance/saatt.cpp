#include "appearance/saatt.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QWindow>

#include "app/modTurkce.h"
#include "runtime/clock.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {
constexpr int handsInterval = 1000;  // milliseconds
constexpr int sweepInterval = 10;
constexpr QSize smallestSize(120, 120);
}  // namespace

saatt::saatt() {
    setWindowTitle(u"Saat"_s);
    setMinimumSize(smallestSize);
    resize(ClockDial::designSize);
    setAttribute(Qt::WA_OpaquePaintEvent);
    // A scan goes to the ticket while the clock is open.
    setWindowFlags(windowFlags() | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus);
    setAttribute(Qt::WA_ShowWithoutActivating);
    connect(&Timer1, &Timer::tick, this, &saatt::Timer1_tick);
    connect(&Timer2, &Timer::tick, this, &saatt::Timer2_tick);
}

saatt::~saatt() = default;

void saatt::form_load() {
    ekrandonat(*this);
    Timer1.setInterval(handsInterval);
    Timer2.setInterval(sweepInterval);
    const QTime time = Clock::now().time();
    m_hands.showTime(time);
    tellTime(time);
}

const ClockDial& saatt::dial() {
    if (m_dial.area() != size() || m_dial.devicePixelRatio() != devicePixelRatioF())
        m_dial = ClockDial(size(), devicePixelRatioF());
    return m_dial;
}

void saatt::Timer1_tick() {
    const QTime time = Clock::now().time();
    m_hands.showTime(time);
    tellTime(time);
    update(dial().handReach());
}

// A hundred times a second on the thread that serves the scanner: only the middle of the dial is painted.
void saatt::Timer2_tick() {
    m_hands.advance();
    update(dial().sweepReach());
}

void saatt::tellTime(QTime time) {
    const QString told = time.toString(u"HH:mm");
    if (accessibleName() != told)
        setAccessibleName(told);
}

void saatt::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    dial().paint(painter, m_hands);
}

void saatt::resizeEvent(QResizeEvent* event) {
    OpenedScreen::resizeEvent(event);
    setMask(QRegion(dial().dialRect(), QRegion::Ellipse));
}

void saatt::form_click() {
    close();
}

void saatt::mousePressEvent(QMouseEvent* event) {
    m_pressed = event->button() == Qt::LeftButton;
    m_pressedAt = event->position().toPoint();
}

void saatt::mouseMoveEvent(QMouseEvent* event) {
    const QPoint way = event->position().toPoint() - m_pressedAt;
    if (!m_pressed || way.manhattanLength() < QApplication::startDragDistance())
        return;
    m_pressed = false;
    windowHandle()->startSystemMove();
}

void saatt::mouseReleaseEvent(QMouseEvent* event) {
    // The release of the double press that opened the clock is no click on it.
    if (!m_pressed || event->button() != Qt::LeftButton)
        return;
    m_pressed = false;
    if (rect().contains(event->position().toPoint()))
        form_click();
}

void saatt::closeEvent(QCloseEvent* event) {
    Timer1.setInterval(0);
    Timer2.setInterval(0);
    OpenedScreen::closeEvent(event);
}

}  // namespace kovanix
