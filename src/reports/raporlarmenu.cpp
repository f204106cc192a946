#include "reports/raporlarmenu.h"

#include "app/modTurkce.h"
#include "desktop/focus.h"
#include "reports/satisraporlar.h"
#include "reports/stokraporu.h"
#include "reports/zparogu.h"
#include "runtime/screenregistry.h"
#include "screens/clicks.h"
#include "widgets/look.h"

namespace kovanix {

raporlarmenu::raporlarmenu() {
    ui.setupUi(this);
    applyTextRoles(*this);
    clicks(this, {{ui.fiyatgor, &raporlarmenu::fiyatgor_click},
                  {ui.vkCommand1, &raporlarmenu::vkCommand1_click},
                  {ui.vkCommand2, &raporlarmenu::vkCommand2_click},
                  {ui.vkCommand3, &raporlarmenu::vkCommand3_click}});
    standInFrame(*ui.vkFrame1);
    setCloseButton(*ui.vkCommand3);
    restOnCloseButton();
}

raporlarmenu::~raporlarmenu() = default;

void raporlarmenu::form_load() {
    ekrandonat(*this);
}

/// The sales report alone takes the menu's place; the others open above it.
void raporlarmenu::fiyatgor_click() {
    showInFront(screen<satisraporlar>());
    unload<raporlarmenu>();
}

void raporlarmenu::vkCommand1_click() {
    showInFront(screen<stokraporu>());
}

void raporlarmenu::vkCommand2_click() {
    showInFront(screen<zparogu>());
}

void raporlarmenu::vkCommand3_click() {
    leave();
}

}  // namespace kovanix
