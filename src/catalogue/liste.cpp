#include "catalogue/liste.h"

#include "app/modTurkce.h"
#include "data/baglanmamodulu.h"
#include "desktop/focus.h"
#include "desktop/messagebox.h"
#include "runtime/attempt.h"
#include "screens/boxes.h"
#include "screens/capitals.h"
#include "screens/clicks.h"
#include "widgets/look.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

const ListTraits& traits() {
    static const ListTraits customers{
        .source = u"musteri"_s,
        .columns = {{u"NO"_s, u"no"_s, {}, 96},
                    {u"M^#TER! ADI"_s, u"adi"_s, {}, 250},
                    {u"TELEFON"_s, u"telefon"_s, {}, 208},
                    {u"ADRES"_s, u"adres"_s, u"#,##0.00"_s, 250}},  // a text, which no format changes
        .selection = onClick | onDoubleClick | onPress | onMove | onRelease,
        .filter = {},
        .scanField = u"telefon"_s,
        .nameField = u"adi"_s,
        .unit = u"kayıt"_s,
        .icon = u":/icons/book.svg"_s,
        .noneYet = u"Henüz kayıt yok"_s,
        .noneYetHint = u"EKLE’ye dokunun"_s,
    };
    return customers;
}

const RecordTraits& records() {
    static const RecordTraits customers{
        .newRecord = u"Yeni kayıt"_s,
        .nothingToEdit = u"MSG_MUSTERI_SEC"_s,
        .emptyList = u"MSG_MUSTERI_YOK"_s,
        .nothingToDelete = u"MSG_ADRES_SIL_SEC"_s,
        .deleteQuestion = u"MSG_ADRES_SIL_SOR"_s,
        .deleted = u"MSG_ADRES_SILINDI"_s,
        .exportPath = u"C:\\kovanix\\adres raporu.xls"_s,
        .exported = u"MSG_ADRES_EXPORT"_s,
    };
    return customers;
}

}  // namespace

liste::liste() : RecordScreen(traits(), records()) {
    ui.setupUi(this);
    applyTextRoles(*this);
    setUpList({ui.TDBGrid1, ui.Adodc2, ui.sutun2, ui.boyutlandirma, ui.vkFrame1});
    setUpRecords({ui.kisiekle2, ui.txtMusteri, ui.eklemedatasi2, ui.kayitgridi2});
    // Enter goes no further than to the address, as required.
    ui.kisiekle2->setFields({{ui.txtMusteri, ui.adres},
                             {ui.telefon, nullptr, onlyCharacters(u",0123456789")},
                             {ui.adres, nullptr, capitals()}});
    ui.kisiekle2->setCancelButton(*ui.vazgec2);
    // vkCommand1 would open the sales on credit, which don't exist.
    clicks(this, {{ui.kisiekleme2, &liste::kisiekleme2_click},
                  {ui.duzenle2, &liste::duzenle2_click},
                  {ui.kisisil2, &liste::kisisil2_click},
                  {ui.excelekaydet, &liste::excelekaydet_click},
                  {ui.kaydet2, &liste::kaydet2_click},
                  {ui.vazgec2, &liste::vazgec2_click},
                  {ui.vkCommand2, &liste::vkCommand2_click}});
    setCloseButton(*ui.vkCommand2);
}

liste::~liste() = default;

void liste::form_load() {
    attempt([this] { storeWidths(); });
    attempt([this] { connectData(); });
    showRows();
    ekrandonat(*this);
    ui.TDBGrid1->setFocus();
}

void liste::kisiekleme2_click() {
    openToAdd();
}

void liste::duzenle2_click() {
    if (!takeSelectedRow())
        return;
    // Telephone and address open in each other's boxes and are stored so: that is required.
    ui.txtMusteri->setText(cell(1));
    ui.adres->setText(cell(2));
    ui.telefon->setText(cell(3));
    openToEdit(cell(1), *ui.telefon);
}

void liste::kisisil2_click() {
    deleteSelected();
}

void liste::excelekaydet_click() {
    exportList();
}

void liste::kaydet2_click() {
    if (!nameIsGiven())
        return;
    save();
    vazgec2_click();  // whatever became of the save, as required
}

void liste::vazgec2_click() {
    ui.kisiekle2->clearFields();
    closeFrame();
}

void liste::vkCommand2_click() {
    leave();
}

bool liste::nameIsGiven() {
    if (!ui.txtMusteri->text().isEmpty())
        return true;
    uyarimesaj(u"MSG_MUSTERI_ADI_BOS"_s, MessageBoxStyle::ok);
    giveFocus(*ui.txtMusteri);
    return false;
}

void liste::save() {
    if (!baglantihazir()) {
        tellNoDatabase();
        return;
    }
    kayitkapat();
    if (!nameIsGiven())
        return;
    const bool adds = ui.kisiekle2->adds();
    // The name is the key: of two customers of one name the first is changed, and a changed name finds none.
    const QString source =
        adds ? u" select * from musteri"_s
             : u" select * from musteri where adi='"_s + sqlmetin(ui.txtMusteri->text().trimmed()) + u"' "_s;
    const bool stored = store([&] {
        kayit().open(source, baglanti());
        if (adds)
            kayit().addNew();
        kayit().setField(u"adi"_s, cutToField(ui.txtMusteri->text()));
        kayit().setField(u"adres"_s, cutToField(ui.adres->text()));
        kayit().setField(u"telefon"_s, ui.telefon->text());  // whole, as required
        kayit().update();
    });
    if (!stored)
        return;
    uyarimesaj(adds ? u"MSG_EKLENDI"_s : u"MSG_DUZENLENDI"_s, MessageBoxStyle::ok);
    goOnAdding();
}

}  // namespace kovanix
