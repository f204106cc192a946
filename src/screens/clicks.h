#pragma once

#include <QAbstractButton>
#include <initializer_list>
#include <type_traits>

namespace kovanix {

/// A button and the procedure that runs when it is pressed.
template <class S>
struct Click {
    QAbstractButton* button;
    void (S::*procedure)();
};

/// Connects the buttons of a screen with its procedures:
///     clicks(this, {{ui.kaydet, &urunler::kaydet_click}, {ui.kapat, &urunler::kapat_click}});
template <class S>
void clicks(S* screen, std::initializer_list<Click<std::type_identity_t<S>>> all) {
    for (const Click<S>& click : all)
        QObject::connect(click.button, &QAbstractButton::clicked, screen, click.procedure);
}

}  // namespace kovanix
