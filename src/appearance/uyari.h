#pragma once

#include "screens/openedscreen.h"
#include "ui_uyari.h"
#include "widgets/timer.h"

namespace kovanix {

/// A brief notice. Whoever shows it sets the text of `yazi` and gives `kapat` an interval first.
class uyari : public OpenedScreen {
    Q_OBJECT

public:
    uyari();
    ~uyari() override;

    void form_load() override;

    Ui::uyari ui;
    Timer kapat;  ///< unloads the notice when its time is over; stands still until it gets an interval

private:
    void kapat_tick();
    void Command1_click();
};

}  // namespace kovanix
