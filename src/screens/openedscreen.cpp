#include "screens/openedscreen.h"

#include <QAbstractButton>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>
#include <QWindow>

#include "runtime/screenregistry.h"
#include "screens/focusreturn.h"
#include "widgets/drawnframe.h"
#include "widgets/face.h"

namespace kovanix {

namespace {
constexpr int windowRadius = 10;  // design pixels
}

OpenedScreen::~OpenedScreen() = default;

void OpenedScreen::setCloseButton(QAbstractButton& button) {
    m_closeButton = &button;
    button.setFocus();
}

void OpenedScreen::standInFrame(vkFrame& frame) {
    m_frame = &frame;
    frame.setCornerRadius(windowRadius);
    setWindowFlag(Qt::FramelessWindowHint);
    // A mask cuts the corners on X, where without a compositor what is transparent would be black; elsewhere
    // they are transparent.
    setAttribute(Qt::WA_TranslucentBackground, QGuiApplication::platformName() != u"xcb");
}

void OpenedScreen::paintEvent(QPaintEvent* event) {
    // What shows through the smooth edge of the corners.
    if (m_frame && !testAttribute(Qt::WA_TranslucentBackground))
        QPainter(this).fillRect(event->rect(), m_frame->bordercolor());
}

void OpenedScreen::mousePressEvent(QMouseEvent* event) {
    const bool title = m_frame && m_frame->titleBar().contains(event->position().toPoint());
    if (title && event->button() == Qt::LeftButton)
        windowHandle()->startSystemMove();
    else
        Screen::mousePressEvent(event);
}

void OpenedScreen::resizeEvent(QResizeEvent* event) {
    Screen::resizeEvent(event);
    if (!m_frame)
        return;
    QPainterPath outline;
    const double radius = windowRadius * designScale(*m_frame);
    outline.addRoundedRect(QRectF(rect()), radius, radius);
    setMask(QRegion(outline.toFillPolygon().toPolygon()));
}

void OpenedScreen::restOnCloseButton() {
    m_restsOnCloseButton = true;
    const QList<QWidget*> controls = findChildren<QWidget*>();
    for (QWidget* control : controls) {
        if (control->focusPolicy() & Qt::TabFocus)
            control->setFocusPolicy(Qt::TabFocus);
    }
}

bool OpenedScreen::event(QEvent* event) {
    // Ahead of the toolkit, which gives the focus back to what had it last.
    if (event->type() == QEvent::WindowActivate && m_restsOnCloseButton && m_closeButton)
        m_closeButton->setFocus(Qt::ActiveWindowFocusReason);
    return Screen::event(event);
}

void OpenedScreen::leave() {
    ScreenRegistry::unload(*this);
    giveFocusBack();
}

void OpenedScreen::giveFocusBack() {
    returnFocus();
}

void OpenedScreen::closeEvent(QCloseEvent* event) {
    event->accept();
    leave();
}

void OpenedScreen::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Escape)
        Screen::keyPressEvent(event);
    else if (m_closeButton)
        m_closeButton->click();
    else
        close();
}

}  // namespace kovanix
