#pragma once

#include "screens/recordscreen.h"
#include "ui_liste.h"

namespace kovanix {

/// The customers' address book. It stands by itself: no sale names a customer, and nothing here asks for a
/// password.
class liste : public RecordScreen {
    Q_OBJECT

public:
    liste();
    ~liste() override;

    void form_load() override;

    Ui::liste ui;

private:
    void kisiekleme2_click();
    void duzenle2_click();
    void kisisil2_click();
    void excelekaydet_click();
    void kaydet2_click();
    void vazgec2_click();
    void vkCommand2_click();

    bool nameIsGiven();
    void save();
};

}  // namespace kovanix
