#pragma once

#include <QPixmap>
#include <QSize>

namespace kovanix {

/// The brand's picture behind the login's card: a dark ground with the cells of a honeycomb, a few of them
/// filled with honey.
/// @param size  in device-independent pixels
/// @param scale  of the cells, 1 on a display of 1024×768
QPixmap loginBackdrop(QSize size, double scale, qreal devicePixelRatio);

}  // namespace kovanix
