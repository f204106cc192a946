#include "app/modTurkce.h"
#include "data/baglanmamodulu.h"
#include "desktop/focus.h"
#include "desktop/messagebox.h"
#include "sales/satisekrani.h"
#include "screens/boxes.h"
#include "screens/capitals.h"
#include "screens/clicks.h"
#include "values/numbers.h"
#include "widgets/fieldedits.h"
#include "widgets/keyfilter.h"

namespace kovanix {

using namespace Qt::StringLiterals;

void satisekrani::connectUnknownProduct() {
    clicks(this, {{ui.urunbuunamadibeklet, &satisekrani::urunbuunamadibeklet_click},
                  {ui.urunbulunamadikapat, &satisekrani::urunbulunamadikapat_click},
                  {ui.urunbuunamadikaydet, &satisekrani::urunbuunamadikaydet_click}});
    connect(ui.urunsatisi, &QLineEdit::textChanged, this, &satisekrani::urunsatisi_change);
    pressKeys(u"bununamayanurunfiyat"_s, &satisekrani::bununamayanurunfiyat_click);
    new KeyFilter(*ui.urunbuunamadibeklet, [this](int key) { urunbuunamadibeklet_keydown(key); }, {});
    new KeyFilter(*ui.urunadi, {}, capitals());
    new KeyFilter(*ui.urunsatisi, {}, onlyCharacters(u",0123456789"));
}

void satisekrani::showUnknownProduct() {
    ui.bulunulamayaurun->setText(ui.barkod->text());
    ui.barkod->setText({});
    ui.adet->setText({});
    toplamhesapla();
    showPanel(*ui.urunbulunamadiframesi);
    giveFocus(*ui.urunbuunamadibeklet);
}

void satisekrani::urunbuunamadibeklet_click() {
    mesaj(u"URUN_KAYIT_YOK"_s, MessageBoxStyle::cancelTryContinue, QString());
}

void satisekrani::urunbuunamadibeklet_keydown(int key) {
    if (key != Qt::Key_Escape)
        return;
    ui.urunadi->setText({});
    ui.urunsatisi->setText({});
    ui.barkod->setText({});
    giveFocus(*ui.barkod);  // the panel stays
}

void satisekrani::urunsatisi_change() {
    if (!isNumeric(ui.urunsatisi->text()))
        ui.urunsatisi->setText({});
}

void satisekrani::bununamayanurunfiyat_click(int index) {
    // The clearing key too writes its caption: that is no number, so that the field empties itself.
    ui.urunsatisi->setText(withKey(ui.urunsatisi->text(), panelKey(u"bununamayanurunfiyat"_s, index)));
}

void satisekrani::urunbuunamadikaydet_click() {
    if (ui.urunsatisi->text().isEmpty()) {
        mesaj(u"SATIS_FIYATI_GIR"_s, MessageBoxStyle::ok, u"    "_s);
        giveFocus(*ui.urunsatisi);
        return;
    }
    if (!baglantihazir()) {
        tellNoDatabase();
        return;
    }
    try {
        createProduct();
        ui.barkod->setText(ui.bulunulamayaurun->text());
        ui.urunadi->setText({});
        ui.urunsatisi->setText({});
        ui.urunbulunamadiframesi->hide();
        giveFocus(*ui.barkod);
        urunekle();
    } catch (const RuntimeError& error) {
        endLookUp(error);
    }
}

/// Adds what the panel holds to the products. @throws RuntimeError
void satisekrani::createProduct() {
    urunkayitkapat();
    kayitkapat();
    storeTogether([this] {
        urunkayit.open(u" select * from urunler"_s, baglanti());
        urunkayit.addNew();
        urunkayit.setField(u"barkod"_s, ui.bulunulamayaurun->text());
        const QString name = cutToField(buyukharf(ui.urunadi->text()));
        urunkayit.setField(u"urun"_s, name);
        ui.urunadi->setText(name);
        const double price = sayicevir(ui.urunsatisi->text());
        urunkayit.setField(u"satis"_s, price);
        urunkayit.setField(u"alis"_s, price);  // no margin until someone says what it cost
        urunkayit.setField(u"stok"_s, u"1"_s);
        urunkayit.update();
        urunkayit.close();
    });
}

void satisekrani::urunbulunamadikapat_click() {
    ui.urunbulunamadiframesi->hide();
    giveFocus(*ui.barkod);
}

}  // namespace kovanix
