#include "desktop/tapguard.h"

#include <QApplication>
#include <QList>
#include <QMouseEvent>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <utility>

namespace kovanix {

namespace {

const QString dropperName = QStringLiteral("tapDropper");
constexpr int reach = 40;  // pixels; a finger is no pen

bool isPress(const QEvent& event) {
    return event.type() == QEvent::MouseButtonPress || event.type() == QEvent::MouseButtonDblClick;
}

/// Drops the presses. It lives until none has come for a while.
class TapDropper : public QObject {
public:
    TapDropper(const QPoint& place, const QWidget& closing, QObject* parent)
        : QObject(parent), m_place(place) {
        // What opens later is pressed for its own sake.
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (window->isVisible() && window != &closing)
                m_behind.append(window);
        }
        setObjectName(dropperName);
        m_wait.setSingleShot(true);
        m_wait.setInterval(QApplication::doubleClickInterval());
        connect(&m_wait, &QTimer::timeout, this, &QObject::deleteLater);
        m_wait.start();
        parent->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        const bool press = isPress(*event);
        if ((!press && event->type() != QEvent::MouseButtonRelease) || !watched->isWidgetType())
            return false;
        const QPoint place = static_cast<QMouseEvent*>(event)->globalPosition().toPoint();
        if (!press)
            return std::exchange(m_dropped, false);  // a release belongs to its press
        const bool isBehind = m_behind.contains(static_cast<QWidget*>(watched)->window());
        if (!m_wait.isActive() || !isBehind || (place - m_place).manhattanLength() > reach)
            return false;
        m_dropped = true;
        m_wait.start();
        return true;
    }

private:
    QPoint m_place;
    QList<QPointer<QWidget>> m_behind;
    QTimer m_wait;
    bool m_dropped = false;
};

}  // namespace

TapGuard::TapGuard(QWidget& window) : QObject(&window), m_window(window) {
    qApp->installEventFilter(this);
}

bool TapGuard::eventFilter(QObject* watched, QEvent* event) {
    if (isPress(*event) && watched->isWidgetType() && static_cast<QWidget*>(watched)->window() == &m_window) {
        m_place = static_cast<QMouseEvent*>(event)->globalPosition().toPoint();
        m_sincePress.start();
    }
    return false;
}

void TapGuard::windowCloses() const {
    if (m_sincePress.isValid() && !m_sincePress.hasExpired(QApplication::doubleClickInterval()))
        new TapDropper(m_place, m_window, qApp);
}

void TapGuard::reset() {
    qDeleteAll(qApp->findChildren<QObject*>(dropperName, Qt::FindDirectChildrenOnly));
}

}  // namespace kovanix
