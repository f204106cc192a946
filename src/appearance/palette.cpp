#include "appearance/palette.h"

#include <QHash>
#include <QLineEdit>
#include <QMetaProperty>
#include <QSet>
#include <QWidget>

#include "widgets/controlcolor.h"

namespace kovanix {

namespace {

using Controls = QHash<QString, QWidget*>;

/// One walk over the screen: a look-up of each cell's control by name would walk it a few hundred times.
Controls controlsByName(const QWidget& screen) {
    const QList<QWidget*> all = screen.findChildren<QWidget*>();
    Controls controls;
    controls.reserve(all.size());
    for (QWidget* control : all) {
        if (!control->objectName().isEmpty() && !controls.contains(control->objectName()))
            controls.insert(control->objectName(), control);
    }
    return controls;
}

bool isTotal(const PaletteRow& row) {
    return QLatin1StringView(row.controls.front()) == QLatin1StringView("toplam");
}

void paintCell(QWidget& control, ColorProperty property, const PaletteCell& cell) {
    for (std::size_t i = 0; i < cell.count; ++i)
        setColorProperty(control, property, colorOf(cell.values[i]));
}

void paintRows(QWidget& screen, Palette palette, bool total) {
    const Controls controls = controlsByName(screen);
    for (const PaletteRow& row : paletteRows()) {
        if (isTotal(row) != total)
            continue;
        for (const char* name : row.controls) {
            if (QWidget* control = controls.value(QLatin1StringView(name)))
                paintCell(*control, row.property, row.cell(palette));
        }
    }
}

QSet<QLatin1StringView> namedControls() {
    QSet<QLatin1StringView> names;
    for (const PaletteRow& row : paletteRows()) {
        for (const char* name : row.controls)
            names.insert(QLatin1StringView(name));
    }
    return names;
}

/// The fields that the table doesn't name, by their role.
void paintOtherFields(QWidget& screen, Tone tone) {
    static const QSet<QLatin1StringView> named = namedControls();
    const QList<QLineEdit*> fields = screen.findChildren<QLineEdit*>();
    for (QLineEdit* field : fields) {
        const QByteArray name = field->objectName().toLatin1();
        if (named.contains(QLatin1StringView(name)))
            continue;
        // All at once, and only where they differ: a field works its looks out anew at every change.
        QPalette colors = field->palette();
        const QColor ground = roleColor(field->isReadOnly() ? ColorRole::quietField : ColorRole::field, tone);
        QColor hint = roleColor(ColorRole::ink, tone);
        if (colors.color(QPalette::Active, QPalette::Base) == ground &&
            colors.color(QPalette::Active, QPalette::Text) == hint)
            continue;
        colors.setColor(QPalette::Base, ground);
        colors.setColor(QPalette::Text, hint);
        hint.setAlphaF(0.5F);
        colors.setColor(QPalette::PlaceholderText, hint);
        field->setPalette(colors);
    }
}

QMetaProperty drawnProperty(const QWidget& control, ColorProperty property) {
    const QMetaObject& kind = *control.metaObject();
    const QMetaProperty found = kind.property(kind.indexOfProperty(propertyName(property)));
    return found.metaType() == QMetaType::fromType<QColor>() ? found : QMetaProperty();
}

}  // namespace

const char* propertyName(ColorProperty property) {
    constexpr std::array names{"backcolor1", "backcolor2",  "backcolorpushed1", "backcolorpushed2",
                               "forecolor",  "bordercolor", "titlecolor1",      "titlecolor2",
                               "BackColor",  "ForeColor"};
    return names[static_cast<std::size_t>(property)];
}

bool setColorProperty(QWidget& control, ColorProperty property, const QColor& color) {
    switch (property) {
        case ColorProperty::BackColor:
            setBackColor(control, color);
            return true;
        case ColorProperty::ForeColor:
            setForeColor(control, color);
            return true;
        default:
            return drawnProperty(control, property).write(&control, color);
    }
}

QColor colorProperty(const QWidget& control, ColorProperty property) {
    switch (property) {
        case ColorProperty::BackColor:
            return backColor(control);
        case ColorProperty::ForeColor:
            return foreColor(control);
        default:
            return drawnProperty(control, property).read(&control).value<QColor>();
    }
}

Tone toneOf(Palette palette) {
    return palette == Palette::resim3 ? Tone::dark : Tone::light;
}

void paintTotal(QWidget& screen, Palette palette) {
    paintRows(screen, palette, true);
}

void paintPalette(QWidget& screen, Palette palette) {
    paintRows(screen, palette, false);
    paintOtherFields(screen, toneOf(palette));
}

ColorValue paletteColor(const QString& control, ColorProperty property, Palette palette) {
    for (const PaletteRow& row : paletteRows()) {
        if (row.property != property)
            continue;
        for (const char* name : row.controls) {
            if (control == QLatin1StringView(name))
                return row.cell(palette).last();
        }
    }
    return 0;
}

}  // namespace kovanix
