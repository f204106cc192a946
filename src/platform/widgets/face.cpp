#include "widgets/face.h"

#include <QLinearGradient>
#include <QPainter>
#include <QWidget>
#include <algorithm>
#include <cmath>

#include "widgets/activeresize.h"

namespace kovanix {
namespace {

const QColor focusColor(0x12, 0x5F, 0xE0);
const QColor disabledGround(0xEE, 0xF1, 0xF5);

double luminance(const QColor& color) {
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

}  // namespace

QColor mixed(const QColor& first, const QColor& second, double share) {
    const auto part = [share](int from, int to) {
        return static_cast<int>(std::lround(from + (to - from) * std::clamp(share, 0.0, 1.0)));
    };
    return QColor(part(first.red(), second.red()), part(first.green(), second.green()),
                  part(first.blue(), second.blue()), part(first.alpha(), second.alpha()));
}

double contrast(const QColor& first, const QColor& second) {
    const double one = luminance(first);
    const double other = luminance(second);
    return (std::max(one, other) + 0.05) / (std::min(one, other) + 0.05);
}

QColor mutedFace(const QColor& color) {
    const QColor grey = QColor::fromHslF(color.hslHueF() < 0 ? 0.0F : color.hslHueF(),
                                         color.hslSaturationF() * 0.45F, color.lightnessF());
    return mixed(grey, disabledGround, 0.78);
}

QColor mutedText(const QColor& text, const QColor& face) {
    // Pale first, then stronger until it can be read; a light text on a face gone light turns dark.
    const QColor ink = contrast(text, face) < 3.0
                           ? (luminance(face) > 0.35 ? QColor(0x2B, 0x33, 0x3D) : QColor(Qt::white))
                           : text;
    for (double share = 0.55; share > 0.0; share -= 0.05) {
        const QColor pale = mixed(ink, face, share);
        if (contrast(pale, face) >= 2.8)
            return pale;
    }
    return ink;
}

QColor haloFor(const QColor& text, const QColor& face) {
    if (contrast(text, face) >= 1.8)
        return {};
    QColor halo = luminance(text) > 0.4 ? QColor(Qt::black) : QColor(Qt::white);
    halo.setAlpha(60);
    return halo;
}

double designScale(const QWidget& control) {
    for (const QWidget* above = control.parentWidget(); above; above = above->parentWidget()) {
        if (const auto* container = qobject_cast<const ActiveResize*>(above))
            return container->scale();
    }
    return 1.0;
}

QColor borderFor(const QColor& top, const QColor& bottom) {
    const QColor middle = mixed(top, bottom, 0.6);
    return luminance(middle) < 0.03 ? mixed(middle, Qt::white, 0.35) : mixed(middle, Qt::black, 0.3);
}

void paintFace(QPainter& painter, const QRectF& bounds, double radius, const QColor& top,
               const QColor& bottom, const QColor& border, bool lit) {
    const QRectF face = bounds.adjusted(0.5, 0.5, -0.5, -0.5);
    painter.setPen(QPen(border, 1.0));
    if (top == bottom) {
        painter.setBrush(top);
    } else {
        QLinearGradient gradient(face.topLeft(), face.bottomLeft());
        gradient.setColorAt(0, top);
        gradient.setColorAt(1, bottom);
        painter.setBrush(gradient);
    }
    painter.drawRoundedRect(face, radius, radius);
    if (!lit)
        return;
    QLinearGradient light(face.topLeft(), face.bottomLeft());
    light.setColorAt(0, QColor(255, 255, 255, 110));
    light.setColorAt(0.5, QColor(255, 255, 255, 20));
    light.setColorAt(1, QColor(255, 255, 255, 0));
    painter.setPen(QPen(light, 1.0));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(face.adjusted(1, 1, -1, -1), radius - 1, radius - 1);
}

void paintPressedShade(QPainter& painter, const QRectF& bounds, double radius) {
    painter.setBrush(Qt::NoBrush);
    for (int depth = 0; depth < 3; ++depth) {
        const double inset = 0.5 + depth;
        QLinearGradient shade(bounds.topLeft(), bounds.bottomLeft());
        shade.setColorAt(0, QColor(0, 0, 0, 110 - 34 * depth));
        shade.setColorAt(0.6, QColor(0, 0, 0, 40 - 12 * depth));
        shade.setColorAt(1, QColor(0, 0, 0, 0));
        painter.setPen(QPen(shade, 1.0));
        painter.drawRoundedRect(bounds.adjusted(inset, inset, -inset, -inset), radius - depth,
                                radius - depth);
    }
}

void paintFocusRing(QPainter& painter, const QRectF& bounds, double radius) {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(255, 255, 255, 230), 1.5));
    painter.drawRoundedRect(bounds.adjusted(3.5, 3.5, -3.5, -3.5), radius - 3, radius - 3);
    painter.setPen(QPen(focusColor, 3.0));
    painter.drawRoundedRect(bounds.adjusted(1.5, 1.5, -1.5, -1.5), radius - 1, radius - 1);
}

}  // namespace kovanix
