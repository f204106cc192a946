#pragma once

#include "screens/openedscreen.h"
#include "ui_stokraporu.h"

namespace kovanix {

/// The stock report: how many products there are, what their stock has cost, what it will bring, and the
/// difference. Worked out once, when the screen is loaded.
class stokraporu : public OpenedScreen {
    Q_OBJECT

public:
    stokraporu();
    ~stokraporu() override;

    void form_load() override;

    Ui::stokraporu ui;

private:
    void vkCommand3_click();
};

}  // namespace kovanix
