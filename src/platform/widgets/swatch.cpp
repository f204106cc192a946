#include "widgets/swatch.h"

#include <QMouseEvent>

#include "widgets/look.h"

namespace kovanix {

Swatch::Swatch(QWidget* parent) : Pressable(parent) {
    setBordercolor(roleColor(ColorRole::fieldLine));
    tellAsButton(*this);
}

void Swatch::mousePressEvent(QMouseEvent* event) {
    event->accept();
    Q_EMIT mousedown();
}

}  // namespace kovanix
