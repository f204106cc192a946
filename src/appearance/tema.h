#pragma once

#include <functional>

#include "appearance/palette.h"
#include "screens/openedscreen.h"
#include "ui_tema.h"
#include "widgets/timer.h"

namespace kovanix {

/// The choice of the sales screen's palette: four pictures, each a look. A press repaints the sales screen at
/// once and stores the choice; this screen stays open, so that the next look is one press away.
class tema : public OpenedScreen {
    Q_OBJECT

public:
    tema();
    ~tema() override;

    void form_load() override;

    /// Applies the palette on file once more, without sound or question.
    void TemaKayitliUygula();

    Ui::tema ui;
    // Nothing starts these; a tick runs the picture's procedure once.
    Timer resim1bas;
    Timer resim2bas;
    Timer resim3bas;
    Timer resim4bas;

private:
    void resim1_click();
    void resim2_click();
    void resim3_click();
    void resim4_click();
    void temaac_click();
    void vkCommand1_click();
    void vkCommand2_click();

    void chooseAskingFirst(Palette palette);
    void paintSales(Palette palette);
    void markPalette(Palette palette);
};

/// Replaces the sound of a press; an empty function brings the machine's own back. The program itself never
/// calls it.
void setThemeBeep(std::function<void()> beep);

}  // namespace kovanix
