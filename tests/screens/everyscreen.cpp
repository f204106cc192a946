#include "everyscreen.h"

#include "access/firstscreen.h"
#include "access/frmLogin.h"
#include "access/kullanicilar.h"
#include "access/sifresorur.h"
#include "app/session.h"
#include "appearance/ekoz.h"
#include "appearance/hallimzda.h"
#include "appearance/keyboardscreen.h"
#include "appearance/mdlMonitors.h"
#include "appearance/menu.h"
#include "appearance/saatt.h"
#include "appearance/tema.h"
#include "appearance/toplamtema.h"
#include "appearance/uyari.h"
#include "catalogue/liste.h"
#include "catalogue/urunbul.h"
#include "catalogue/urunler.h"
#include "desktop/focus.h"
#include "reports/raporlarmenu.h"
#include "reports/satisraporlar.h"
#include "reports/stokraporu.h"
#include "reports/zparogu.h"
#include "runtests.h"
#include "runtime/screenregistry.h"
#include "sales/satisekrani.h"
#include "screens/printpreview.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

template <class S>
Screen& inFront() {
    showInFront(screen<S>());
    return screen<S>();
}

Screen& sales() {
    return inFront<satisekrani>();
}

Screen& login() {
    unload<satisekrani>();
    showFirstScreen();
    return screen<frmLogin>();
}

/// With the product's text printed on the form.
Screen& about() {
    inFront<hallimzda>();
    QTest::mouseClick(screen<hallimzda>().ui.Image1, Qt::LeftButton);
    return screen<hallimzda>();
}

Screen& notice() {
    screen<uyari>().ui.yazi->setText("Yükleniyor...");
    return inFront<uyari>();
}

/// With the frame open in which a customer is entered.
Screen& newCustomer() {
    inFront<liste>();
    screen<liste>().ui.kisiekleme2->click();
    return screen<liste>();
}

template <class S>
Screen& keyboard() {
    monitorlerioku();
    screen<S>().open(8, sales());
    return screen<S>();
}

Screen& addingProduct() {
    inFront<urunler>();
    screen<urunler>().add();
    return screen<urunler>();
}

Screen& editingProduct() {
    inFront<urunler>();
    screen<urunler>().ui.sutun2->setText("1");
    screen<urunler>().edit();
    return screen<urunler>();
}

/// With a manager logged in by a password, so that nothing on it is disabled.
Screen& users() {
    girissifre = "gizli";
    return inFront<kullanicilar>();
}

Screen& usersFields() {
    users();
    screen<kullanicilar>().add();
    return screen<kullanicilar>();
}

/// Of the one page of a short list, opened from the sales screen.
Screen& preview() {
    urunler& list = screen<urunler>();
    list.ui.TDBGrid1->printInfo().previewCaption = "Rapor";
    printPreview(*list.ui.TDBGrid1, sales());
    unload<urunler>();
    return screen<PrintPreview>();
}

template <class S>
ScreenRow row(const char* name, const QString& title, QSize design, Leaving escape, Leaving x,
              const QString& tabOrder, const QString& fields = {}, const QStringList& symbols = {},
              Screen& (*open)() = inFront<S>) {
    return {name, open, loaded<S>, title, design, escape, x, tabOrder, fields, symbols};
}

}  // namespace

QList<ScreenRow> screens() {
    using enum Leaving;
    return {
        row<frmLogin>("frmLogin", "Kovanix", {}, stays, closes,
                      "sifre vkCommand1 cmdOK cmdCancel destekprograminiac yazilimguncelle kullanici",
                      "sifre", {}, login),
        row<satisekrani>("satisekrani", "Kovanix Satis", {}, stays, asks,
                         "barkod adet satisekrani1 ver2 vsil vkCommand5 ver3 resim2 resim3 resim4 resim1 "
                         "Resim5 Resim6 Image1 Image2 Image3 kaydet nakit satisiptal fiyatgor vkCommand2 "
                         "vkCommand3 urunbulmak "
                         "vkCommand6 vkCommand1 vkCommand4 kapat",
                         "barkod adet ver2", {"^r^n listesi"}, sales),
        row<menu>("menu", "MENU", {520, 480}, closes, closes,
                  "kapat vkCommand1 vkCommand3 vkCommand4 vkCommand5 vkCommand2 vkCommand10"),
        row<tema>("tema", "TEMA", {880, 668}, goesBack, closes,
                  "vkCommand1 resim1 resim2 resim3 resim4 temaac vkCommand2"),
        row<toplamtema>(
            "toplamtema", "TOPLAM RENGI", {880, 668}, goesBack, closes,
            "vkCommand5 vkCommand1 vkCommand2 vkCommand3 vkCommand4 Command1 Command2 Frame2 Command3 Frame3 "
            "Command4 Command5 vkCommand7 vkCommand6 vkCommand8 vkCommand9 temakaydetme"),
        row<ekoz>("ekoz", "Ek *zellikler", {360, 260}, closes, closes, "vkCommand3 vkCommand1", {},
                  {"Ek *zellikler"}),
        row<hallimzda>("hallimzda", "Kovanix", {520, 464}, closes, closes,
                       "urunbulunamadikapat Image1 vkCommand1", {}, {}, about),
        row<uyari>("uyari", "UYARI", {440, 264}, closes, closes, "Command1", {}, {}, notice),
        row<urunbul>("urunbul", "URUN ARA", {}, closes, closes,
                     "TDBGrid1 TDBGrid1_filter_0 TDBGrid1_filter_1 TDBGrid1_filter_2 TDBGrid1_filter_3 "
                     "vkCommand4",
                     "TDBGrid1_filter_0 TDBGrid1_filter_1 TDBGrid1_filter_2 TDBGrid1_filter_3"),
        row<liste>("liste", "MUSTERI LISTESI", {}, closes, closes,
                   "TDBGrid1 TDBGrid1_filter_0 TDBGrid1_filter_1 TDBGrid1_filter_2 TDBGrid1_filter_3 "
                   "kisiekleme2 duzenle2 kisisil2 excelekaydet vkCommand1 vkCommand2",
                   "TDBGrid1_filter_0 TDBGrid1_filter_1 TDBGrid1_filter_2 TDBGrid1_filter_3"),
        row<liste>("liste with its frame", "MUSTERI LISTESI", {}, stays, closes,
                   "txtMusteri telefon adres kaydet2 vazgec2 kisiekleme2 duzenle2 kisisil2 excelekaydet "
                   "vkCommand1 vkCommand2 TDBGrid1 TDBGrid1_filter_0 TDBGrid1_filter_1 TDBGrid1_filter_2 "
                   "TDBGrid1_filter_3",
                   "TDBGrid1_filter_0 TDBGrid1_filter_1 TDBGrid1_filter_2 TDBGrid1_filter_3 txtMusteri "
                   "telefon adres",
                   {}, newCustomer),
        row<urunler>("urunler", "URUN LISTESI", {}, closes, closes,
                     "TDBGrid1 TDBGrid1_filter_0 TDBGrid1_filter_1 TDBGrid1_filter_2 TDBGrid1_filter_3 "
                     "TDBGrid1_filter_4 TDBGrid1_filter_5 kisiekleme2 duzenle2 kisisil2 excelekaydet "
                     "vkCommand4",
                     "TDBGrid1_filter_0 TDBGrid1_filter_1 TDBGrid1_filter_2 TDBGrid1_filter_3 "
                     "TDBGrid1_filter_4 TDBGrid1_filter_5"),
        row<urunler>("urunler adding", "URUN LISTESI", {}, stays, closes,
                     "barkod2 urun2 alis fiyat stok kayit kaydet2 vazgec2 kisiekleme2 duzenle2 kisisil2 "
                     "excelekaydet vkCommand4 TDBGrid1 TDBGrid1_filter_0 TDBGrid1_filter_1 "
                     "TDBGrid1_filter_2 TDBGrid1_filter_3 TDBGrid1_filter_4 TDBGrid1_filter_5",
                     "TDBGrid1_filter_0 TDBGrid1_filter_1 TDBGrid1_filter_2 TDBGrid1_filter_3 "
                     "TDBGrid1_filter_4 TDBGrid1_filter_5 barkod2 urun2 alis fiyat stok",
                     {}, addingProduct),
        row<urunler>("urunler editing", "URUN LISTESI", {}, stays, closes,
                     "fiyat stok kayit kaydet2 vazgec2 kisiekleme2 duzenle2 kisisil2 excelekaydet "
                     "vkCommand4 TDBGrid1 TDBGrid1_filter_0 TDBGrid1_filter_1 TDBGrid1_filter_2 "
                     "TDBGrid1_filter_3 TDBGrid1_filter_4 TDBGrid1_filter_5 urun2 alis",
                     "TDBGrid1_filter_0 TDBGrid1_filter_1 TDBGrid1_filter_2 TDBGrid1_filter_3 "
                     "TDBGrid1_filter_4 TDBGrid1_filter_5 urun2 alis fiyat stok",
                     {"D!ZENLE"}, editingProduct),
        row<kullanicilar>("kullanicilar", "KULLANICILAR", {}, closes, closes,
                          "TDBGrid1 kisiekleme3 duzenle3 kisisil3 Check1 kapat", {}, {}, users),
        row<kullanicilar>("kullanicilar with the fields open", "KULLANICILAR", {}, stays, closes,
                          "personeladi sifre sifre1 acilisi kaydet vazgec kisiekleme3 duzenle3 kisisil3 "
                          "Check1 kapat TDBGrid1",
                          "personeladi sifre sifre1", {}, usersFields),
        row<sifresorur>("sifresorur", "SIFRE", {520, 280}, closes, closes,
                        "Text1 vkCommand1 Command1 sifrekapat", "Text1"),
        row<klavyeyeni>("klavyeyeni", "KLAVYE", {}, closes, closes, "yazilan vkCommand1_100 kapat", "yazilan",
                        {}, keyboard<klavyeyeni>),
        row<klavyeyeni2>("klavyeyeni2", "KLAVYE", {}, closes, closes, "yazilan vkCommand1_100 kapat",
                         "yazilan", {}, keyboard<klavyeyeni2>),
        row<klavyesayi>("klavyesayi", "SAYILAR", {}, closes, closes, "yazilan vkCommand1_39 kapat", "yazilan",
                        {}, keyboard<klavyesayi>),
        row<PrintPreview>("PrintPreview", "Rapor", {}, closes, closes, "kapat sayfalar yazdir", {}, {},
                          preview),
        row<raporlarmenu>("raporlarmenu", "RAPORLAR", {520, 404}, closes, closes,
                          "vkCommand3 fiyatgor vkCommand1 vkCommand2"),
        row<stokraporu>("stokraporu", "STOK RAPORU", {720, 462}, closes, closes, "vkCommand3"),
        row<zparogu>("zparogu", "Z RAPORU", {720, 552}, closes, closes,
                     "cmdClose Image2 tarih1 saat1 Tarih2 saat2 Image1 Command3 Command1", "   "),
        row<satisraporlar>(
            "satisraporlar", "SATIS RAPORLARI", {}, closes, closes,
            "TDBGrid1 TDBGrid1_filter_0 TDBGrid1_filter_1 TDBGrid1_filter_2 TDBGrid1_filter_3 "
            "TDBGrid1_filter_4 TDBGrid1_filter_5 TDBGrid1_filter_6 TDBGrid1_filter_7 urunsil tarihlerarasi "
            "excelekaydet vkCommand1 htmlkaydet yazdir vkCommand4 ilktarih1 saat1 Button_XP12 saat "
            "Button_XP15 Text2 "
            "Text3 ilktarih2 saat2 Button_XP14 Text6 vkToggleButton1 Text5 Text4 bugunkusatis dunkusatis "
            "haftaliksatis "
            "ayliksatis",
            " saat1 saat Text2 Text3  saat2 Text6 Text5 Text4 TDBGrid1_filter_0 TDBGrid1_filter_1 "
            "TDBGrid1_filter_2 TDBGrid1_filter_3 TDBGrid1_filter_4 TDBGrid1_filter_5 TDBGrid1_filter_6 "
            "TDBGrid1_filter_7"),
        row<saatt>("saatt", "Saat", {280, 280}, stays, closes, {}),
    };
}

}  // namespace kovanix
