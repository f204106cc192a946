#include "appearance/mdlMonitors.h"

#include <cmath>

#include "desktop/screensize.h"

namespace kovanix {

std::vector<Monitor> Monitors;

namespace {

/// A length of the screen in whole pixels, by way of twips and the screen's own scale.
int throughTwips(int pixels, double twipsPerPixel) {
    const double scale = std::round(twipsPerPixel);
    const double twips = pixels * twipsPerPixel;
    return static_cast<int>(std::lround(twips / scale));
}

}  // namespace

void monitorlerioku() {
    const ScreenMetrics metrics = screenMetrics();
    Monitor entry;
    entry.width = throughTwips(metrics.pixels.width(), metrics.twipsPerPixelX);
    entry.height = throughTwips(metrics.pixels.height(), metrics.twipsPerPixelY);
    entry.size = QString::number(entry.width) + u" x " + QString::number(entry.height);
    entry.workSize = entry.size;
    Monitors.assign(1, entry);
}

}  // namespace kovanix
