#include "desktop/windowplace.h"

#include <QGuiApplication>
#include <QScreen>
#include <QStyle>
#include <QWindow>
#include <algorithm>

#include "desktop/screensize.h"

namespace kovanix {

namespace {

constexpr QSizeF designScreen(1024, 768);

}  // namespace

double screenScale() {
    const QSizeF screen = screenMetrics().pixels;
    return std::min(screen.width() / designScreen.width(), screen.height() / designScreen.height());
}

QRect screenArea(const QWindow* owner) {
    const QScreen* screen = owner ? owner->screen() : QGuiApplication::primaryScreen();
    const QSize size = screenMetrics().pixels;
    if (!screen)
        return {QPoint(0, 0), size};
    // A panel of the desktop takes its part off.
    return screen->geometry().size() == size ? screen->availableGeometry()
                                             : QRect(screen->geometry().topLeft(), size);
}

QRect placeFor(QSize frame, const QWindow* owner, Qt::Alignment alignment, const QRect& within) {
    const QRect area = screenArea(owner);
    QRect place(QPoint(0, 0), frame);
    // A window manager may still be on its way to give a maximised owner its place.
    const bool beside = owner && !(owner->windowStates() & (Qt::WindowMaximized | Qt::WindowFullScreen));
    place.moveCenter(beside ? owner->frameGeometry().center() : area.center());
    if (alignment != Qt::AlignCenter)
        place =
            QStyle::alignedRect(Qt::LeftToRight, alignment, place.size(), within.isEmpty() ? area : within);
    // The upper left corner last: where a window can't be whole, its title stays within reach.
    place.moveBottomRight({std::min(place.right(), area.right()), std::min(place.bottom(), area.bottom())});
    place.moveTopLeft({std::max(place.left(), area.left()), std::max(place.top(), area.top())});
    return place;
}

}  // namespace kovanix
