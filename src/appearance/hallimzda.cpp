#include "appearance/hallimzda.h"

#include <QCoreApplication>

#include "app/modTurkce.h"
#include "appearance/ekoz.h"
#include "desktop/focus.h"
#include "runtime/screenregistry.h"
#include "screens/clicks.h"
#include "widgets/look.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

QString productText() {
    return u"Kovanix " + QCoreApplication::applicationVersion() +
           u", Linux için bir satış kasası programıdır.\n"
           u"Barkodu okutur, para üstünü hesaplar, fişi basar; her satışı ve stoku dükkânın kendi dosyasında "
           u"saklar.";
}

}  // namespace

hallimzda::hallimzda() {
    ui.setupUi(this);
    applyTextRoles(*this);
    clicks(this, {{ui.Image1, &hallimzda::Image1_click},
                  {ui.vkCommand1, &hallimzda::vkCommand1_click},
                  {ui.urunbulunamadikapat, &hallimzda::urunbulunamadikapat_click}});
    standInFrame(*ui.vkFrame1);
    setCloseButton(*ui.urunbulunamadikapat);
    restOnCloseButton();
}

hallimzda::~hallimzda() = default;

void hallimzda::form_load() {
    ekrandonat(*this);
    ui.Label2->setText(metin(u"VERSIYON"_s) + QCoreApplication::applicationVersion());
}

void hallimzda::Image1_click() {
    ui.printedText->setText(productText());
}

void hallimzda::vkCommand1_click() {
    showInFront(screen<ekoz>());
}

void hallimzda::urunbulunamadikapat_click() {
    leave();
}

}  // namespace kovanix
