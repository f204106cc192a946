#include "palettecontrast.h"

#include <algorithm>
#include <optional>

#include "widgets/controlarray.h"
#include "widgets/face.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

/// The caption of a title bar begins at its left, where the bar's first colour has hardly begun to turn.
constexpr double titleShare = 0.15;
constexpr double buttonShare = 0.5;

struct Ground {
    ColorProperty text;
    ColorProperty first;
    ColorProperty second;
    double captionShare;
};

/// The kinds of text; a frame's title comes first, because a frame has two back colours too.
constexpr std::array grounds{
    Ground{ColorProperty::forecolor, ColorProperty::titlecolor1, ColorProperty::titlecolor2, titleShare},
    Ground{ColorProperty::forecolor, ColorProperty::backcolor1, ColorProperty::backcolor2, buttonShare},
    Ground{ColorProperty::ForeColor, ColorProperty::BackColor, ColorProperty::BackColor, buttonShare},
};

bool hasText(const QString& control) {
    // A panel without a title.
    return control != QLatin1StringView("urunbulunamadiframesi");
}

std::optional<QColor> valueOf(const QString& control, ColorProperty property, Palette palette) {
    for (const PaletteRow& row : paletteRows()) {
        if (row.property != property || row.cell(palette).count == 0)
            continue;
        for (const char* name : row.controls) {
            if (control == QLatin1StringView(name))
                return colorOf(row.cell(palette).last());
        }
    }
    return std::nullopt;
}

std::optional<TextContrast> textContrast(const QString& control, Palette palette) {
    for (const Ground& ground : grounds) {
        const auto text = valueOf(control, ground.text, palette);
        const auto first = valueOf(control, ground.first, palette);
        const auto second = valueOf(control, ground.second, palette);
        if (text && first && second)
            return TextContrast{{},
                                palette,
                                contrast(*text, mixed(*first, *second, ground.captionShare)),
                                std::min(contrast(*text, *first), contrast(*text, *second))};
    }
    return std::nullopt;
}

/// "tus_0 … tus_11" for a run of an array's members, in code spans.
QString controlList(const QStringList& controls) {
    QStringList parts;
    qsizetype first = 0;
    const auto array = [&](qsizetype i) { return controls[i].section(u'_', 0, 0); };
    while (first < controls.size()) {
        qsizetype last = first;
        while (last + 1 < controls.size() && array(last + 1) == array(first) &&
               controls[first].contains(u'_'))
            ++last;
        const QString joint = last > first + 1 ? u"` … `"_s : u"`, `"_s;
        const QStringList ends =
            last > first ? QStringList{controls[first], controls[last]} : QStringList{controls[first]};
        parts.append(u'`' + ends.join(joint) + u'`');
        first = last + 1;
    }
    return parts.join(u", ");
}

}  // namespace

std::vector<TextContrast> textContrasts() {
    std::vector<TextContrast> contrasts;
    const char* const* before = nullptr;
    for (const PaletteRow& row : paletteRows()) {
        if (row.controls.data() == before)
            continue;
        before = row.controls.data();
        QStringList controls;
        for (const char* name : row.controls)
            controls.append(QLatin1StringView(name));
        controls.removeIf([](const QString& control) { return !hasText(control); });
        for (const Palette palette : allPalettes) {
            if (controls.isEmpty())
                break;
            if (auto found = textContrast(controls.front(), palette)) {
                found->controls = controls;
                contrasts.push_back(*found);
            }
        }
    }
    return contrasts;
}

QStringList weakTextLines(double ratio) {
    QStringList lines;
    for (const TextContrast& text : textContrasts()) {
        if (std::min(text.middle, text.worst) < ratio)
            lines.append(u"| " + controlList(text.controls) + u" | `resim" +
                         QString::number(static_cast<int>(text.palette) + 1) + u"` | " +
                         QString::number(text.middle, 'f', 2) + u" | " + QString::number(text.worst, 'f', 2) +
                         u" |");
    }
    return lines;
}

}  // namespace kovanix
