#pragma once

#include "screens/openedscreen.h"
#include "ui_hallimzda.h"

namespace kovanix {

/// The about screen: what the program is, which version, and the door to the extra features.
class hallimzda : public OpenedScreen {
    Q_OBJECT

public:
    hallimzda();
    ~hallimzda() override;

    void form_load() override;

    Ui::hallimzda ui;

private:
    void Image1_click();
    void vkCommand1_click();
    void urunbulunamadikapat_click();
};

}  // namespace kovanix
