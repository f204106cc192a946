#include "app/ayarmodul.h"
#include "app/modTurkce.h"
#include "app/session.h"
#include "appearance/keyboard.h"
#include "catalogue/urunbul.h"
#include "desktop/focus.h"
#include "desktop/messagebox.h"
#include "runtime/screenregistry.h"
#include "sales/quickkeymap.h"
#include "sales/quickkeys.h"
#include "sales/satisekrani.h"
#include "screens/clicks.h"
#include "widgets/controlcolor.h"
#include "widgets/face.h"
#include "widgets/look.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr int nameKeyboard = 19;  // whose Enter hands the text to `hizliurunadi`
constexpr int itemHeading = 24;   // points
constexpr int categoryHeading = 20;

std::array<CommandButton*, quickPages> categoryKeys(const SalesControls& ui) {
    return {ui.kisayol1, ui.kisayol2, ui.kisayol3, ui.kisayol4};
}

std::array<CommandButton*, quickKeysOnPage> itemKeys(const SalesControls& ui) {
    return {ui.kisayol_0, ui.kisayol_1, ui.kisayol_2, ui.kisayol_3,
            ui.kisayol_4, ui.kisayol_5, ui.kisayol_6, ui.kisayol_7};
}

/// Read from the file at every use; the process-wide copy holds what was read last.
int readQuickPage() {
    ensonkikisayol = ayar(lastQuickPageKey);
    return quickPage(ensonkikisayol);
}

}  // namespace

void satisekrani::connectQuickKeys() {
    std::vector<const CommandButton*> mapped;
    int category = 1;
    for (CommandButton* key : categoryKeys(ui)) {
        connect(key, &CommandButton::clicked, this, [this, category] { kisayolkat_click(category); });
        connect(key, &CommandButton::mousedown, this,
                [this, category](Qt::MouseButton button) { kisayolkat_mousedown(category, button); });
        mapped.push_back(key);
        ++category;
    }
    int index = 0;
    for (CommandButton* key : itemKeys(ui)) {
        connect(key, &CommandButton::clicked, this, [this, index] { kisayol_click(index); });
        connect(key, &CommandButton::mousedown, this,
                [this, index](Qt::MouseButton button) { kisayol_mousedown(index, button); });
        mapped.push_back(key);
        ++index;
    }
    clicks(this, {{ui.kisayolurunbul, &satisekrani::kisayolurunbul_click},
                  {ui.kisayolklavye, &satisekrani::kisayolklavye_click},
                  {ui.kisayolkaydet, &satisekrani::kisayolkaydet_click},
                  {ui.kisayolsil, &satisekrani::kisayolsil_click},
                  {ui.kisayolkapat, &satisekrani::kisayolkapat_click}});
    m_quickKeyMap = new QuickKeyMap(std::move(mapped), ui.Frame2);
    ui.hizliLayout->insertWidget(ui.hizliLayout->indexOf(ui.hizliAltLayout), m_quickKeyMap, 1);
}

void satisekrani::kisayolyukle() {
    const int page = readQuickPage();
    int category = 1;
    for (CommandButton* key : categoryKeys(ui))
        key->setCaption(ayar(quickPageKey(category++)));
    int index = 0;
    for (CommandButton* key : itemKeys(ui))
        key->setCaption(ayar(quickNameKey(page, index++)));
    markEditedKey();
}

/// A page's key, 1 to 4.
void satisekrani::kisayolkat_click(int category) {
    ayarla(lastQuickPageKey, QString::number(category));
    for (CommandButton* key : itemKeys(ui))
        key->setCaption(QString());
    kisayolyukle();
}

void satisekrani::kisayol_click(int index) {
    headQuickPanel(u"~R~N !SM!"_s, itemHeading);
    if (!itemKeys(ui).at(static_cast<std::size_t>(index))->caption().isEmpty()) {
        // Not the way of a scan: neither is a scale's label split nor the entry row gone to.
        ui.barkod->setText(ayar(quickBarcodeKey(readQuickPage(), index)));
        urunekle();
        return;
    }
    // The barcode of the last edit stays in its box, to be written over by the finder.
    ui.hizliurunadi->setText({});
    ui.kisayolhangisi->setText(QString::number(index));
    showQuickPanel();
}

void satisekrani::kisayol_mousedown(int index, Qt::MouseButton button) {
    if (button != Qt::RightButton)
        return;
    headQuickPanel(u"~R~N !SM!"_s, itemHeading);
    ui.kisayolhangisi->setText(QString::number(index));
    const int page = readQuickPage();
    ui.hizliurunadi->setText(ayar(quickNameKey(page, index)));
    ui.kisayolbarkod->setText(ayar(quickBarcodeKey(page, index)));
    showQuickPanel();
}

void satisekrani::kisayolkat_mousedown(int category, Qt::MouseButton button) {
    if (button != Qt::RightButton)
        return;
    // The loader reads the page again: the one on file stays.
    ensonkikisayol = QString::number(category);
    kisayolyukle();
    headQuickPanel(u"KATEGOR! !SM!"_s, categoryHeading);
    ui.kisayolurunbul->hide();
    ui.kisayolklavye->show();
    ui.kisayolhangisi->setText(editedCategory(category));
    ui.hizliurunadi->setText(ayar(quickPageKey(category)));
    showQuickPanel();
    // The box opens empty, whatever the page is called. Required.
    ui.hizliurunadi->setText({});
    giveFocus(*ui.hizliurunadi);
}

void satisekrani::kisayolurunbul_click() {
    showInFront(screen<urunbul>());
    screen<urunbul>().ui.nereye->setText(u"2"_s);
}

void satisekrani::kisayolklavye_click() {
    openKeyboard(nameKeyboard, *this);
}

void satisekrani::kisayolkaydet_click() {
    const QString edited = ui.kisayolhangisi->text();
    if (const auto category = quickCategory(edited)) {
        ayarla(quickPageKey(*category), ui.hizliurunadi->text());
        kisayolyukle();
        kisayolkapat_click();
        return;
    }
    ui.kisayolklavye->hide();
    ui.kisayolurunbul->show();
    if (ui.kisayolbarkod->text().isEmpty()) {
        mesaj(u"ONCE_URUN_SEC"_s, MessageBoxStyle::ok, QString());
        return;
    }
    storeQuickKey(edited);
    kisayolyukle();
    closeQuickPanel();
    ui.hizliurunadi->setText({});
    giveFocus(*ui.barkod);
}

void satisekrani::kisayolsil_click() {
    const QString edited = ui.kisayolhangisi->text();
    ui.kisayolbarkod->setText({});
    ui.hizliurunadi->setText({});
    if (const auto category = quickCategory(edited)) {
        ayarla(quickPageKey(*category), ui.hizliurunadi->text());
        kisayolyukle();
        kisayolkapat_click();
        return;
    }
    // Every removal of an item takes the first page's name, whichever page is shown. Required.
    ayarla(quickPageKey(1), ui.hizliurunadi->text());
    kisayolyukle();
    kisayolkapat_click();
    storeQuickKey(edited);
    kisayolyukle();
    closeQuickPanel();
    giveFocus(*ui.barkod);
}

void satisekrani::kisayolkapat_click() {
    closeQuickPanel();
    ui.kisayolklavye->hide();
    ui.kisayolurunbul->show();
    giveFocus(*ui.barkod);
}

/// Stores what the panel's fields hold, the barcode first. Nothing is stored where they are about no key.
void satisekrani::storeQuickKey(const QString& edited) {
    const int page = readQuickPage();
    const auto slot = quickSlot(edited);
    if (!slot)
        return;
    ayarla(quickBarcodeKey(page, *slot), ui.kisayolbarkod->text());
    ayarla(quickNameKey(page, *slot), ui.hizliurunadi->text());
}

/// @param stored  the heading before the letter transcription
void satisekrani::headQuickPanel(const QString& stored, int points) {
    QFont font = ui.Label8->font();
    font.setPointSize(points);
    ui.Label8->setFont(font);
    ui.Label8->setText(harfcevir(stored));
}

void satisekrani::showQuickPanel() {
    markEditedKey();
    showPanel(*ui.Frame2);
}

/// With its keyboard, which would type into a panel that nobody sees, or into that of another key.
void satisekrani::closeQuickPanel() {
    ui.Frame2->hide();
    closeKeyboards(*this);
}

/// What no palette names in the panel goes by its tone.
void satisekrani::colorQuickPanel() {
    const Tone tone = standsOnDark(*ui.Frame2) ? Tone::dark : Tone::light;
    setBackColor(*ui.kisayolbarkod, roleColor(ColorRole::field, tone));
    setForeColor(*ui.kisayolbarkod, roleColor(ColorRole::ink, tone));
}

/// Marks what the panel edits on its map and says it in words.
void satisekrani::markEditedKey() {
    const QString edited = ui.kisayolhangisi->text();
    const auto category = quickCategory(edited);
    const auto slot = quickSlot(edited);
    const int page = category.value_or(quickPage(ensonkikisayol));
    const int place = category ? *category - 1 : slot ? quickPages + *slot : -1;
    const QString pageName = categoryKeys(ui).at(static_cast<std::size_t>(page - 1))->caption();
    m_quickKeyMap->mark(place, quickKeyWords(edited, page, pageName));
}

}  // namespace kovanix
