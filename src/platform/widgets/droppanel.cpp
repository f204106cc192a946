#include "widgets/droppanel.h"

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>
#include <QLayout>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <algorithm>
#include <cmath>

#include "widgets/activeresize.h"
#include "widgets/dialogframe.h"
#include "widgets/face.h"
#include "widgets/fittedtext.h"

namespace kovanix {

namespace {

constexpr int designRadius = 10;
constexpr int designGap = 8;
constexpr int smallestTarget = 40;

/// What scales the field: a panel in there is scaled by the same.
QWidget* containerOf(const QWidget& field) {
    for (QWidget* above = field.parentWidget(); above && !above->isWindow(); above = above->parentWidget()) {
        if (qobject_cast<ActiveResize*>(above))
            return above;
    }
    return field.window();
}

QRect onDisplay(const QWidget& widget) {
    return {widget.mapToGlobal(QPoint(0, 0)), widget.size()};
}

}  // namespace

DropPlace dropPlace(QSize panel, const QRect& field, const QRect& window, const QRect& display, int gap) {
    const auto at = [&](const QRect& room, int top) {
        const int left = std::max(room.left(), std::min(field.left(), room.right() + 1 - panel.width()));
        return QRect(QPoint(left, top), panel);
    };
    const QRect seen = window.intersected(display);
    const int below = field.bottom() + 1 + gap;
    const int above = field.top() - gap - panel.height();
    for (const QRect& room : {seen, display}) {
        for (const int top : {below, above}) {
            const QRect place = at(room, top);
            if (room.contains(place))
                return {place.topLeft(), room == seen};
        }
    }
    const bool fits = seen.height() >= panel.height() && seen.width() >= panel.width();
    const QRect& room = fits ? seen : display;
    const int lowest = room.bottom() + 1 - panel.height();
    return {at(room, std::max(room.top(), std::min(below, lowest))).topLeft(), fits};
}

DropPanel::DropPanel(QWidget& field)
    : vkFrame(containerOf(field)), m_field(field), m_scale(designScale(field)) {
    setLook(FrameRole::window);
    setCornerRadius(designRadius);
    setFont(textFont(20, QFont::Medium));
    // It is made for the scale at which it drops and goes when that changes.
    setProperty("noscale", true);
}

DropPanel::~DropPanel() = default;

int DropPanel::scaled(int design) const {
    return static_cast<int>(std::lround(design * m_scale));
}

int DropPanel::target(int design) const {
    return std::max(smallestTarget, scaled(design));
}

QFont DropPanel::textFont(int design, QFont::Weight weight) const {
    QFont font = m_field.font();
    font.setPixelSize(std::max(FittedText::smallestLegible, scaled(design)));
    font.setWeight(weight);
    return font;
}

void DropPanel::drop(bool byKeyboard) {
    m_byKeyboard = byKeyboard;
    const QWidget& container = *parentWidget();
    layout()->activate();
    resize(layout()->totalSizeHint());
    const DropPlace place = dropPlace(size(), onDisplay(m_field), onDisplay(container),
                                      m_field.screen()->availableGeometry(), scaled(designGap));
    if (place.inside) {
        move(container.mapFromGlobal(place.corner));
    } else {
        setAttribute(Qt::WA_TranslucentBackground, !canCutWindows());
        setWindowFlags(Qt::Popup);
        move(place.corner);
        if (canCutWindows())
            cutCorners(*this, designRadius * designScale(*this));
    }
    show();
    raise();
    stops().front()->setFocus(Qt::PopupFocusReason);
    qApp->installEventFilter(this);
}

void DropPanel::paintEvent(QPaintEvent* event) {
    // What shows through the smooth edge of a window's corners.
    if (isWindow() && canCutWindows())
        QPainter(this).fillRect(rect(), bordercolor());
    vkFrame::paintEvent(event);
}

void DropPanel::discard() {
    qApp->removeEventFilter(this);
    // First: the toolkit gives the focus of what is hidden to the next control.
    const QWidget* focused = QApplication::focusWidget();
    if (m_field.isVisible() && focused && (focused == this || isAncestorOf(focused)))
        m_field.setFocus(Qt::PopupFocusReason);
    hide();
    deleteLater();
}

/// @return whether the press is dropped
bool DropPanel::dropsPress(const QWidget& hit, const QPoint& place) {
    if (!isWindow()) {
        // The field's own button makes it go by itself, once it is clicked.
        const bool onButton = m_field.isAncestorOf(&hit) && qobject_cast<const QAbstractButton*>(&hit);
        if (&hit != this && !isAncestorOf(&hit) && !onButton)
            Q_EMIT left();
        return false;
    }
    if (onDisplay(*this).contains(place))
        return false;
    // A window that pops up gets the presses beside it, too. Some desktops give them to the window behind it
    // then: not where that is the field, whose button would drop the panel anew.
    setAttribute(Qt::WA_NoMouseReplay, onDisplay(m_field).contains(place));
    Q_EMIT left();
    return true;
}

bool DropPanel::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
            return watched->isWidgetType() &&
                   dropsPress(static_cast<QWidget&>(*watched),
                              static_cast<QMouseEvent*>(event)->globalPosition().toPoint());
        case QEvent::Resize:
            if (watched == parentWidget())
                Q_EMIT left();
            return false;
        default:
            return false;
    }
}

void DropPanel::keyPressEvent(QKeyEvent* event) {
    // None goes on to the screen, where it would do what it does without a panel.
    event->accept();
    const int key = event->key();
    const bool up = key == Qt::Key_Up && (event->modifiers() & Qt::AltModifier);
    if (key == Qt::Key_Escape || key == Qt::Key_F4 || up)
        Q_EMIT left();
}

void DropPanel::mousePressEvent(QMouseEvent* event) {
    event->accept();  // else it would be one on the window behind
}

bool DropPanel::focusNextPrevChild(bool next) {
    QList<QWidget*> all = stops();
    all.removeIf([](const QWidget* stop) { return !stop->isEnabled(); });
    const qsizetype place = all.indexOf(QApplication::focusWidget());
    const qsizetype count = all.size();
    if (count == 0)
        return false;
    all[place < 0 ? 0 : (place + (next ? 1 : count - 1)) % count]->setFocus(next ? Qt::TabFocusReason
                                                                                 : Qt::BacktabFocusReason);
    return true;
}

}  // namespace kovanix
