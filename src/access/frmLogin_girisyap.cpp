#include <QCoreApplication>

#include "access/frmLogin.h"
#include "app/modTrace.h"
#include "app/modTurkce.h"
#include "app/session.h"
#include "appearance/menu.h"
#include "appearance/modTema.h"
#include "appearance/uyari.h"
#include "desktop/messagebox.h"
#include "runtime/screenregistry.h"
#include "sales/satisekrani.h"
#include "values/lettercase.h"

namespace kovanix {

namespace {

enum class Role { manager, warehouse, other };

/// Older files spell the manager's role in many ways: Yönetici, YÖNETİCİ, yonetici, YONETICI.
Role roleOf(const QString& yetki) {
    const QString role = foldTurkishI(yetki.trimmed()).replace(u'ö', u'o');
    const QString tail = QStringLiteral("netici");
    if (role.startsWith(u'y') && role.endsWith(tail) && role.size() > tail.size())
        return Role::manager;
    return role == u"depo sevk" ? Role::warehouse : Role::other;
}

}  // namespace

void frmLogin::girisyap() {
    try {
        if (applyRole())
            openSales();
    } catch (const RuntimeError& error) {
        mesaj(metin(QStringLiteral("SATIS_ACILAMADI")) + u": " + error.description(),
              MessageBoxStyle::critical, metin(QStringLiteral("HATA")));
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
            izyaz(QStringLiteral("GIR depo sevk - cikis"));
            return false;
        case Role::other:
            girisyetki = 0;
            return true;
    }
    return false;
}

void frmLogin::openSales() {
    izyaz(QStringLiteral("GIR01 preLoad satisekrani"));
    auto& sales = screen<satisekrani>();
    izyaz(QStringLiteral("GIR02 postLoad"));
    sales.showMaximized();
    izyaz(QStringLiteral("GIR03 postShow"));
    unload<uyari>();
    izyaz(QStringLiteral("GIR03a uyari unload"));
    hide();
    izyaz(QStringLiteral("GIR03b login hide"));
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    izyaz(QStringLiteral("GIR03c doevents"));
    sales.raise();
    sales.activateWindow();
    izyaz(QStringLiteral("GIR04 zorder"));
    sales.sizeGrid();
    toplamtemauygula();
    if (girisyetki == 0)
        closeToCashiers();
    izyaz(QStringLiteral("GIR05 tamam"));
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
