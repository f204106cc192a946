#include "desktop/screensize.h"

#include <QGuiApplication>
#include <QScreen>
#include <utility>

namespace kovanix {

namespace {

constexpr double twipsPerInch = 1440.0;

std::function<ScreenMetrics()>& replacement() {
    static std::function<ScreenMetrics()> source;
    return source;
}

ScreenMetrics primaryScreenMetrics() {
    const QScreen* screen = QGuiApplication::primaryScreen();
    // No screen at all (the last one was unplugged): an empty size at the usual 96 dots an inch, so that no
    // one divides by zero.
    if (!screen)
        return {QSize(0, 0), 15.0, 15.0};
    return {screen->geometry().size(), twipsPerInch / screen->logicalDotsPerInchX(),
            twipsPerInch / screen->logicalDotsPerInchY()};
}

}  // namespace

ScreenMetrics screenMetrics() {
    return replacement() ? replacement()() : primaryScreenMetrics();
}

void setScreenMetricsSource(std::function<ScreenMetrics()> source) {
    replacement() = std::move(source);
}

}  // namespace kovanix
