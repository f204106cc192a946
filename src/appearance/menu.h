#pragma once

#include "screens/openedscreen.h"
#include "ui_menu.h"

namespace kovanix {

/// The tools menu: themes, users, the way back to the login, the calculator, the manual, the end of the
/// program.
class menu : public OpenedScreen {
    Q_OBJECT

public:
    menu();
    ~menu() override;

    void form_load() override;

    Ui::menu ui;

private:
    void connectControls();

    void vkCommand1_click();
    void vkCommand2_click();
    void vkCommand3_click();
    void vkCommand4_click();
    void vkCommand5_click();
    void vkCommand10_click();
    void kapat_click();
};

}  // namespace kovanix
