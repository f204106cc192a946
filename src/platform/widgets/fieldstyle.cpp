#include "widgets/fieldstyle.h"

#include <QLineEdit>
#include <QPainter>
#include <QStyleOptionFrame>

#include "widgets/face.h"

namespace kovanix {

void FieldStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const {
    const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
    const auto* field = qobject_cast<const QLineEdit*>(widget);
    if (element != PE_PanelLineEdit || !frame || !field || frame->lineWidth == 0) {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        return;
    }
    constexpr double radius = 4;
    const double scale = designScale(*field);
    const Tone tone = toneOf(*field);
    const bool enabled = (option->state & State_Enabled) != 0;
    const bool focused = enabled && (option->state & State_HasFocus) != 0;
    const double width = focused ? 2 : 1;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(QPen(roleColor(focused ? ColorRole::focus : ColorRole::fieldLine, tone), width));
    painter->setBrush(enabled ? option->palette.base() : QBrush(roleColor(ColorRole::fieldOff, tone)));
    const double inset = width / 2;
    painter->drawRoundedRect(QRectF(option->rect).adjusted(inset, inset, -inset, -inset), radius * scale,
                             radius * scale);
    painter->restore();
}

}  // namespace kovanix
