#include "appearance/keyboard.h"

#include "appearance/keyboardscreen.h"
#include "appearance/mdlMonitors.h"
#include "runtime/screenregistry.h"

namespace kovanix {

namespace {
constexpr int widestPlain = 1024;  // pixels
}

void openKeyboard(int code, QWidget& opener) {
    if (Monitors.empty())
        monitorlerioku();
    if (Monitors.front().width > widestPlain)
        screen<klavyeyeni>().open(code, opener);
    else
        screen<klavyeyeni2>().open(code, opener);
}

void openNumberPad(int code, QWidget& opener) {
    screen<klavyesayi>().open(code, opener);
}

void closeKeyboards(const QWidget& opener) {
    for (Screen* screen : ScreenRegistry::all()) {
        auto* keyboard = qobject_cast<KeyboardScreen*>(screen);
        if (keyboard && keyboard->isFor(opener))
            ScreenRegistry::unload(*keyboard);
    }
}

}  // namespace kovanix
