#include "widgets/controlcolor.h"

#include <QAbstractScrollArea>
#include <QAbstractSpinBox>
#include <QLineEdit>
#include <QPalette>
#include <QPushButton>
#include <QToolButton>
#include <QWidget>

#include "widgets/drawnbutton.h"
#include "widgets/drawnframe.h"
#include "widgets/vklabel.h"

namespace kovanix {

namespace {

bool isField(const QWidget& control) {
    return qobject_cast<const QLineEdit*>(&control) || qobject_cast<const QAbstractSpinBox*>(&control) ||
           qobject_cast<const QAbstractScrollArea*>(&control);
}

bool fillsItsGround(const QWidget& control) {
    return control.isWindow() || isField(control) || qobject_cast<const QPushButton*>(&control) ||
           qobject_cast<const QToolButton*>(&control);
}

// What the toolkit paints the control with.
QPalette::ColorRole backRole(const QWidget& control) {
    return isField(control) ? QPalette::Base : control.backgroundRole();
}

QPalette::ColorRole foreRole(const QWidget& control) {
    return isField(control) ? QPalette::Text : control.foregroundRole();
}

void setRole(QWidget& control, QPalette::ColorRole role, const QColor& color) {
    QPalette palette = control.palette();
    palette.setColor(role, color);
    if (role == QPalette::Text) {
        QColor hint = color;
        hint.setAlphaF(0.5F);
        palette.setColor(QPalette::PlaceholderText, hint);
    }
    control.setPalette(palette);
}

QColor roleColor(const QWidget& control, QPalette::ColorRole role) {
    return control.palette().color(QPalette::Active, role);
}

}  // namespace

QColor backColor(const QWidget& control) {
    if (const auto* frame = qobject_cast<const vkFrame*>(&control))
        return frame->backcolor1();
    if (const auto* button = qobject_cast<const DrawnButton*>(&control))
        return button->backcolor1();
    return roleColor(control, backRole(control));
}

void setBackColor(QWidget& control, const QColor& color) {
    if (auto* frame = qobject_cast<vkFrame*>(&control)) {
        frame->setBackcolor1(color);
        frame->setBackcolor2(color);
    } else if (auto* button = qobject_cast<DrawnButton*>(&control)) {
        button->setBackcolor1(color);
        button->setBackcolor2(color);
    } else {
        setRole(control, backRole(control), color);
        if (!fillsItsGround(control))
            control.setAutoFillBackground(true);
    }
}

QColor foreColor(const QWidget& control) {
    if (const auto* frame = qobject_cast<const vkFrame*>(&control))
        return frame->forecolor();
    if (const auto* button = qobject_cast<const DrawnButton*>(&control))
        return button->forecolor();
    if (const auto* label = qobject_cast<const vkLabel*>(&control))
        return label->forecolor();
    return roleColor(control, foreRole(control));
}

void setForeColor(QWidget& control, const QColor& color) {
    if (auto* frame = qobject_cast<vkFrame*>(&control))
        frame->setForecolor(color);
    else if (auto* button = qobject_cast<DrawnButton*>(&control))
        button->setForecolor(color);
    else if (auto* label = qobject_cast<vkLabel*>(&control))
        label->setForecolor(color);
    else
        setRole(control, foreRole(control), color);
}

}  // namespace kovanix
