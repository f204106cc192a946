#include "appearance/tema.h"

#include <QApplication>
#include <QScopeGuard>

#include "app/ayarmodul.h"
#include "app/modTurkce.h"
#include "appearance/menu.h"
#include "appearance/modTema.h"
#include "appearance/toplamtema.h"
#include "desktop/focus.h"
#include "desktop/messagebox.h"
#include "sales/satisekrani.h"
#include "screens/clicks.h"
#include "values/numbers.h"
#include "widgets/look.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

const QString askKey = u"temaac"_s;
const QString paletteKey = u"tema"_s;

std::function<void()>& beepInstead() {
    static std::function<void()> replacement;
    return replacement;
}

void beep() {
    if (temasessiz)
        return;
    if (beepInstead())
        beepInstead()();
    else
        QApplication::beep();
}

void store(const QString& number) {
    if (!temasessiz)
        ayarla(paletteKey, number);
}

/// What a number on file selects; resim1 is what everything else selects.
Palette paletteOf(int number) {
    switch (number) {
        case 2:
            return Palette::resim2;
        case 3:
            return Palette::resim3;
        case 4:
            return Palette::resim4;
        default:
            return Palette::resim1;
    }
}

}  // namespace

void setThemeBeep(std::function<void()> replacement) {
    beepInstead() = std::move(replacement);
}

tema::tema() {
    ui.setupUi(this);
    applyTextRoles(*this);
    struct Picture {
        Miniature* picture;
        Timer& timer;
        void (tema::*procedure)();
        Palette palette;
    };
    const std::array pictures{Picture{ui.resim1, resim1bas, &tema::resim1_click, Palette::resim1},
                              Picture{ui.resim2, resim2bas, &tema::resim2_click, Palette::resim2},
                              Picture{ui.resim3, resim3bas, &tema::resim3_click, Palette::resim3},
                              Picture{ui.resim4, resim4bas, &tema::resim4_click, Palette::resim4}};
    for (const Picture& each : pictures) {
        each.picture->setLook(each.palette);
        connect(each.picture, &Miniature::clicked, this, each.procedure);
        connect(&each.timer, &Timer::tick, this, [this, &timer = each.timer, procedure = each.procedure] {
            (this->*procedure)();
            timer.setInterval(0);
        });
    }
    clicks(this, {{ui.temaac, &tema::temaac_click},
                  {ui.vkCommand1, &tema::vkCommand1_click},
                  {ui.vkCommand2, &tema::vkCommand2_click}});
    standInFrame(*ui.vkFrame1);
    setCloseButton(*ui.vkCommand1);
    restOnCloseButton();
}

tema::~tema() = default;

void tema::form_load() {
    ekrandonat(*this);
    ui.temaac->setChecked(numericPrefix(ayar(askKey)) == 1.0);
    markPalette(paletteOf(temasayisi(paletteKey)));
}

void tema::TemaKayitliUygula() {
    const Palette palette = paletteOf(temasayisi(paletteKey));
    const bool asks = ui.temaac->isChecked();
    temasessiz = true;
    ui.temaac->setChecked(false);
    const auto restore = qScopeGuard([this, asks] {
        ui.temaac->setChecked(asks);
        temasessiz = false;
    });
    switch (palette) {
        case Palette::resim1:
            resim1_click();
            break;
        case Palette::resim2:
            resim2_click();
            break;
        case Palette::resim3:
            resim3_click();
            break;
        case Palette::resim4:
            resim4_click();
            break;
    }
}

// The first picture never asks, and stores its 0 when all is painted. Both are required.
void tema::resim1_click() {
    beep();
    paintSales(Palette::resim1);
    store(u"0"_s);
}

void tema::resim2_click() {
    chooseAskingFirst(Palette::resim2);
}

void tema::resim3_click() {
    chooseAskingFirst(Palette::resim3);
}

void tema::resim4_click() {
    chooseAskingFirst(Palette::resim4);
}

void tema::chooseAskingFirst(Palette palette) {
    beep();
    if (ui.temaac->isChecked() && !temasessiz &&
        mesajsor(u"MSG_TEMA_ONAY"_s, MessageBoxStyle::yesNo | MessageBoxStyle::warning,
                 u"MSG_SILME_ONAY_BASLIK"_s) == MessageBoxAnswer::no)
        return;
    store(QString::number(static_cast<int>(palette) + 1));
    paintSales(palette);
}

void tema::paintSales(Palette palette) {
    sonrenk = temasayisi(u"sonrenk"_s);
    toplamtemadegisken = temasayisi(u"toplamtemadegisken"_s);
    auto& sales = screen<satisekrani>();
    if (toplamtemadegisken == 0)
        paintTotal(sales, palette);
    paintPalette(sales, palette);
    markPalette(palette);
}

void tema::markPalette(Palette palette) {
    for (Miniature* picture : {ui.resim1, ui.resim2, ui.resim3, ui.resim4})
        picture->setChosen(picture->look() == palette);
}

void tema::temaac_click() {
    ayarla(askKey, ui.temaac->isChecked() ? u"1"_s : u"0"_s);
}

void tema::vkCommand1_click() {
    showInFront(screen<menu>());
    unload<tema>();
}

void tema::vkCommand2_click() {
    showInFront(screen<toplamtema>());
}

}  // namespace kovanix
