#include <QCoreApplication>

#include "access/frmLogin.h"
#include "access/roles.h"
#include "app/modTrace.h"
#include "app/modTurkce.h"
#include "app/session.h"
#include "appearance/menu.h"
#include "appearance/modTema.h"
#include "appearance/uyari.h"
#include "desktop/messagebox.h"
#include "runtime/screenregistry.h"
#include "sales/satisekrani.h"

namespace kovanix {

using namespace Qt::StringLiterals;

void frmLogin::girisyap() {
    try {
        if (applyRole())
            openSales();
    } catch (const RuntimeError& error) {
        mesaj(metin(u"SATIS_ACILAMADI"_s) + u": " + error.description(), MessageBoxStyle::critical,
              metin(u"HATA"_s));
    }
}

/// Fixes the session's role. @return whether the login goes on
bool frmLogin::applyRole() {
    const QListWidgetItem* chosen = ui.acilisi->currentItem();
    switch (roleOf(chosen ? chosen->text() : QString())) {
        case Role::manager:
            girisyetki = 1;
            girissifre = ui.sifre->text().trimmed();
            return true;
        case Role::warehouse:
            // The warehouse has no business at the till; only the trace tells, as required.
            izyaz(u"GIR depo sevk - cikis"_s);
            return false;
        case Role::cashier:
        case Role::other:
            girisyetki = 0;
            return true;
    }
    return false;
}

void frmLogin::openSales() {
    izyaz(u"GIR01 preLoad satisekrani"_s);
    auto& sales = screen<satisekrani>();
    izyaz(u"GIR02 postLoad"_s);
    sales.showMaximized();
    izyaz(u"GIR03 postShow"_s);
    unload<uyari>();
    izyaz(u"GIR03a uyari unload"_s);
    hide();
    izyaz(u"GIR03b login hide"_s);
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    izyaz(u"GIR03c doevents"_s);
    sales.raise();
    sales.activateWindow();
    izyaz(u"GIR04 zorder"_s);
    sales.sizeGrid();
    toplamtemauygula();
    if (girisyetki == 0)
        closeToCashiers();
    izyaz(u"GIR05 tamam"_s);
}

/// A cashier reaches neither the products, nor the reports, nor the users. A menu that is loaded later closes
/// the last one by itself.
void frmLogin::closeToCashiers() {
    screen<satisekrani>().ui.vkCommand3->setEnabled(false);
    screen<satisekrani>().ui.vkCommand2->setEnabled(false);
    if (loaded<menu>())
        screen<menu>().ui.vkCommand3->setEnabled(false);
}

}  // namespace kovanix
