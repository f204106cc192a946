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
constexpr int radius = 10;
constexpr int rim = 2;

/// Transparent corners would be black without a compositor, so the window is cut out; only X does that.
bool canBeRound() {
    return QGuiApplication::platformName() == u"xcb"_s;
}

}  // namespace

DialogFrame::DialogFrame(QWidget* parent) : vkFrame(parent) {
    setLook(FrameRole::window);
    setScale(1);
}

void DialogFrame::setScale(double scale) {
    setCornerRadius(canBeRound() ? static_cast<int>(std::lround(radius * scale)) : 1);
    setBorderWidth(static_cast<int>(std::lround(rim * scale)));
}

void DialogFrame::paintEvent(QPaintEvent* event) {
    // What shows through the smooth edge of the corners.
    QPainter(this).fillRect(rect(), bordercolor());
    vkFrame::paintEvent(event);
}

void DialogFrame::resizeEvent(QResizeEvent* event) {
    vkFrame::resizeEvent(event);
    if (!canBeRound())
        return;
    const double corner = cornerRadius() * designScale(*this);
    QBitmap shape(size());
    shape.clear();
    QPainter painter(&shape);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::color1);
    painter.drawRoundedRect(rect(), corner, corner);
    painter.end();
    window()->setMask(shape);
}

void DialogFrame::mousePressEvent(QMouseEvent* event) {
    QWindow* dialog = window()->windowHandle();
    if (event->button() == Qt::LeftButton && dialog && titleBar().contains(event->position().toPoint()))
        dialog->startSystemMove();
    event->accept();
}

}  // namespace kovanix
