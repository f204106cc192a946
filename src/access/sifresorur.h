#pragma once

#include "screens/openedscreen.h"
#include "ui_sifresorur.h"

namespace kovanix {

/// The password prompt: asks for the session's password once more, then carries out the pending action of the
/// screen that asked. `nereye` says which that is: "1" the products, "2" the users.
class sifresorur : public OpenedScreen {
    Q_OBJECT

public:
    sifresorur();
    ~sifresorur() override;

    void form_load() override;

    Ui::sifresorur ui;
};

}  // namespace kovanix
