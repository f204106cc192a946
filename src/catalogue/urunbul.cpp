#include "catalogue/urunbul.h"

#include "app/modTrace.h"
#include "app/modTurkce.h"
#include "runtime/attempt.h"
#include "sales/satisekrani.h"
#include "screens/clicks.h"
#include "widgets/look.h"
#include "widgets/paintedhint.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr int handOverTime = 100;  // milliseconds

const ListTraits& traits() {
    static const ListTraits finder{
        .source = u"urunler"_s,
        .columns = {{u"no"_s, u"no"_s, {}, 126},
                    {u"BARKOD"_s, u"barkod"_s, {}, 224},
                    {u"~R~N ADI"_s, u"urun"_s, {}, 414},
                    {u"F!YAT"_s, u"satis"_s, u"#,##0.00 "_s, 40}},
        .selection = onClick | onMove | onRelease,
        .filter = {.numericFields = {u"alis"_s, u"satis"_s}, .blankedField = {}},
        .focusesToSort = false,
        .scanField = u"barkod"_s,
        .nameField = u"urun"_s,
        .unit = u"ürün"_s,
        .icon = u":/icons/products.svg"_s,
        .noneYet = u"Henüz ürün yok"_s,
        .noneYetHint = u"Tanınmayan bir barkod okutun: ürün kasada açılır"_s,
    };
    return finder;
}

}  // namespace

urunbul::urunbul() : ListScreen(traits()) {
    ui.setupUi(this);
    applyTextRoles(*this);
    ui.altLayout->insertWidget(
        0, new PaintedHint(u":/icons/hand.svg"_s, u"Satıra iki kez dokunun: ürün seçilir"_s), 1);
    setUpList({ui.TDBGrid1, ui.Adodc2, ui.sutun2, ui.boyutlandirma, ui.vkFrame1});
    clicks(this, {{ui.vkCommand4, &urunbul::vkCommand4_click}});
    setCloseButton(*ui.vkCommand4);
}

urunbul::~urunbul() = default;

void urunbul::form_load() {
    izyaz(u"UB01 Form_Load"_s);
    attempt([this] { connectData(); });
    showRows();
    attempt([this] { storeWidths(); });
    ekrandonat(*this);
    ui.TDBGrid1->setFocus();
    izyaz(u"UB02 Form_Load bitti"_s);
}

void urunbul::form_activate() {
    showRows();
}

void urunbul::TDBGrid1_dblclick() {
    copySelection();
    const QString target = ui.nereye->text();
    if (target == u"1") {
        attempt([this] { screen<satisekrani>().ui.barkod->setText(ui.TDBGrid1->column(1).value()); });
        attempt([] { screen<satisekrani>().kontorsat.setInterval(handOverTime); });
    } else if (target == u"2") {
        attempt([this] { screen<satisekrani>().ui.kisayolbarkod->setText(ui.TDBGrid1->column(1).value()); });
        attempt([this] { screen<satisekrani>().ui.hizliurunadi->setText(ui.TDBGrid1->column(2).value()); });
    }
    leave();
}

void urunbul::vkCommand4_click() {
    leave();
}

}  // namespace kovanix
