#include "access/kullanicilar.h"

#include "access/passwordgate.h"
#include "access/roles.h"
#include "access/sifreleme.h"
#include "access/userrows.h"
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
#include "widgets/adodc.h"
#include "widgets/look.h"
#include "widgets/paintedhint.h"
#include "widgets/tdbgrid.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

// The on-screen keyboard's targets.
constexpr int nameCode = 7;
constexpr int passwordCode = 8;
constexpr int repetitionCode = 9;

// The items of the list of roles; behind them stands a role that only an older file has.
constexpr int managerItem = 0;
constexpr int cashierItem = 1;
constexpr int roleItems = 2;

const QString allUsers = u"select * from kullanici"_s;

enum Column { idColumn, nameColumn, passwordColumn, roleColumn };

const ListTraits& traits() {
    static const ListTraits users{
        .source = u"kullanici"_s,
        .columns = {{u"id"_s, u"id"_s, {}, 64},
                    {u"personeladi"_s, u"personeladi"_s, {}, 196},
                    {u"sifre"_s, u"sifre"_s, {}, 136, true},
                    {u"yetki"_s, u"yetki"_s, {}, 148}},
        .selection = onClick | onDoubleClick | onMove | onRelease,
        .filter = {},
        .sorts = false,
        .filters = false,
        .scanField = {},
        .nameField = {},
        .unit = u"kullanıcı"_s,
        .icon = u":/icons/users.svg"_s,
        .noneYet = u"Henüz kullanıcı yok"_s,
        .noneYetHint = u"EKLE’ye dokunun"_s,
    };
    return users;
}

/// Whether the table can be read and is empty.
bool isTableEmpty() {
    bool empty = false;
    attempt([&] {
        Recordset users;
        users.open(allUsers, baglanti());
        empty = users.atEnd();
    });
    return empty;
}

}  // namespace

kullanicilar::kullanicilar() : ListScreen(traits()) {
    ui.setupUi(this);
    labelFields();
    applyTextRoles(*this);
    ui.acilisi->setItemDelegate(new RoleRows(ui.acilisi));
    ui.acilisi->setCurrentRow(cashierItem);
    setUpList({ui.TDBGrid1, ui.Adodc2, ui.sutun, ui.boyutlandirma, ui.vkFrame1});
    storeWidths();
    connectControls();
    setCloseButton(*ui.kapat);
    ui.TDBGrid1->setFocus();
}

kullanicilar::~kullanicilar() = default;

/// What stands beside the fields, painted.
void kullanicilar::labelFields() {
    struct Label {
        QString text;
        QWidget* field;
    };
    int row = 0;
    for (const auto& [text, field] : {Label{u"Kullanıcı Adı"_s, ui.personeladi}, Label{u"şifre"_s, ui.sifre},
                                      Label{u"şifre tekrarı"_s, ui.sifre1}, Label{u"Yetki"_s, ui.acilisi}}) {
        constexpr QSize room(116, 48);
        auto* label = new PaintedHint({}, text);
        label->setFixedSize(room);
        ui.alanLayout->addWidget(label, row++, 0, Qt::AlignTop);
        field->setAccessibleName(text);
    }
    m_passwordNote = new PaintedHint({}, u"Şifreler boş kalırsa eski şifre değişmez."_s);
    ui.notLayout->addWidget(m_passwordNote);
}

void kullanicilar::connectControls() {
    clicks(this, {{ui.kisiekleme3, &kullanicilar::kisiekleme3_click},
                  {ui.duzenle3, &kullanicilar::duzenle3_click},
                  {ui.kisisil3, &kullanicilar::kisisil3_click},
                  {ui.kaydet, &kullanicilar::kaydet_click},
                  {ui.vazgec, &kullanicilar::vazgec_click},
                  {ui.kapat, &kullanicilar::kapat_click},
                  // Told by a user's click alone: the load sets the box without writing the setting.
                  {ui.Check1, &kullanicilar::Check1_click}});
    connect(ui.Image1, &Image::clicked, this, [this] { openKeyboard(nameCode, *this); });
    connect(ui.Image2, &Image::clicked, this, [this] { openKeyboard(passwordCode, *this); });
    connect(ui.Image3, &Image::clicked, this, [this] { openKeyboard(repetitionCode, *this); });
    connect(&yenile, &Timer::tick, this, &kullanicilar::yenile_tick);
    ui.kisiekle->setFields({{ui.personeladi, ui.sifre}, {ui.sifre, ui.sifre1}, {ui.sifre1, ui.kaydet}});
    ui.kisiekle->setCancelButton(*ui.vazgec);
    connect(ui.kisiekle, &EntryFrame::recordChanged, this, [this] { closeKeyboards(*this); });
}

void kullanicilar::form_load() {
    ekrandonat(*this);
    if (girissifre.isEmpty()) {
        ui.Check1->setChecked(true);
        ui.Check1->setEnabled(false);
        ui.Check1->setToolTip(metin(u"SIFRESIZ_GIRIS_TOOLTIP"_s));
    } else {
        ui.Check1->setChecked(sayicevir(ayar(u"sifresor1k"_s)) != 0);
        ui.Check1->setEnabled(true);  // an earlier load may have found no password
        ui.Check1->setToolTip({});
    }
    if (baglantihazir()) {
        kayitkapat();
        connectData();
    }
    showRows();
}

void kullanicilar::yenile_tick() {
    yenile.setInterval(0);
    form_load();
}

void kullanicilar::Check1_click() {
    ayarla(u"sifresor1k"_s, QString::number(ui.Check1->isChecked() ? 1 : 0));
}

/// Shows a notice, by its key; an Enter too many must not press the button again.
void kullanicilar::tell(const QString& key) const {
    uyarimesaj(key, MessageBoxStyle::ok);
    giveFocus(grid());
}

/// Notes an action, and finds out how it goes on.
kullanicilar::Passage kullanicilar::passGate(int action) {
    PasswordGate gate(PasswordGate::users(), action);
    if (!yoneticisifresimi(girissifre)) {
        // No manager has the session's password any more: the prompt would take nothing, and the actions go
        // on without it. Required.
        girissifre = u"?"_s;
        return Passage::unknownPassword;
    }
    if (!gate.asks())
        return Passage::open;
    gate.ask(*this);
    return Passage::prompted;
}

void kullanicilar::kisiekleme3_click() {
    // Nobody has logged in yet where there is nobody to log in.
    if (!yoneticimi() && !isTableEmpty()) {
        tell(u"MSG_YETKI_YOK"_s);
        return;
    }
    if (passGate(PasswordGate::add) != Passage::prompted)
        add();
}

void kullanicilar::duzenle3_click() {
    if (!yoneticimi()) {
        tell(u"MSG_YETKI_YOK"_s);
        return;
    }
    if (passGate(PasswordGate::edit) != Passage::prompted)
        edit(metin(u"DUZENLE"_s));
}

void kullanicilar::kisisil3_click() {
    if (!yoneticimi()) {
        tell(u"MSG_YETKI_YOK"_s);
        return;
    }
    secilikullanici = selected().text();
    switch (passGate(PasswordGate::remove)) {
        case Passage::open:
            remove();
            break;
        case Passage::prompted:
            break;
        case Passage::unknownPassword:
            // The last manager isn't looked for on this path: required.
            if (!isNothingPickedToDelete())
                askAndDelete();
            break;
    }
}

void kullanicilar::add() {
    const bool first = isTableEmpty();
    openFields(metin(u"EKLE"_s), u"Yeni kullanıcı"_s);
    // A shop whose first user were a cashier would have nobody to add another.
    ui.acilisi->setCurrentRow(first ? managerItem : cashierItem);
    ui.acilisi->setEnabled(!first);
}

void kullanicilar::edit(const QString& caption) {
    if (selected().text().isEmpty()) {
        tell(u"MSG_KULLANICI_SEC"_s);
        return;
    }
    const RowSet& rows = data().recordset();
    if (rows.recordCount() == 0) {
        tell(u"MSG_KULLANICI_YOK"_s);
        return;
    }
    if (!isSelectedRowCurrent()) {
        tell(u"MSG_KULLANICI_SEC"_s);
        return;
    }
    const qint64 identity = rows.identity(rows.current());
    attempt([&] { data().refreshRow(identity); });  // the list may be hours old
    const auto cell = [this](Column column) { return grid().column(column).value(); };
    const QString id = cell(idColumn);
    openFields(caption, id + u" · " + cell(nameColumn));
    grid().setEditedRow(identity);
    secilikullanici = id;
    ui.id->setText(id);
    ui.personeladi->setText(cell(nameColumn));
    // A hash says nothing to anybody, and would be hashed once more; an older plain password is shown.
    const QString stored = cell(passwordColumn);
    for (PasswordField* field : {ui.sifre, ui.sifre1})
        field->setText(sifreozetmi(stored) ? QString() : stored);
    chooseRole(cell(roleColumn));
    ui.acilisi->setEnabled(true);
}

void kullanicilar::openFields(const QString& caption, const QString& record) {
    ui.kisiekle->setMode(caption, record);
    ui.kisiekle->clearFields();
    ui.id->setText({});
    chooseRole(ui.acilisi->item(cashierItem)->text());
    m_passwordNote->setVisible(!ui.kisiekle->adds());
    grid().setEditedRow({});
    ui.kisiekle->show();
    ui.kaydet->setEnabled(true);
    giveFocus(*ui.personeladi);
}

/// Selects the item of a role, in whatever spelling. A role of its own gets an item, so that a save writes
/// back what was there.
void kullanicilar::chooseRole(const QString& yetki) {
    while (ui.acilisi->count() > roleItems)
        delete ui.acilisi->takeItem(roleItems);
    switch (roleOf(yetki)) {
        case Role::manager:
            ui.acilisi->setCurrentRow(managerItem);
            return;
        case Role::cashier:
            ui.acilisi->setCurrentRow(cashierItem);
            return;
        case Role::warehouse:
        case Role::other:
            ui.acilisi->addItem(yetki);
            ui.acilisi->setCurrentRow(roleItems);
            return;
    }
}

void kullanicilar::remove() {
    if (isNothingPickedToDelete())
        return;
    if (isLastManager())
        tell(u"SON_YONETICI"_s);
    else
        askAndDelete();
}

/// Tells it, too.
bool kullanicilar::isNothingPickedToDelete() const {
    const bool nothing = selected().text().isEmpty();
    if (nothing)
        tell(u"MSG_KULLANICI_SIL_SEC"_s);
    return nothing;
}

bool kullanicilar::isLastManager() const {
    qint64 managers = 0;
    attempt([&] {
        Recordset users;
        users.open(u"select * from kullanici where yetki = '" + sqlmetin(yoneticiyetkisi()) + u'\'',
                   baglanti());
        managers = users.recordCount();
    });
    if (managers != 1)
        return false;
    const RowSet& rows = data().recordset();
    const int id = rows.fieldIndex(u"id");
    const int role = rows.fieldIndex(u"yetki");
    for (qsizetype place = 0; id >= 0 && role >= 0 && place < rows.recordCount(); ++place) {
        // Letter case as little as it counted for the number of managers.
        if (rows.text(place, id) == secilikullanici)
            return rows.text(place, role).compare(yoneticiyetkisi(), Qt::CaseInsensitive) == 0;
    }
    return false;
}

void kullanicilar::askAndDelete() {
    const int style = MessageBoxStyle::yesNo | MessageBoxStyle::warning;
    const int answer = mesajsor(u"MSG_KULLANICI_SIL_SOR"_s, style, metin(u"MSG_SILME_ONAY_BASLIK"_s));
    giveFocus(grid());  // an Enter too many must not press the button again
    if (answer != MessageBoxAnswer::yes)
        return;
    if (!baglantihazir()) {
        tellNoDatabase();
        return;
    }
    attempt([] {
        storeTogether([] {
            Recordset users;
            attempt([&] { users.open(u' ' + allUsers, baglanti()); });
            attempt([&] { users.setFilter(u"id = '" + sqlmetin(secilikullanici) + u'\''); });
            attempt([&] { users.deleteCurrent(); });
            attempt([&] { users.update(); });
            attempt([&] { users.close(); });
        });
    });
    // Also where the file refused it: required.
    tell(u"MSG_KULLANICI_SILINDI"_s);
    form_load();
    selected().setText({});
}

void kullanicilar::kaydet_click() {
    if (ui.personeladi->text().isEmpty()) {
        tell(u"MSG_KULLANICI_ADI_BOS"_s);
        giveFocus(*ui.personeladi);
        return;
    }
    if (ui.sifre->text() != ui.sifre1->text()) {
        tell(u"MSG_SIFRE_AYNI"_s);
        giveFocus(*ui.sifre1);
        return;
    }
    // Asked on a change too, where yes keeps the stored password: required.
    if (ui.sifre->text().isEmpty() &&
        mesajsor(u"MSG_SIFRE_KOYMA_SOR"_s, MessageBoxStyle::yesNo, u"UYARI"_s) == MessageBoxAnswer::no) {
        giveFocus(*ui.sifre1);
        return;
    }
    if (!baglantihazir()) {
        tellNoDatabase();
        return;
    }
    const bool adds = ui.kisiekle->caption() == metin(u"EKLE"_s);
    attempt([&] { storeTogether([&] { adds ? storeNew() : storeChanges(); }); });
    // Also where the file refused it: required.
    tell(adds ? u"MSG_EKLENDI"_s : u"MSG_DUZENLENDI"_s);
    vazgec_click();
    form_load();
}

void kullanicilar::storeNew() const {
    Recordset users;
    attempt([&] { users.open(allUsers, baglanti()); });
    // Without a row of its own, what follows would change the first one.
    if (attempt([&] { users.addNew(); }))
        return;
    const QString password = ui.sifre->text();
    attempt([&] { users.setField(u"personeladi"_s, cutToField(ui.personeladi->text())); });
    attempt([&] { users.setField(u"sifre"_s, password.isEmpty() ? u""_s : sifreozet(password)); });
    attempt([&] { users.setField(u"yetki"_s, ui.acilisi->currentItem()->text()); });
    attempt([&] { users.update(); });
    attempt([&] { users.close(); });
}

void kullanicilar::storeChanges() const {
    Recordset users;
    attempt([&] { users.open(u' ' + allUsers, baglanti()); });
    attempt([&] { users.setFilter(u"id = '" + sqlmetin(ui.id->text()) + u'\''); });
    const QString password = ui.sifre->text();
    attempt([&] { users.setField(u"personeladi"_s, cutToField(ui.personeladi->text())); });
    if (!password.isEmpty())
        attempt([&] { users.setField(u"sifre"_s, sifreozet(password)); });
    attempt([&] { users.setField(u"yetki"_s, ui.acilisi->currentItem()->text()); });
    attempt([&] { users.update(); });
    attempt([&] { users.close(); });
}

void kullanicilar::vazgec_click() {
    ui.kisiekle->setMode(metin(u"EKLE"_s));
    ui.kisiekle->clearFields();
    ui.id->setText({});
    ui.TDBGrid1->setFocus();
    ui.kisiekle->hide();
    ui.kaydet->setEnabled(false);
    grid().setEditedRow({});
}

void kullanicilar::kapat_click() {
    leave();
}

}  // namespace kovanix
