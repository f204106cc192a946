#pragma once

namespace kovanix {

/// Loads and shows the screen that the shop's day begins with.
void showFirstScreen();

}  // namespace kovanix
