#include "appearance/menu.h"

#include "access/firstscreen.h"
#include "access/kullanicilar.h"
#include "app/manual.h"
#include "app/modTurkce.h"
#include "app/session.h"
#include "appearance/tema.h"
#include "desktop/focus.h"
#include "desktop/messagebox.h"
#include "desktop/shell.h"
#include "runtime/process.h"
#include "runtime/screenregistry.h"
#include "sales/satisekrani.h"
#include "screens/boxes.h"
#include "screens/clicks.h"
#include "widgets/look.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

/// The calculator by its path, whatever the system's folder is.
constexpr QStringView calculator = u"c:\\windows\\system32\\calc.exe";

/// The programs of this platform that stand for one that is started by its path, the first choice first.
QStringList standIns(QStringView path) {
    if (path == calculator)
        return {u"gnome-calculator"_s, u"kcalc"_s,        u"mate-calc"_s, u"galculator"_s,
                u"qalculate-gtk"_s,    u"qalculate-qt"_s, u"xcalc"_s,     u"deepin-calculator"_s,
                u"speedcrunch"_s};
    return {};
}

/// Starts what stands for the program. @return whether something does
bool shell(QStringView path) {
    return startProgram(firstInstalled(standIns(path)));
}

}  // namespace

menu::menu() {
    ui.setupUi(this);
    applyTextRoles(*this);
    connectControls();
    standInFrame(*ui.vkFrame1);
    setCloseButton(*ui.kapat);
    restOnCloseButton();
}

menu::~menu() = default;

void menu::connectControls() {
    clicks(this, {{ui.vkCommand1, &menu::vkCommand1_click},
                  {ui.vkCommand2, &menu::vkCommand2_click},
                  {ui.vkCommand3, &menu::vkCommand3_click},
                  {ui.vkCommand4, &menu::vkCommand4_click},
                  {ui.vkCommand5, &menu::vkCommand5_click},
                  {ui.vkCommand10, &menu::vkCommand10_click},
                  {ui.kapat, &menu::kapat_click}});
}

void menu::form_load() {
    ekrandonat(*this);
    if (girisyetki != 0)
        return;
    // The way back to the login and the calculator are closed to a cashier too, as required.
    for (QWidget* button : {screen<satisekrani>().ui.vkCommand3, screen<satisekrani>().ui.vkCommand2,
                            ui.vkCommand3, ui.vkCommand2, ui.vkCommand4})
        button->setEnabled(false);
}

void menu::vkCommand1_click() {
    showInFront(screen<tema>());
}

void menu::vkCommand2_click() {
    const int style = MessageBoxStyle::yesNo | MessageBoxStyle::question;
    if (mesajsor(u"MSG_GIRIS_EKRANINA_DON"_s, style, u"UYARI"_s) != MessageBoxAnswer::yes)
        return;
    unloadAllScreens();
    showFirstScreen();
}

void menu::vkCommand3_click() {
    showInFront(screen<kullanicilar>());
}

void menu::vkCommand4_click() {
    if (!shell(calculator))
        uyarimesaj(u"Bu bilgisayarda hesap makinesi bulunamadı. Bir hesap makinesi programı kurun."_s,
                   MessageBoxStyle::warning);
}

void menu::vkCommand5_click() {
    openManual();
}

void menu::vkCommand10_click() {
    if (askToCloseProgram())
        endProcess(0);
}

void menu::kapat_click() {
    screen<satisekrani>().show();
    leave();
}

}  // namespace kovanix
