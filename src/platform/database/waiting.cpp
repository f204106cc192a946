#include "database/waiting.h"

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
    if (waitSign())
        waitSign()();
}

}  // namespace kovanix
