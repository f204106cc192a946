#include "desktop/keyguard.h"

#include <QCoreApplication>
#include <QKeyEvent>

namespace kovanix {

namespace {

constexpr quint64 scannersPause = 300;  // milliseconds, at most
constexpr quint64 quickestFinger = 50;  // milliseconds between two presses, no person is quicker

bool isEnter(const QKeyEvent& key) {
    return key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
}

bool isCharacter(const QKeyEvent& key) {
    return !key.text().isEmpty() && key.text().front().isPrint() && key.key() != Qt::Key_Space;
}

}  // namespace

RepeatedKeys::RepeatedKeys(QObject* parent) : QObject(parent) {
    QCoreApplication::instance()->installEventFilter(this);
}

bool RepeatedKeys::eventFilter(QObject* watched, QEvent* event) {
    if (!watched->isWindowType() ||
        (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease))
        return false;
    const auto& key = static_cast<const QKeyEvent&>(*event);
    if (key.isAutoRepeat())
        return false;
    if (isCharacter(key)) {
        m_entered = 0;
        return false;
    }
    if (key.type() == QEvent::KeyRelease) {
        m_key = key.key();
        m_released = key.timestamp();
        return false;
    }
    if (isEnter(key) && m_entered != 0 && key.timestamp() - m_entered <= quickestFinger)
        return true;
    if (isEnter(key))
        m_entered = key.timestamp();
    if (key.key() != m_key || key.timestamp() == 0 || key.timestamp() != m_released)
        return false;
    QKeyEvent repeated(QEvent::KeyPress, key.key(), key.modifiers(), key.nativeScanCode(),
                       key.nativeVirtualKey(), key.nativeModifiers(), key.text(), true);
    repeated.setTimestamp(key.timestamp());
    QCoreApplication::sendEvent(watched, &repeated);
    return true;
}

bool ScannedKeys::isEndOfScan(const QKeyEvent& press) {
    const bool ends = isEnter(press) || press.key() == Qt::Key_Tab || press.key() == Qt::Key_Space;
    // By the keyboard's clock, too: a program that is busy meanwhile gets both late, and far apart.
    const bool soon =
        m_sinceCharacter.isValid() && (!m_sinceCharacter.hasExpired(qint64{scannersPause}) ||
                                       (m_characterAt != 0 && press.timestamp() >= m_characterAt &&
                                        press.timestamp() - m_characterAt <= scannersPause));
    if (isCharacter(press) || (ends && soon)) {
        m_sinceCharacter.start();
        m_characterAt = press.timestamp();
    }
    return ends && soon;
}

bool UnmeantKeys::eventFilter(QObject* /*watched*/, QEvent* event) {
    if (event->type() != QEvent::KeyPress)
        return false;
    const auto& key = static_cast<const QKeyEvent&>(*event);
    return key.isAutoRepeat() || m_scanned.isEndOfScan(key);
}

}  // namespace kovanix
