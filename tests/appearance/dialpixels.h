#pragma once

#include <QImage>
#include <QPointF>
#include <cmath>

#include "appearance/clockdial.h"

namespace kovanix {

inline const QColor cyan(0, 255, 255);
inline const QColor red(255, 0, 0);
inline const QColor gray(128, 128, 128);
inline const QColor green(0, 255, 0);

/// Whether two colours are the same but for what smooth edges mix in.
inline bool isNearly(const QColor& color, const QColor& other) {
    const auto near = [](int part, int otherPart) { return std::abs(part - otherPart) <= 24; };
    return near(color.red(), other.red()) && near(color.green(), other.green()) &&
           near(color.blue(), other.blue());
}

/// Whether one of the nine device pixels at and around a point has that colour.
inline bool shows(const QImage& image, QPointF point, const QColor& color) {
    const QPointF place = point * image.devicePixelRatio();
    const QPoint middle(static_cast<int>(place.x()), static_cast<int>(place.y()));
    for (int y = middle.y() - 1; y <= middle.y() + 1; ++y)
        for (int x = middle.x() - 1; x <= middle.x() + 1; ++x)
            if (image.valid(x, y) && isNearly(image.pixelColor(x, y), color))
                return true;
    return false;
}

/// Whether a line of its colour ends where it should: it shows just before its end and no more behind it.
inline bool endsThere(const QImage& image, const ClockDial& dial, const HandLine& line) {
    const QColor color = colorOf(line.color);
    const double width = dial.lineWidth(line);
    const QPointF centre = dial.at({});
    const QPointF tip = dial.at(line.end) - centre;
    const QPointF direction = tip / std::hypot(tip.x(), tip.y());
    return shows(image, centre + tip - direction * width * 0.6, color) &&
           !shows(image, centre + tip + direction * (width * 0.5 + 2), color);
}

}  // namespace kovanix
