#include "desktop/sendkeys.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QKeyEvent>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <QWindow>
#include <deque>
#include <optional>

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr int longestWait = 2000;  // milliseconds

/// What was sent: a key, the focus, or both.
struct Sent {
    std::optional<Qt::Key> key;
    bool targeted = false;
    QPointer<QWidget> receiver;
    QPointer<QWidget> box;  // the message box that stood open at the time
    QDeadlineTimer deadline{longestWait};
    bool ripe = false;  // the event that it was sent in is over
};

/// What was sent and hasn't taken effect yet, in the order of sending.
class Outbox : public QObject {
public:
    explicit Outbox(QObject* parent) : QObject(parent) {
        m_timer.setSingleShot(true);
        connect(&m_timer, &QTimer::timeout, this, &Outbox::deliver);
        // At once, not in a later turn: a press that came in behind the activation may change what has the
        // focus.
        connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, &Outbox::deliver);
    }

    void add(std::optional<Qt::Key> key, QWidget* receiver) {
        m_sent.push_back({key, receiver != nullptr, receiver, QApplication::activeModalWidget()});
        if (receiver) {
            connect(receiver, &QObject::destroyed, this, &Outbox::deliverSoon, Qt::UniqueConnection);
            if (QWindow* window = receiver->window()->windowHandle())
                connect(window, &QWindow::visibleChanged, this, &Outbox::deliverSoon, Qt::UniqueConnection);
        }
        const auto ripen = [this] {
            for (Sent& sent : m_sent)
                sent.ripe = true;
            deliver();
        };
        QMetaObject::invokeMethod(this, ripen, Qt::QueuedConnection);
    }

private:
    void deliverSoon() { QMetaObject::invokeMethod(this, &Outbox::deliver, Qt::QueuedConnection); }

    void deliver() {
        m_timer.stop();
        while (!m_sent.empty() && m_sent.front().ripe) {
            const Sent& next = m_sent.front();
            const bool lost = isLost(next);
            if (!lost && !isReady(next)) {
                m_timer.start(static_cast<int>(next.deadline.remainingTime()));
                return;
            }
            // Taken out first: what a key brings about may run an event loop of its own.
            const Sent sent = next;
            m_sent.pop_front();
            if (!lost)
                takeEffect(sent);
        }
    }

    static bool isLost(const Sent& sent) {
        const QWidget* box = QApplication::activeModalWidget();
        if (box && box != sent.box)
            return true;
        const QWidget* receiver = sent.receiver;
        return sent.targeted && (!receiver || !receiver->isVisible() || sent.deadline.hasExpired());
    }

    static bool isReady(const Sent& sent) {
        const QWidget* receiver = sent.receiver;
        return !receiver || receiver->window()->windowHandle() == QGuiApplication::focusWindow();
    }

    static void takeEffect(const Sent& sent) {
        QWidget* receiver = sent.receiver;
        if (receiver && !receiver->isWindow() && !receiver->hasFocus())
            receiver->setFocus(Qt::OtherFocusReason);
        if (!sent.key)
            return;
        const QString text = *sent.key == Qt::Key_Return ? u"\r"_s : QString();
        const QPointer<QObject> focused = QGuiApplication::focusObject();
        for (const QEvent::Type half : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(half, *sent.key, Qt::NoModifier, text);
            if (focused)
                QCoreApplication::sendEvent(focused, &event);
        }
    }

    std::deque<Sent> m_sent;
    QTimer m_timer;
};

Outbox& outbox() {
    static QPointer<Outbox> box;
    if (!box)
        box = new Outbox(qApp);
    return *box;
}

}  // namespace

void sendKey(Qt::Key key) {
    outbox().add(key, nullptr);
}

void sendKey(Qt::Key key, QWidget& receiver) {
    outbox().add(key, &receiver);
}

void sendFocus(QWidget& control) {
    outbox().add(std::nullopt, &control);
}

}  // namespace kovanix
