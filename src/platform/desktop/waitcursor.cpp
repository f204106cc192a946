#include "desktop/waitcursor.h"

#include <QCursor>
#include <QGuiApplication>
#include <QTimer>

namespace kovanix {

void showWaitCursor() {
    static bool shown = false;
    if (shown)
        return;
    shown = true;
    QGuiApplication::setOverrideCursor(QCursor(Qt::WaitCursor));
    QTimer::singleShot(0, qApp, [] {
        shown = false;
        QGuiApplication::restoreOverrideCursor();
    });
}

WaitCursor::WaitCursor() {
    QGuiApplication::setOverrideCursor(QCursor(Qt::WaitCursor));
}

WaitCursor::~WaitCursor() {
    QGuiApplication::restoreOverrideCursor();
}

}  // namespace kovanix
