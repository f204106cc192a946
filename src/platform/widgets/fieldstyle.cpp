#include "widgets/fieldstyle.h"

#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QStyleOptionFrame>

#include "widgets/face.h"

namespace kovanix {

void FieldStyle::polish(QWidget* widget) {
    QProxyStyle::polish(widget);
    // The rim's ground is the list's: rows that filled theirs would cut its round corners off.
    if (auto* list = qobject_cast<QListWidget*>(widget))
        list->viewport()->setAutoFillBackground(false);
}

void FieldStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const {
    const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
    const bool panel = element == PE_PanelLineEdit && qobject_cast<const QLineEdit*>(widget);
    const bool listRim = element == PE_Frame && qobject_cast<const QListWidget*>(widget);
    if (!frame || frame->lineWidth == 0 || (!panel && !listRim)) {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        return;
    }
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    paintField(*painter, QRectF(option->rect), *widget, (option->state & State_Enabled) != 0,
               (option->state & State_HasFocus) != 0, option->palette.base());
    painter->restore();
}

}  // namespace kovanix
