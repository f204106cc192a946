#pragma once

#include <QRect>
#include <QSize>
#include <Qt>

class QWindow;

namespace kovanix {

/// How much larger windows are than designed: the smaller of the screen's width and height against 1024×768.
double screenScale();

/// Where windows may stand: the screen of that window, or the primary one, as large as the one source of the
/// screen's size says, without what a panel of the desktop takes off.
QRect screenArea(const QWindow* owner);

/// The place of a window of that size, its frame included: in the middle of its owner, or of the screen where
/// it has none, or along edges of the screen, or of a part of it that isn't empty; whole on the screen as far
/// as it has room there, its upper left corner in any case.
QRect placeFor(QSize frame, const QWindow* owner, Qt::Alignment alignment = Qt::AlignCenter,
               const QRect& within = {});

}  // namespace kovanix
