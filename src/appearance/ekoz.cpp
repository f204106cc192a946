#include "appearance/ekoz.h"

#include "app/modTurkce.h"
#include "screens/clicks.h"
#include "widgets/look.h"

namespace kovanix {

ekoz::ekoz() {
    ui.setupUi(this);
    applyTextRoles(*this);
    ui.vkCommand2->hide();  // it has neither a caption nor a task
    clicks(this, {{ui.vkCommand1, &ekoz::vkCommand1_click}, {ui.vkCommand3, &ekoz::vkCommand3_click}});
    standInFrame(*ui.vkFrame1);
    setCloseButton(*ui.vkCommand3);
    restOnCloseButton();
}

ekoz::~ekoz() = default;

void ekoz::form_load() {
    // The table of titles doesn't know this screen: its title stays as stored, symbol and all, as required.
    ekrandonat(*this);
}

/// Shows a window that nothing in the program makes: the press does nothing, and the button stays all the
/// same.
void ekoz::vkCommand1_click() {}

void ekoz::vkCommand3_click() {
    leave();
}

}  // namespace kovanix
