#include "appearance/totalcolors.h"

#include "app/ayarmodul.h"
#include "appearance/modTema.h"
#include "runtime/attempt.h"
#include "widgets/colorvalue.h"
#include "widgets/drawnbutton.h"

namespace kovanix {

namespace {

struct Property {
    QColor (DrawnButton::*read)() const;
    void (DrawnButton::*write)(const QColor&);
};

constexpr std::array<Property, totalColors.size()> properties{{
    {&DrawnButton::forecolor, &DrawnButton::setForecolor},
    {&DrawnButton::backcolor1, &DrawnButton::setBackcolor1},
    {&DrawnButton::backcolor2, &DrawnButton::setBackcolor2},
    {&DrawnButton::backcolorpushed1, &DrawnButton::setBackcolorpushed1},
    {&DrawnButton::backcolorpushed2, &DrawnButton::setBackcolorpushed2},
}};

const Property& propertyOf(TotalColor color) {
    return properties[static_cast<size_t>(color)];
}

}  // namespace

QColor totalColor(const DrawnButton& button, TotalColor color) {
    return (button.*propertyOf(color).read)();
}

void setTotalColor(DrawnButton& button, TotalColor color, const QColor& value) {
    (button.*propertyOf(color).write)(value);
}

QString totalKey(TotalSet set, TotalColor color) {
    const int number = static_cast<int>(color) + 1;
    if (set == TotalSet::live)
        return u"toplamtema" + QString::number(number);
    constexpr int ofOneSet = static_cast<int>(totalColors.size());
    return u"toplamtemakyt" + QString::number(set == TotalSet::saved1 ? number : number + ofOneSet);
}

QColor storedTotalColor(TotalSet set, TotalColor color) {
    return colorOf(colorFromText(ayar(totalKey(set, color))));
}

void storeTotalColor(TotalSet set, TotalColor color, const QColor& value) {
    ayarla(totalKey(set, color), colorText(colorValue(value)));
}

void applyTotalColors(DrawnButton& button, TotalSet set) {
    for (const TotalColor color : totalColors)
        attempt([&] { setTotalColor(button, color, storedTotalColor(set, color)); });
}

}  // namespace kovanix
