#include "widgets/face.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPalette>
#include <QWidget>
#include <algorithm>
#include <array>
#include <cmath>

#include "widgets/activeresize.h"

namespace kovanix {
namespace {

const QColor disabledGround(0xEE, 0xF1, 0xF5);
const QColor disabledGroundOnDark(0x50, 0x54, 0x5A);
constexpr double faintestOutline = 0.5;
constexpr double strongestOutline = 0.85;

// The share of light in each of a channel's 256 values; every painting asks several times.
const std::array<double, 256>& linearLight() {
    static const std::array<double, 256> table = [] {
        std::array<double, 256> values{};
        for (std::size_t i = 0; i < values.size(); ++i) {
            const double part = static_cast<double>(i) / 255;
            values[i] = part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
        }
        return values;
    }();
    return table;
}

double luminance(const QColor& color) {
    const auto linear = [](int part) { return linearLight()[static_cast<std::size_t>(part)]; };
    return 0.2126 * linear(color.red()) + 0.7152 * linear(color.green()) + 0.0722 * linear(color.blue());
}

// The least that a measure gives for the colours from one to another. Luminance may dip on the way, so the
// ends alone don't tell.
template <class Measure>
double leastOver(const QColor& from, const QColor& to, const Measure& measure) {
    constexpr int steps = 8;
    double least = measure(from);
    for (int i = 1; i <= steps && from != to; ++i)
        least = std::min(least, measure(mixed(from, to, static_cast<double>(i) / steps)));
    return least;
}

/// A shade of a coloured ink that stands out where the ink itself doesn't; invalid where none does or where
/// it would hardly be a shade of it any more. Of greys there is none: black and white are outlined by each
/// other.
QColor shadeOf(const QColor& ink, const QColor& from, const QColor& to, double wanted) {
    constexpr int leastSaturation = 60;
    constexpr double deepest = 0.6;
    constexpr double step = 0.05;
    if (ink.hsvSaturation() < leastSaturation)
        return {};
    for (const QColor& towards : {QColor(Qt::black), QColor(Qt::white)}) {
        for (double share = step; share <= deepest; share += step) {
            const QColor shade = mixed(ink, towards, share);
            if (leastOver(from, to, [&](const QColor& face) {
                    return std::max(contrast(ink, face), contrast(shade, face));
                }) >= wanted)
                return shade;
        }
    }
    return {};
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

QColor mutedFace(const QColor& color, bool onDark) {
    const QColor grey = QColor::fromHslF(color.hslHueF() < 0 ? 0.0F : color.hslHueF(),
                                         color.hslSaturationF() * 0.45F, color.lightnessF());
    return mixed(grey, onDark ? disabledGroundOnDark : disabledGround, 0.78);
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

double contrastOver(const QColor& ink, const QColor& from, const QColor& to) {
    return leastOver(from, to, [&](const QColor& face) { return contrast(ink, face); });
}

QColor blackOrWhite(const QColor& ground) {
    return contrast(ground, Qt::black) >= contrast(ground, Qt::white) ? Qt::black : Qt::white;
}

QColor inkOn(const QColor& wanted, const QColor& from, const QColor& to) {
    if (contrastOver(wanted, from, to) >= legible)
        return wanted;
    return contrastOver(Qt::black, from, to) >= contrastOver(Qt::white, from, to) ? Qt::black : Qt::white;
}

QColor outlineFor(const QColor& ink, const QColor& from, const QColor& to, double wanted) {
    if (contrastOver(ink, from, to) >= wanted)
        return {};
    if (const QColor shade = shadeOf(ink, from, to, std::max(wanted, legible)); shade.isValid())
        return shade;
    QColor outline = blackOrWhite(ink);
    // Glyphs are told from the outline or, where their colour lies between the two, the outline from the
    // face. It is as strong as the worst place needs it and so stays quiet on all others.
    const auto reached = [&](double strength) {
        return leastOver(from, to, [&](const QColor& face) {
            const QColor rim = mixed(face, outline, strength);
            return std::max(contrast(ink, rim), contrast(rim, face));
        });
    };
    double strength = faintestOutline;
    while (strength < strongestOutline && reached(strength) < wanted)
        strength += 0.05;
    outline.setAlphaF(static_cast<float>(std::min(strength, strongestOutline)));
    return outline;
}

double designScale(const QWidget& control) {
    for (const QWidget* above = control.parentWidget(); above; above = above->parentWidget()) {
        if (const auto* container = qobject_cast<const ActiveResize*>(above))
            return container->scale();
    }
    return 1.0;
}

QPixmap inColor(QPixmap shape, const QColor& color) {
    QPainter painter(&shape);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(QRectF(QPointF(0, 0), shape.deviceIndependentSize()), color);
    return shape;
}

bool standsOnDark(const QWidget& control) {
    return luminance(control.palette().color(QPalette::Active, QPalette::WindowText)) > 0.5;
}

Tone toneOf(const QWidget& control) {
    return standsOnDark(control) ? Tone::dark : Tone::light;
}

QColor borderFor(const QColor& top, const QColor& bottom) {
    const QColor middle = mixed(top, bottom, 0.6);
    return luminance(middle) < 0.12 ? mixed(middle, Qt::white, 0.35) : mixed(middle, Qt::black, 0.3);
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

void paintField(QPainter& painter, const QRectF& bounds, const QWidget& control, bool enabled, bool focused,
                const QBrush& ground) {
    constexpr double designRadius = 4;
    const double radius = designRadius * designScale(control);
    const Tone tone = toneOf(control);
    const bool ringed = enabled && focused;
    const double width = ringed ? 2 : 1;
    painter.setPen(QPen(roleColor(ringed ? ColorRole::focus : ColorRole::fieldLine, tone), width));
    painter.setBrush(enabled ? ground : QBrush(roleColor(ColorRole::fieldOff, tone)));
    const double inset = width / 2;
    painter.drawRoundedRect(bounds.adjusted(inset, inset, -inset, -inset), radius, radius);
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
    painter.setPen(QPen(roleColor(ColorRole::focus), 3.0));
    painter.drawRoundedRect(bounds.adjusted(1.5, 1.5, -1.5, -1.5), radius - 1, radius - 1);
}

}  // namespace kovanix
