#pragma once

namespace kovanix {

/// Loads and shows the login screen, then has it list the users: what the shop's day begins with, and the way
/// back to the login.
void showFirstScreen();

}  // namespace kovanix
