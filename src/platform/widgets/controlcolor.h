#pragma once

#include <QColor>

class QWidget;

namespace kovanix {

// The two colours of a plain control: text fields, labels, check boxes, frames, command buttons. A drawn
// control's back colour is both of its gradient's (its pressed ones stay), its fore colour the caption's;
// what stands flat on its parent fills its ground from the moment that it gets a back colour.

QColor backColor(const QWidget& control);
void setBackColor(QWidget& control, const QColor& color);

QColor foreColor(const QWidget& control);
void setForeColor(QWidget& control, const QColor& color);

}  // namespace kovanix
