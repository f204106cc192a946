#include "appearance/mdlMonitors.h"

#include <cmath>

#include "desktop/screensize.h"

namespace kovanix {

std::vector<Monitor> Monitors;
int twipsPerPixelX = 0;
int twipsPerPixelY = 0;

namespace {

/// A length of the screen in whole pixels, by way of twips and the screen's own scale.
int throughTwips(int pixels, double exactScale, int wholeScale) {
    return static_cast<int>(std::lround(pixels * exactScale / wholeScale));
}

}  // namespace

void monitorlerioku() {
    const ScreenMetrics metrics = screenMetrics();
    twipsPerPixelX = static_cast<int>(std::lround(metrics.twipsPerPixelX));
    twipsPerPixelY = static_cast<int>(std::lround(metrics.twipsPerPixelY));
    Monitor entry;
    entry.width = throughTwips(metrics.pixels.width(), metrics.twipsPerPixelX, twipsPerPixelX);
    entry.height = throughTwips(metrics.pixels.height(), metrics.twipsPerPixelY, twipsPerPixelY);
    entry.size = QString::number(entry.width) + u" x " + QString::number(entry.height);
    entry.workSize = entry.size;
    Monitors.assign(1, entry);
}

}  // namespace kovanix
