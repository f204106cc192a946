#pragma once

namespace kovanix {

/// Tells the toolkit the program's name and version; the one part of prepareApplication that needs no
/// display.
void nameApplication();

/// Sets up what every program with the till's screens needs before the first of them: names and version,
/// fonts and colours that don't depend on the desktop, the words on message boxes, and where the database
/// drivers lie.
void prepareApplication();

}  // namespace kovanix
