#include "database/waiting.h"

#include <QCoreApplication>
#include <QThread>
#include <utility>

namespace kovanix {

namespace {

std::function<void()>& waitSign() {
    static std::function<void()> sign;
    return sign;
}

}  // namespace

void setWaitSign(std::function<void()> sign) {
    waitSign() = std::move(sign);
}

void giveWaitSign() {
    const QCoreApplication* const application = QCoreApplication::instance();
    if (waitSign() && application && QThread::currentThread() == application->thread())
        waitSign()();
}

}  // namespace kovanix
