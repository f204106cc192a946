#include "app/modTurkce.h"
#include "data/baglanmamodulu.h"
#include "desktop/focus.h"
#include "desktop/messagebox.h"
#include "sales/satisekrani.h"
#include "screens/boxes.h"
#include "screens/clicks.h"
#include "values/numbers.h"
#include "widgets/keyfilter.h"

namespace kovanix {

namespace {

constexpr qsizetype longestName = 50;

/// What the field of a name makes of a character: capitals, and no line ends.
int capitalOf(int code) {
    if (code == u'\r')
        return 0;
    const auto character = static_cast<char32_t>(code);
    const QList<uint> capital = buyukharf(QString::fromUcs4(&character, 1)).toUcs4();
    return capital.size() == 1 ? static_cast<int>(capital.front()) : code;
}

/// A name as it is stored: capitals, and no more of them than its column is wide; never half a character.
QString storedName(const QString& typed) {
    QString name = buyukharf(typed).left(longestName);
    if (name.size() == longestName && name.back().isHighSurrogate())
        name.chop(1);
    return name;
}

}  // namespace

void satisekrani::connectUnknownProduct() {
    clicks(this, {{ui.urunbuunamadibeklet, &satisekrani::urunbuunamadibeklet_click},
                  {ui.urunbulunamadikapat, &satisekrani::urunbulunamadikapat_click},
                  {ui.urunbuunamadikaydet, &satisekrani::urunbuunamadikaydet_click}});
    connect(ui.urunsatisi, &QLineEdit::textChanged, this, &satisekrani::urunsatisi_change);
    pressKeys(QStringLiteral("bununamayanurunfiyat"), &satisekrani::bununamayanurunfiyat_click);
    new KeyFilter(*ui.urunbuunamadibeklet, [this](int key) { urunbuunamadibeklet_keydown(key); }, {});
    new KeyFilter(*ui.urunadi, {}, capitalOf);
    new KeyFilter(*ui.urunsatisi, {}, onlyCharacters(u",0123456789"));
}

void satisekrani::showUnknownProduct() {
    ui.bulunulamayaurun->setText(ui.barkod->text());
    ui.barkod->clear();
    ui.adet->clear();
    toplamhesapla();
    showPanel(*ui.urunbulunamadiframesi);
    giveFocus(*ui.urunbuunamadibeklet);
}

void satisekrani::urunbuunamadibeklet_click() {
    mesaj(QStringLiteral("URUN_KAYIT_YOK"), MessageBoxStyle::cancelTryContinue, QString());
}

void satisekrani::urunbuunamadibeklet_keydown(int key) {
    if (key != Qt::Key_Escape)
        return;
    ui.urunadi->clear();
    ui.urunsatisi->clear();
    ui.barkod->clear();
    giveFocus(*ui.barkod);  // the panel stays
}

void satisekrani::urunsatisi_change() {
    if (!isNumeric(ui.urunsatisi->text()))
        ui.urunsatisi->clear();
}

void satisekrani::bununamayanurunfiyat_click(int index) {
    // The clearing key too writes its caption: that is no number, so that the field empties itself.
    ui.urunsatisi->setText(ui.urunsatisi->text() + panelKey(QStringLiteral("bununamayanurunfiyat"), index));
}

void satisekrani::urunbuunamadikaydet_click() {
    if (ui.urunsatisi->text().isEmpty()) {
        mesaj(QStringLiteral("SATIS_FIYATI_GIR"), MessageBoxStyle::ok, QStringLiteral("    "));
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
        ui.urunadi->clear();
        ui.urunsatisi->clear();
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
    urunkayit.open(QStringLiteral(" select * from urunler"), baglanti());
    urunkayit.addNew();
    urunkayit.setField(QStringLiteral("barkod"), ui.bulunulamayaurun->text());
    const QString name = storedName(ui.urunadi->text());
    urunkayit.setField(QStringLiteral("urun"), name);
    ui.urunadi->setText(name);
    const double price = sayicevir(ui.urunsatisi->text());
    urunkayit.setField(QStringLiteral("satis"), price);
    urunkayit.setField(QStringLiteral("alis"), price);  // no margin until someone says what it cost
    urunkayit.setField(QStringLiteral("stok"), QStringLiteral("1"));
    urunkayit.update();
    urunkayit.close();
}

void satisekrani::urunbulunamadikapat_click() {
    ui.urunbulunamadiframesi->hide();
    giveFocus(*ui.barkod);
}

}  // namespace kovanix
