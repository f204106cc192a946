#include <QScopedValueRollback>

#include "appearance/modTema.h"
#include "appearance/palette.h"
#include "data/baglanmamodulu.h"
#include "desktop/focus.h"
#include "sales/satisekrani.h"
#include "values/numbers.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr QStringView money = u"###,###,##0.00";

struct Face {
    QRgb backcolor1;
    QRgb backcolor2;
    QRgb backcolorpushed1;
    QRgb backcolorpushed2;
};

constexpr Face addingFace{0xFFF0F0F0, 0xFFFFFF00, 0xFFF0F0F0, 0xFFC0C000};
constexpr Face subtractingFace{0xFFC0C000, 0xFFC0C000, 0xFFC0C000, 0xFFC0C000};

void setFace(DrawnButton& button, const Face& face) {
    button.setBackcolor1(QColor(face.backcolor1));
    button.setBackcolor2(QColor(face.backcolor2));
    button.setBackcolorpushed1(QColor(face.backcolorpushed1));
    button.setBackcolorpushed2(QColor(face.backcolorpushed2));
}

double amount(const DrawnButton& display) {
    return sayicevir(display.caption());
}

/// Writes a display's own amount anew in a pattern.
void reformat(DrawnButton& display, QStringView pattern) {
    display.setCaption(format(amount(display), pattern));
}

}  // namespace

void satisekrani::paraekle(double value) {
    if (eksiltme == 0) {
        ui.verilen->setCaption(format(amount(*ui.verilen) + value, money));
        ui.ver2->setText(ui.verilen->caption());
        ui.kalan->setCaption(format(amount(*ui.verilen) - amount(*ui.toplam), money));
    } else {
        ui.verilen->setCaption(format(amount(*ui.verilen) - value, money));
        paraeksiltbitir();
    }
    reformat(*ui.verilen, money);
    reformat(*ui.kalan, money);
    ui.ver2->setText(ui.verilen->caption());
    paradenetle();
    giveFocus(*ui.barkod);
}

void satisekrani::paraeksiltbitir() {
    ui.ver2->setText(ui.verilen->caption());
    ui.kalan->setCaption(numberText(amount(*ui.verilen) - amount(*ui.toplam)));
    eksiltme = 0;
    setFace(*ui.vkCommand5, addingFace);
    ui.Shape1->hide();
}

void satisekrani::paradenetle() {
    if (amount(*ui.verilen) < 0) {
        // The change keeps what it showed: the cash typed doesn't work it out anew here.
        setCashQuietly(u"0,00"_s);
        ui.verilen->setCaption(u"0,00"_s);
    }
    // The first palette stands in the file as 0, so that its button keeps the colours that subtracting left
    // it.
    const int number = temasayisi(u"tema"_s);
    if (number < 1 || number > 4)
        return;
    for (const ColorProperty property : {ColorProperty::backcolor1, ColorProperty::backcolor2,
                                         ColorProperty::backcolorpushed1, ColorProperty::backcolorpushed2})
        setColorProperty(*ui.vkCommand5, property,
                         colorOf(paletteColor(u"vkCommand5"_s, property, Palette(number - 1))));
}

void satisekrani::vkCommand5_click() {
    ui.Shape1->show();
    ui.Shape1->raise();
    eksiltme = 1;
    setFace(*ui.vkCommand5, subtractingFace);
    giveFocus(*ui.barkod);
}

void satisekrani::ver3_click() {
    giveFocus(*ui.barkod);
    if (!isNumeric(ui.adet->text()))
        return;
    const QString typed = ui.adet->text();
    ui.ver2->setText(typed);
    ui.verilen->setCaption(typed);
    giveFocus(*ui.barkod);
    reformat(*ui.verilen, money);
    if (eksiltme == 0) {
        ui.ver2->setText(ui.verilen->caption());
        ui.kalan->setCaption(format(amount(*ui.verilen) - amount(*ui.toplam), money));
    } else {
        paraeksiltbitir();
    }
    reformat(*ui.verilen, money);
    ui.ver2->setText(format(sayicevir(ui.ver2->text()), money));
    reformat(*ui.kalan, money);
    ui.adet->setText({});
    giveFocus(*ui.barkod);
}

/// Sets the typed cash without working anything out from it.
void satisekrani::setCashQuietly(const QString& text) {
    const QScopedValueRollback quiet(m_quietCash, true);
    ui.ver2->setText(text);
}

void satisekrani::ver2_change() {
    if (m_quietCash)
        return;
    if (ui.ver2->text().isEmpty()) {
        ui.ver2->setText(u"0,00"_s);
        ui.ver2->selectAll();
    }
    if (isNumeric(ui.ver2->text())) {
        const double typed = sayicevir(ui.ver2->text());
        ui.kalan->setCaption(numberText(typed - amount(*ui.toplam)));
        ui.verilen->setCaption(numberText(typed));
    }
    // Never so, as long as an empty field refills itself above.
    if (ui.ver2->text().isEmpty()) {
        ui.kalan->setCaption(numberText(amount(*ui.toplam)));
        ui.verilen->setCaption(u"0"_s);
    }
}

void satisekrani::vsil_click() {
    constexpr QStringView pattern = u"###,###,###0.00";
    ui.ver2->setText(u"0,00"_s);
    ui.verilen->setCaption(u"0,00"_s);
    ui.kalan->setCaption(u"0,00"_s);
    ui.kalan->setCaption(numberText(amount(*ui.verilen) - amount(*ui.toplam)));
    reformat(*ui.verilen, pattern);
    reformat(*ui.kalan, pattern);
    giveFocus(*ui.barkod);
}

void satisekrani::verilen_click() {
    ui.ver2->setText(ui.verilen->caption());
    giveFocus(*ui.barkod);
}

}  // namespace kovanix
