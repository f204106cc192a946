#pragma once

#include "screens/openedscreen.h"
#include "ui_sifresorur.h"

namespace kovanix {

/// The password prompt: asks for the session's password once more, then carries out the pending action of the
/// screen that asked. `nereye` says which that is: "1" the products, "2" the users.
///
/// Enter in the field is no answer: with the right password it closes the prompt, and nothing is carried out.
class sifresorur : public OpenedScreen {
    Q_OBJECT

public:
    sifresorur();
    ~sifresorur() override;

    void form_load() override;

    Ui::sifresorur ui;

private:
    void giveFocusBack() override;

    void vkCommand1_click();
    void Command1_click();
    void sifrekapat_click();
    void Text1_keydown(int key);

    void refuse();

    bool m_answered = false;  // by the right password: there is nothing left to ask
};

}  // namespace kovanix
