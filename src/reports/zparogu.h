#pragma once

#include <QElapsedTimer>

#include "screens/openedscreen.h"
#include "ui_zparogu.h"

namespace kovanix {

/// The Z report: first sale, last sale and turnover between two moments, and a page with them. It closes
/// nothing and stores nothing.
class zparogu : public OpenedScreen {
    Q_OBJECT

public:
    zparogu();
    ~zparogu() override;

    void form_load() override;
    void form_activate() override;

    Ui::zparogu ui;

private:
    void Command3_click();
    void Command1_click();
    void Image1_click();
    void Image2_click();
    void saat_lostfocus();
    void cmdClose_click();

    void moveDays(int days);
    void tellRange();

    bool m_busy = false;  ///< running or printing
    QElapsedTimer m_sinceJob;
};

}  // namespace kovanix
