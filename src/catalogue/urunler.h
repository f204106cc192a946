#pragma once

#include "screens/recordscreen.h"
#include "ui_urunler.h"

namespace kovanix {

/// The catalogue: the list of the products, in which they are added, changed, deleted and exported.
class urunler : public RecordScreen {
    Q_OBJECT

public:
    urunler();
    ~urunler() override;

    void form_load() override;

    // The actions that the password guards, behind the guard: for the buttons and for the prompt.

    /// Opens the entry frame for a new product.
    void add();
    /// Opens the entry frame for the selected product.
    void edit();
    /// Asks, then deletes the selected product.
    void remove();

    /// Looks the typed barcode up in the ready-made catalogue and takes the product's name from there.
    /// Nothing calls it: required.
    void hazirbarkodbak();

    Ui::urunler ui;

private:
    void connectControls();
    void kisiekleme2_click();
    void duzenle2_click();
    void kisisil2_click();
    void kayit_click();
    void kaydet2_click();
    void vazgec2_click();
    void excelekaydet_click();
    void vkCommand4_click();

    bool barkod2_lostfocus();
    void enableBarcode(bool enabled);
    void writeProduct();
};

}  // namespace kovanix
