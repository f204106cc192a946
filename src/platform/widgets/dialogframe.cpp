#include "widgets/dialogframe.h"

#include <QBitmap>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QWindow>
#include <cmath>

#include "widgets/face.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

// At the design size.
constexpr int frameRadius = 10;
constexpr int rim = 2;

}  // namespace

bool canCutWindows() {
    return QGuiApplication::platformName() == u"xcb"_s;
}

void cutCorners(QWidget& window, double radius) {
    QBitmap shape(window.size());
    shape.clear();
    QPainter painter(&shape);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::color1);
    painter.drawRoundedRect(window.rect(), radius, radius);
    painter.end();
    window.setMask(shape);
}

DialogFrame::DialogFrame(QWidget* parent) : vkFrame(parent) {
    setLook(FrameRole::window);
    setScale(1);
}

void DialogFrame::setScale(double scale) {
    setCornerRadius(canCutWindows() ? static_cast<int>(std::lround(frameRadius * scale)) : 1);
    setBorderWidth(static_cast<int>(std::lround(rim * scale)));
}

void DialogFrame::paintEvent(QPaintEvent* event) {
    // What shows through the smooth edge of the corners.
    QPainter(this).fillRect(rect(), bordercolor());
    vkFrame::paintEvent(event);
}

void DialogFrame::resizeEvent(QResizeEvent* event) {
    vkFrame::resizeEvent(event);
    if (canCutWindows())
        cutCorners(*window(), cornerRadius() * designScale(*this));
}

void DialogFrame::mousePressEvent(QMouseEvent* event) {
    QWindow* dialog = window()->windowHandle();
    if (event->button() == Qt::LeftButton && dialog && titleBar().contains(event->position().toPoint()))
        dialog->startSystemMove();
    event->accept();
}

}  // namespace kovanix
