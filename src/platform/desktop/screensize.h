#pragma once

#include <QSize>
#include <functional>

namespace kovanix {

/// Size and scale of the screen that the program runs on.
struct ScreenMetrics {
    QSize pixels;             ///< device-independent pixels
    double twipsPerPixelX{};  ///< 1440 twips make an inch
    double twipsPerPixelY{};
};

/// The one source of the screen's size: the primary screen's, unless it was replaced.
ScreenMetrics screenMetrics();

/// Replaces the source; an empty one brings the real screen back.
void setScreenMetricsSource(std::function<ScreenMetrics()> source);

}  // namespace kovanix
