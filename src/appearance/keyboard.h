#pragma once

class QWidget;

namespace kovanix {

/// Opens the full on-screen keyboard for a target code: `klavyeyeni` where the first monitor is wider than
/// 1024 pixels, else `klavyeyeni2`. It belongs to the window of the screen that asks for it and stays above
/// it. One that is open already takes the new target and keeps what was typed.
void openKeyboard(int code, QWidget& opener);

/// The same for the number pad, `klavyesayi`.
void openNumberPad(int code, QWidget& opener);

/// Closes the keyboards that a window has opened: what they were opened for is another record by now.
void closeKeyboards(const QWidget& opener);

}  // namespace kovanix
