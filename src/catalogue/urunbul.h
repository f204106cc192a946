#pragma once

#include "screens/listscreen.h"
#include "ui_urunbul.h"

namespace kovanix {

/// The product finder: the catalogue to look at, from which one product is handed to the sales screen.
/// `nereye` says where it goes: "1" onto the ticket, "2" into the set-up of a quick-sale button.
class urunbul : public ListScreen {
    Q_OBJECT

public:
    urunbul();
    ~urunbul() override;

    void form_load() override;
    void form_activate() override;

    Ui::urunbul ui;

private:
    void TDBGrid1_dblclick() override;
    void vkCommand4_click();
};

}  // namespace kovanix
