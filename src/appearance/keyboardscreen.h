#pragma once

#include <QPointer>

#include "appearance/keyboardkeys.h"
#include "screens/openedscreen.h"

class QLineEdit;

namespace kovanix {

class ActiveResize;
class DrawnButton;
class KeyboardField;
class vkFrame;

/// An on-screen keyboard. Its keys build up a text in a box of its own, and ENTER hands that over to the
/// target that the hidden box `nereye` names, then presses Enter there.
class KeyboardScreen : public OpenedScreen {
    Q_OBJECT

public:
    ~KeyboardScreen() override;

    void form_load() override;

    /// Shows the keyboard for a target code. One that is open already keeps what was typed.
    /// @param opener  the window that it belongs to from now on, or a control of it
    void open(int code, QWidget& opener);

    /// Whether that window has opened the keyboard.
    bool isFor(const QWidget& opener) const { return m_opener == &opener; }

    /// A press of the key with that index.
    void vkCommand1_click(int index);
    /// Unloads the keyboard; nothing is handed over.
    void kapat_click();

    struct Controls {
        ActiveResize* ActiveResize1;
        vkFrame* abc;
        KeyboardField* yazilan;
        QLineEdit* nereye;
        DrawnButton* kapat;
    };
    Controls ui;

protected:
    enum class Make { drawn, plain };
    KeyboardScreen(KeyboardKind kind, Make make);

    /// To the box that was to be filled in, where that can be seen; else to the window that asked for the
    /// keyboard.
    void giveFocusBack() override;

private:
    DrawnButton* addButton(const QString& name, const QString& caption, const char* textRole);
    void addKeys();
    DrawnButton* keyOf(int index) const;

    void layOut();
    QSize layOutFull();
    QSize layOutPad();
    bool isLarge() const;

    void nereye_change();
    QString typedBy(KeyWork work, int index) const;
    void enter();

    KeyboardKind m_kind;
    Make m_make;
    QPointer<QWidget> m_opener;
    QPointer<QWidget> m_entered;  // what ENTER goes on in; none as long as it hasn't been pressed
};

/// Letters and digits, with drawn keys.
class klavyeyeni : public KeyboardScreen {
    Q_OBJECT
public:
    klavyeyeni();
};

/// The same with plain keys, for screens up to 1024 pixels wide.
class klavyeyeni2 : public KeyboardScreen {
    Q_OBJECT
public:
    klavyeyeni2();
};

/// Digits.
class klavyesayi : public KeyboardScreen {
    Q_OBJECT
public:
    klavyesayi();
};

}  // namespace kovanix
