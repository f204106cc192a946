#include "catalogue/urunler.h"

#include <QLabel>

#include "access/passwordgate.h"
#include "app/ayarmodul.h"
#include "app/modTurkce.h"
#include "app/session.h"
#include "appearance/keyboard.h"
#include "data/baglanmamodulu.h"
#include "desktop/focus.h"
#include "desktop/messagebox.h"
#include "runtime/attempt.h"
#include "screens/boxes.h"
#include "screens/capitals.h"
#include "screens/clicks.h"
#include "screens/leavecheck.h"
#include "values/numbers.h"
#include "widgets/controlcolor.h"
#include "widgets/fieldedits.h"
#include "widgets/fieldletters.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

const ListTraits& listTraits() {
    static const ListTraits products{
        .source = u"urunler"_s,
        .columns = {{u"NO"_s, u"no"_s, {}, 114},
                    {u"BARKOD"_s, u"barkod"_s, {}, 158},
                    {u"~R~N ADI"_s, u"urun"_s, {}, 292},
                    {u"ALI@ F!YAT"_s, u"alis"_s, {}, 140},
                    {u"SATI@ F!YATI"_s, u"satis"_s, {}, 150},
                    {u"STOK"_s, u"stok"_s, {}, 50}},
        .selection = onClick | onDoubleClick | onMove | onRelease,
        .filter = {.numericFields = {u"alis"_s, u"satis"_s, u"stok"_s}, .blankedField = {}},
        .scanField = u"barkod"_s,
        .nameField = u"urun"_s,
        .unit = u"ürün"_s,
        .icon = u":/icons/products.svg"_s,
        .noneYet = u"Henüz ürün yok"_s,
        .noneYetHint = u"EKLE’ye dokunun"_s,
    };
    return products;
}

const RecordTraits& recordTraits() {
    static const RecordTraits product{
        .newRecord = u"Yeni ürün"_s,
        .nothingToEdit = u"MSG_URUN_SECIN"_s,
        .emptyList = u"MSG_URUN_LISTE_BOS"_s,
        .nothingToDelete = u"MSG_URUN_SIL_SEC"_s,
        .deleteQuestion = u"MSG_URUN_SIL_SOR"_s,
        .deleted = u"MSG_URUN_SILINDI"_s,
        .exportPath = u"C:\\kovanix\\urun raporu.xls"_s,
        .exported = u"MSG_URUN_EXPORT"_s,
    };
    return product;
}

/// Says what is missing in a field and goes back to it.
void refuse(const QString& notice, QWidget& field) {
    uyarimesaj(notice, MessageBoxStyle::ok);
    giveFocus(field);
}

QString selectByBarcode(const QLineEdit& barcode) {
    return u" select * from urunler where barkod='"_s + sqlmetin(barcode.text().trimmed()) + u"' ";
}

}  // namespace

urunler::urunler() : RecordScreen(kovanix::listTraits(), recordTraits()) {
    ui.setupUi(this);
    // Painted beside the other labels, no control.
    auto* nameLabel = new QLabel(u"Ürün adı"_s);
    nameLabel->setProperty("textRole", u"note"_s);
    setForeColor(*nameLabel, roleColor(ColorRole::mutedInk));
    ui.alanLayout->addWidget(nameLabel, 1, 0);
    applyTextRoles(*this);
    setUpList({ui.TDBGrid1, ui.Adodc2, ui.sutun2, ui.boyutlandirma, ui.vkFrame1});
    setUpRecords({ui.kisiekle2, ui.barkod2, ui.eklemedatasi2, ui.kayitgridi2});
    connectControls();
    setCloseButton(*ui.vkCommand4);
}

urunler::~urunler() = default;

void urunler::connectControls() {
    clicks(this, {{ui.kisiekleme2, &urunler::kisiekleme2_click},
                  {ui.duzenle2, &urunler::duzenle2_click},
                  {ui.kisisil2, &urunler::kisisil2_click},
                  {ui.kayit, &urunler::kayit_click},
                  {ui.kaydet2, &urunler::kaydet2_click},
                  {ui.vazgec2, &urunler::vazgec2_click},
                  {ui.excelekaydet, &urunler::excelekaydet_click},
                  {ui.vkCommand4, &urunler::vkCommand4_click}});
    const KeyFilter::KeyPress number = onlyCharacters(u",0123456789");
    ui.kisiekle2->setFields({{ui.barkod2, ui.urun2, onlyCharacters(u"0123456789")},
                             {ui.urun2, ui.alis, capitals()},
                             {ui.alis, ui.fiyat, number},
                             {ui.fiyat, ui.stok, number},
                             {ui.stok, ui.kayit, number}});
    for (QLineEdit* field : {ui.alis, ui.fiyat, ui.stok}) {
        keepGroups(*field);
        keepWhole(*field);
    }
    ui.kisiekle2->setCancelButton(*ui.vazgec2);
    connect(ui.kisiekle2, &EntryFrame::recordChanged, this, [this] { closeKeyboards(*this); });
    new LeaveCheck(*ui.barkod2, [this] { return barkod2_lostfocus(); });
    const std::initializer_list<std::pair<Image*, int>> pads{
        {ui.barkod2k, 1}, {ui.alisk, 2}, {ui.fiyatk, 3}, {ui.stokk, 4}};
    for (const auto& [picture, code] : pads)
        connect(picture, &Image::clicked, this, [this, target = code] { openNumberPad(target, *this); });
    connect(ui.urun2k, &Image::clicked, this, [this] { openKeyboard(3, *this); });
    connect(ui.Check1, &CheckBox::clicked, this,
            [](bool ticked) { ayarla(u"sifresor1"_s, ticked ? u"1"_s : u"0"_s); });
}

void urunler::form_load() {
    ui.Check1->setChecked(sayicevir(ayar(u"sifresor1"_s)) != 0);
    storeWidths();
    attempt([this] { connectData(); });
    showRows();
    if (girissifre.isEmpty()) {
        ui.Check1->setChecked(true);
        ui.Check1->setEnabled(false);
        ui.Check1->setToolTip(metin(u"SIFRESIZ_GIRIS_TOOLTIP"_s));
    }
    ekrandonat(*this);
    ui.TDBGrid1->setFocus();
}

void urunler::kisiekleme2_click() {
    PasswordGate gate(PasswordGate::products(), PasswordGate::add);
    if (gate.asks())
        gate.ask(*this);
    else
        add();
}

void urunler::duzenle2_click() {
    PasswordGate gate(PasswordGate::products(), PasswordGate::edit);
    if (ui.sutun2->text().isEmpty())
        tell(u"MSG_URUN_SECIN"_s);
    else if (gate.asks())
        gate.ask(*this);
    else
        edit();
}

void urunler::kisisil2_click() {
    PasswordGate gate(PasswordGate::products(), PasswordGate::remove);
    if (ui.sutun2->text().isEmpty())
        tell(u"MSG_URUN_SIL_SEC"_s);
    else if (gate.asks())
        gate.ask(*this);
    else
        remove();
}

void urunler::add() {
    enableBarcode(true);
    openToAdd();
}

void urunler::edit() {
    enableBarcode(false);
    if (!takeSelectedRow()) {
        enableBarcode(ui.kisiekle2->adds());
        return;
    }
    ui.barkod2->setText(cell(1));
    ui.urun2->setText(cell(2));
    ui.alis->setText(cell(3));
    ui.fiyat->setText(cell(4));
    ui.stok->setText(cell(5));
    openToEdit(ui.urun2->text(), *ui.fiyat);
}

void urunler::remove() {
    deleteSelected();
}

/// The barcode of a product that is being changed can't be typed, nor its keyboard opened.
void urunler::enableBarcode(bool enabled) {
    ui.barkod2->setEnabled(enabled);
    ui.barkod2k->setEnabled(enabled);
}

/// Refuses a barcode that a product has already. @return whether the field may be left
bool urunler::barkod2_lostfocus() {
    if (ui.barkod2->text().trimmed().isEmpty())
        return true;
    bool known = false;
    attempt([&] {
        if (!baglantihazir())
            return;
        Recordset product;
        product.open(selectByBarcode(*ui.barkod2), baglanti());
        known = product.recordCount() >= 1;
    });
    if (!known)
        return true;
    mesaj(u"URUN_KAYITLI"_s, MessageBoxStyle::information, QString());
    ui.barkod2->setText({});
    giveFocus(*ui.barkod2);
    return false;
}

void urunler::kayit_click() {
    if (!baglantihazir()) {
        tellNoDatabase();
        return;
    }
    kayitkapat();
    if (ui.barkod2->text().isEmpty())
        return refuse(u"MSG_BARKOD_BOS"_s, *ui.barkod2);
    if (ui.urun2->text().isEmpty())
        return refuse(u"MSG_URUN_ADI_BOS"_s, *ui.urun2);
    if (!isNumeric(ui.fiyat->text()))
        return refuse(u"MSG_SATIS_FIYAT_BOS"_s, *ui.fiyat);
    for (QLineEdit* field : {ui.alis, ui.stok}) {
        if (!isNumeric(field->text()))
            field->setText(u"0"_s);
    }
    const bool adds = ui.kisiekle2->adds();
    if (!store([this] { writeProduct(); }))
        return;
    uyarimesaj(adds ? u"MSG_EKLENDI"_s : u"MSG_DUZENLENDI"_s, MessageBoxStyle::ok);
    enableBarcode(true);
    goOnAdding();
}

/// Through the shared recordset: a new product, or the first one of that barcode, whatever row was selected.
/// @throws RuntimeError
void urunler::writeProduct() {
    if (ui.kisiekle2->adds()) {
        kayit().open(u" select * from urunler"_s, baglanti());
        kayit().addNew();
    } else {
        kayit().open(selectByBarcode(*ui.barkod2), baglanti());
    }
    kayit().setField(u"barkod"_s, cutToField(ui.barkod2->text()));
    kayit().setField(u"urun"_s, cutToField(ui.urun2->text()));
    kayit().setField(u"satis"_s, sayicevir(ui.fiyat->text()));
    kayit().setField(u"alis"_s, sayicevir(ui.alis->text()));
    kayit().setField(u"stok"_s, sayicevir(ui.stok->text()));
    kayit().update();
    kayit().close();
}

void urunler::kaydet2_click() {
    if (ui.barkod2->text().isEmpty())
        return refuse(u"MSG_BARKOD_BOS"_s, *ui.barkod2);
    if (ui.urun2->text().isEmpty())
        return refuse(u"MSG_URUN_ADI_BOS"_s, *ui.urun2);
    if (ui.fiyat->text().isEmpty())
        return refuse(u"MSG_SATIS_FIYAT_BOS"_s, *ui.fiyat);
    kayit_click();
    vazgec2_click();  // even where the product was refused, as required
}

/// Leaves purchase price and stock as they are, as required.
void urunler::vazgec2_click() {
    for (QLineEdit* field : {ui.barkod2, ui.urun2, ui.fiyat})
        field->setText({});
    closeFrame();
}

void urunler::excelekaydet_click() {
    exportList();
}

void urunler::vkCommand4_click() {
    leave();
}

void urunler::hazirbarkodbak() {
    attempt([this] {
        ui.eklemedatasi2->setConnectionString(baglantiyazisi());
        ui.eklemedatasi2->setCommandType(Adodc::CommandType::table);
        ui.eklemedatasi2->setRecordSource(u"urunler_hazir"_s);
        ui.eklemedatasi2->refresh();
        const RowSet& ready = ui.eklemedatasi2->recordset();
        const QString barcode = ui.barkod2->text();
        const QString sought = u"barkod like '"_s + sqllike(barcode) + u'\'';
        const qsizetype row = ready.find(RowFilter::parse(sought));
        if (row < 0 || ready.text(row, ready.fieldIndex(u"barkod")) != barcode)
            return;
        const QString name = ready.text(row, ready.fieldIndex(u"urun"));
        mesaj(u"URUN_TANINDI"_s, MessageBoxStyle::information, QString());
        ui.urun2->setText(name);
        ui.eklemedatasi2->refresh();
        giveFocus(*ui.fiyat);
    });
}

}  // namespace kovanix
