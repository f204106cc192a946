#include "desktop/sendkeys.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPointer>

namespace kovanix {

void sendKey(Qt::Key key) {
    const auto type = [key] {
        const QPointer<QObject> target = QGuiApplication::focusObject();
        for (const QEvent::Type half : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(half, key, Qt::NoModifier);
            if (target)
                QCoreApplication::sendEvent(target, &event);
        }
    };
    QMetaObject::invokeMethod(QCoreApplication::instance(), type, Qt::QueuedConnection);
}

}  // namespace kovanix
