#pragma once

#include "screens/openedscreen.h"
#include "ui_raporlarmenu.h"

namespace kovanix {

/// The menu of the reports: sales, stock, Z. Whoever gets here may open all three.
class raporlarmenu : public OpenedScreen {
    Q_OBJECT

public:
    raporlarmenu();
    ~raporlarmenu() override;

    void form_load() override;

    Ui::raporlarmenu ui;

private:
    void fiyatgor_click();
    void vkCommand1_click();
    void vkCommand2_click();
    void vkCommand3_click();
};

}  // namespace kovanix
