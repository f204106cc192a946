#include "appearance/keyboard.h"

namespace kovanix {

void openKeyboard(int /*code*/, QWidget& /*opener*/) {}
void openNumberPad(int /*code*/, QWidget& /*opener*/) {}

}  // namespace kovanix
