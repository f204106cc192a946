#include "widgets/setbutton.h"

#include <QPainter>

#include "widgets/face.h"
#include "widgets/fittedtext.h"
#include "widgets/look.h"

namespace kovanix {

namespace {

constexpr double leastContrast = 1.8;
constexpr double designPadding = 8.0;

}  // namespace

SetButton::SetButton(QWidget* parent) : vkCommand(parent), m_plateText(std::make_unique<FittedText>()) {}

SetButton::~SetButton() = default;

void SetButton::paintEvent(QPaintEvent* event) {
    vkCommand::paintEvent(event);
    const auto [top, bottom] = faceColors(isDown());
    const QColor face = mixed(top, bottom, 0.5);
    if (contrast(forecolor(), face) >= leastContrast)
        return;

    const double padding = designPadding * designScale(*this);
    const QRectF box = QRectF(rect()).adjusted(2 * padding, padding, -2 * padding, -padding);
    m_plateText->fit(caption(), font(), FittedText::pixelSizeOf(font(), logicalDpiY()), box,
                     captionAlignment(), 2);
    const QColor darkPlate = roleColor(ColorRole::ink);
    const QColor lightPlate = roleColor(ColorRole::card);
    const bool dark = contrast(face, darkPlate) > contrast(face, lightPlate);
    const QRectF plate = m_plateText->bounds().adjusted(-padding, -padding / 4, padding, padding / 4);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(dark ? darkPlate : lightPlate);
    painter.drawRoundedRect(plate, padding, padding);
    m_plateText->paint(painter, dark ? lightPlate : darkPlate);
}

}  // namespace kovanix
