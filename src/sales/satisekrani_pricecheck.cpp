#include "app/modTurkce.h"
#include "data/baglanmamodulu.h"
#include "desktop/focus.h"
#include "desktop/messagebox.h"
#include "runtime/attempt.h"
#include "sales/satisekrani.h"
#include "screens/boxes.h"
#include "screens/clicks.h"
#include "values/numbers.h"
#include "widgets/keyfilter.h"

namespace kovanix {

using namespace Qt::StringLiterals;

void satisekrani::connectPriceCheck() {
    clicks(this, {{ui.fiyatgor, &satisekrani::fiyatgor_click},
                  {ui.fiyargorkapat, &satisekrani::fiyargorkapat_click}});
    new KeyFilter(
        *ui.fiyargorbarkodu, [this](int key) { fiyargorbarkodu_keydown(key); },
        onlyCharacters(u"0123456789"));
}

void satisekrani::fiyatgor_click() {
    eksiltme = 0;
    showPanel(*ui.fiyatgorframe);
    giveFocus(*ui.fiyargorbarkodu);
}

void satisekrani::fiyargorbarkodu_keydown(int key) {
    if (key == Qt::Key_Escape)
        ui.fiyargorkapat->click();
    if (key != Qt::Key_Return)
        return;
    if (ui.fiyargorbarkodu->text().isEmpty()) {
        mesaj(u"ONCE_BARKOD_OKUT"_s, MessageBoxStyle::ok, QString());
        return;
    }
    if (!baglantihazir()) {
        tellNoDatabase();
        return;
    }
    clearPriceCheck();
    try {
        showPriceOf(ui.fiyargorbarkodu->text().trimmed());
    } catch (const RuntimeError& error) {
        endLookUp(error);
    }
    ui.fiyargorbarkodu->setText({});
    giveFocus(*ui.fiyargorbarkodu);
}

/// Looks a barcode up as it stands: a scale's label isn't split here. @throws RuntimeError
void satisekrani::showPriceOf(const QString& barcode) {
    urunkayitkapat();
    urunkayit.open(u"select * FROM urunler where barkod='" + sqlmetin(barcode) + u'\'', baglanti());
    // A file that can't be read fails here: that is no missing product.
    const bool isThere = !urunkayit.atEnd();
    if (isThere)
        attempt([this] { ui.fiyargorbarkodu2->setText(nullmetin(urunkayit.field(u"barkod"_s))); });
    if (ui.fiyargorbarkodu2->text().isEmpty()) {
        clearPriceCheck();
        urunkayit.close();
        mesaj(u"URUN_BULUNAMADI"_s, MessageBoxStyle::ok, QString());
        return;
    }
    ui.fiyargoradi->setText(nullmetin(urunkayit.field(u"urun"_s)));
    ui.fiyargoradi->setCursorPosition(0);  // of a name too long for the field the beginning is seen
    ui.fiyargorfiyati->setText(format(sayicevir(urunkayit.field(u"satis"_s)), u"#,##0.00"));
    urunkayit.close();
}

void satisekrani::clearPriceCheck() {
    for (QLineEdit* result : {ui.fiyargorbarkodu2, ui.fiyargoradi, ui.fiyargorfiyati})
        result->setText({});
}

void satisekrani::fiyargorkapat_click() {
    ui.fiyargorbarkodu->setText({});
    clearPriceCheck();
    ui.fiyatgorframe->hide();
    giveFocus(*ui.barkod);
}

}  // namespace kovanix
