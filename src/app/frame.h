#pragma once

namespace kovanix {

/// Tells the toolkit the program's name and version; the one part of prepareApplication that needs no
/// display.
void nameApplication();

/// Has the toolkit's own texts, a field's menu for one, in Turkish. A machine without them shows English
/// there; the till's own texts are never looked up. Needs an application object and no display.
void installToolkitWords();

/// Sets up what every program with the till's screens needs before the first of them: names and version,
/// fonts and colours that don't depend on the desktop, the words on message boxes, and where the database
/// drivers lie.
void prepareApplication();

}  // namespace kovanix
