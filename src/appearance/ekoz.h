#pragma once

#include "screens/openedscreen.h"
#include "ui_ekoz.h"

namespace kovanix {

/// The extra features.
class ekoz : public OpenedScreen {
    Q_OBJECT

public:
    ekoz();
    ~ekoz() override;

    void form_load() override;

    Ui::ekoz ui;

private:
    void vkCommand1_click();
    void vkCommand3_click();
};

}  // namespace kovanix
