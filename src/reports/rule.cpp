#include "reports/rule.h"

#include <QPainter>

#include "widgets/look.h"

namespace kovanix {

Rule::Rule(QWidget* parent) : QWidget(parent) {
    setFixedHeight(1);
}

void Rule::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), roleColor(ColorRole::edge));
}

}  // namespace kovanix
