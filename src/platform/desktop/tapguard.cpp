#include "desktop/tapguard.h"

#include <QApplication>
#include <QList>
#include <QMouseEvent>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <QWindow>
#include <algorithm>
#include <optional>
#include <utility>

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

const QString dropperName = u"tapDropper"_s;
constexpr int reach = 40;  // pixels; a finger is no pen

bool isPress(const QEvent& event) {
    return event.type() == QEvent::MouseButtonPress || event.type() == QEvent::MouseButtonDblClick;
}

bool isTap(const QEvent& event) {
    return isPress(event) || event.type() == QEvent::MouseButtonRelease;
}

/// Drops the presses on some windows. It lives until none has come for a while.
class TapDropper : public QObject {
public:
    /// @param place  of the tap, on the desktop; none where no press is dropped
    /// @param requests  whether requests to close are dropped, too
    TapDropper(std::optional<QPoint> place, QList<QPointer<QWidget>> windows, bool requests, QObject* parent)
        : QObject(parent), m_place(place), m_windows(std::move(windows)), m_requests(requests) {
        setObjectName(dropperName);
        m_wait.setSingleShot(true);
        m_wait.setInterval(QApplication::doubleClickInterval());
        connect(&m_wait, &QTimer::timeout, this, &QObject::deleteLater);
        m_wait.start();
        parent->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (m_requests && event->type() == QEvent::Close && event->spontaneous() && isOneOfThem(*watched)) {
            event->ignore();
            return true;
        }
        if (!isTap(*event) || !watched->isWidgetType())
            return false;
        if (!isPress(*event))
            return std::exchange(m_dropped, false);  // a release belongs to its press
        const QPoint place = static_cast<QMouseEvent*>(event)->globalPosition().toPoint();
        if (!m_wait.isActive() || !m_place || !isOneOfThem(*static_cast<QWidget*>(watched)->window()) ||
            (place - *m_place).manhattanLength() > reach)
            return false;
        m_dropped = true;
        m_wait.start();
        return true;
    }

private:
    bool isOneOfThem(const QObject& window) const {
        return std::ranges::any_of(m_windows, [&](const QPointer<QWidget>& each) {
            return each && (each == &window || each->windowHandle() == &window);
        });
    }

    std::optional<QPoint> m_place;
    QList<QPointer<QWidget>> m_windows;
    bool m_requests;
    QTimer m_wait;
    bool m_dropped = false;
};

}  // namespace

TapGuard::TapGuard(QWidget& window) : QObject(&window), m_window(window) {
    qApp->installEventFilter(this);
}

bool TapGuard::eventFilter(QObject* watched, QEvent* event) {
    // Keys act when the finger is lifted, other controls when it comes down.
    if (isTap(*event) && watched->isWidgetType() && static_cast<QWidget*>(watched)->window() == &m_window) {
        m_place = static_cast<QMouseEvent*>(event)->globalPosition().toPoint();
        m_sinceTap.start();
    }
    return false;
}

bool TapGuard::wasPressed() const {
    return m_sinceTap.isValid() && !m_sinceTap.hasExpired(QApplication::doubleClickInterval());
}

void TapGuard::windowCloses(bool onRequest) const {
    if (!onRequest && !wasPressed())
        return;
    // What opens later is pressed for its own sake.
    QList<QPointer<QWidget>> behind;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window != &m_window)
            behind.append(window);
    }
    new TapDropper(wasPressed() ? std::optional(m_place) : std::nullopt, behind, onRequest, qApp);
}

void TapGuard::windowOpens(QWidget& opened) const {
    if (wasPressed())
        new TapDropper(m_place, {&opened}, false, qApp);
}

void TapGuard::reset() {
    qDeleteAll(qApp->findChildren<QObject*>(dropperName, Qt::FindDirectChildrenOnly));
}

}  // namespace kovanix
