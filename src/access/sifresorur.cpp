#include "access/sifresorur.h"

#include "access/kullanicilar.h"
#include "access/passwordgate.h"
#include "app/modTurkce.h"
#include "app/session.h"
#include "appearance/keyboard.h"
#include "catalogue/urunler.h"
#include "desktop/focus.h"
#include "desktop/messagebox.h"
#include "runtime/screenregistry.h"
#include "screens/clicks.h"
#include "widgets/colorvalue.h"
#include "widgets/keyfilter.h"
#include "widgets/look.h"
#include "widgets/paintedhint.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr int keyboardCode = 15;  // the on-screen keyboard's target: the password

constexpr ColorValue buttonTop = 0xFBFBFB;
constexpr ColorValue hideBottom = 0x80FF80;
constexpr ColorValue showBottom = 0x00FFFF;

// These words aren't the catalogue's: where it has a symbol, they have a character that isn't seen.
const QString showCaption = u"\u009D\u009DFRE G\u009DSTER"_s;
const QString hideCaption = u"\u009D\u009DFRE G\u009DZLE"_s;
const QString showTip = u"\u009D\u009DFREY\u009D G\u009DSTERMEK \u009D\u009D\u009DN TIKLAYIN"_s;
const QString hideTip = u"\u009D\u009DFREY\u009D G\u009DZLEMEK \u009D\u009D\u009DN TIKLAYIN"_s;

/// The caption of the users' frame where the prompt opens it to change a user.
const QString editCaption = u"D!ZENLE"_s;

void carryOutOnProducts() {
    auto& products = screen<urunler>();
    switch (ekledznlsil.toInt()) {
        case PasswordGate::add:
            products.add();
            break;
        case PasswordGate::edit:
            products.edit();
            break;
        case PasswordGate::remove:
            products.remove();
            break;
        default:
            break;
    }
}

void carryOutOnUsers() {
    auto& users = screen<kullanicilar>();
    switch (ekledznlsilk.toInt()) {
        case PasswordGate::add:
            users.add();
            break;
        case PasswordGate::edit:
            users.edit(editCaption);
            break;
        case PasswordGate::remove:
            users.remove();
            break;
        default:
            break;
    }
}

/// The screen that a code of `nereye` stands for; nothing where it isn't loaded.
Screen* askingScreen(const QString& code) {
    if (code == u"1" && loaded<urunler>())
        return &screen<urunler>();
    return code == u"2" && loaded<kullanicilar>() ? &screen<kullanicilar>() : nullptr;
}

}  // namespace

sifresorur::sifresorur() {
    ui.setupUi(this);
    ui.ipucuLayout->addWidget(new PaintedHint({}, u"Şifrenizi yazıp Tamam’a dokunun"_s));
    applyTextRoles(*this);
    clicks(this, {{ui.vkCommand1, &sifresorur::vkCommand1_click},
                  {ui.Command1, &sifresorur::Command1_click},
                  {ui.sifrekapat, &sifresorur::sifrekapat_click}});
    connect(ui.Image2, &Image::clicked, this, [this] { openKeyboard(keyboardCode, *this); });
    new KeyFilter(
        *ui.Text1, [this](int key) { Text1_keydown(key); },
        [](int code) { return code == u'\r' ? 0 : code; });
    standInFrame(*ui.vkFrame1);
    setCloseButton(*ui.sifrekapat);
    ui.Text1->setAccessibleName(u"Şifre"_s);
    ui.Text1->setFocus();
}

sifresorur::~sifresorur() = default;

void sifresorur::form_load() {
    ekrandonat(*this);
    vkCommand1_click();
}

void sifresorur::vkCommand1_click() {
    const bool show = ui.vkCommand1->caption() == showCaption;
    ui.Text1->setPasswordchar(show ? QString() : u"*"_s);
    ui.vkCommand1->setCaption(show ? hideCaption : showCaption);
    ui.vkCommand1->setBackcolor1(colorOf(buttonTop));
    ui.vkCommand1->setBackcolor2(colorOf(show ? hideBottom : showBottom));
    ui.vkCommand1->setToolTip(show ? hideTip : showTip);
}

void sifresorur::Command1_click() {
    if (m_answered)
        return;
    if (ui.Text1->text() != girissifre) {
        refuse();
        return;
    }
    m_answered = true;
    const QString asking = ui.nereye->text();
    if (asking == u"1")
        carryOutOnProducts();
    else if (asking == u"2")
        carryOutOnUsers();
    ui.Text1->setText({});
    leave();
}

void sifresorur::refuse() {
    mesaj(u"SIFRE_YANLIS"_s, MessageBoxStyle::ok, QString());
    ui.Text1->clear();
    giveFocus(*ui.Text1);
}

/// Enter with the right password carries nothing out: required.
void sifresorur::Text1_keydown(int key) {
    if (key != Qt::Key_Return || m_answered)
        return;
    if (ui.Text1->text() != girissifre) {
        refuse();
        return;
    }
    m_answered = true;
    leave();
}

void sifresorur::sifrekapat_click() {
    leave();
}

/// To the screen that asked, wherever its focus is by now: an action may have given it to a field. Not to one
/// that is going itself.
void sifresorur::giveFocusBack() {
    if (ui.nereye->text().isEmpty()) {
        OpenedScreen::giveFocusBack();
        return;
    }
    Screen* asking = askingScreen(ui.nereye->text());
    if (asking && asking->isVisible())
        asking->activateWindow();
}

}  // namespace kovanix
