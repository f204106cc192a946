#include "appearance/uyari.h"

#include "app/modTurkce.h"
#include "screens/clicks.h"
#include "widgets/look.h"

namespace kovanix {

uyari::uyari() {
    ui.setupUi(this);
    applyTextRoles(*this);
    connect(&kapat, &Timer::tick, this, &uyari::kapat_tick);
    clicks(this, {{ui.Command1, &uyari::Command1_click}});
    standInFrame(*ui.vkFrame1);
    setCloseButton(*ui.Command1);
}

uyari::~uyari() = default;

void uyari::form_load() {
    ekrandonat(*this);
}

void uyari::kapat_tick() {
    leave();
    kapat.setInterval(0);
}

void uyari::Command1_click() {
    leave();
}

}  // namespace kovanix
