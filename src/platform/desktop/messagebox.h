#pragma once

#include <QString>

namespace kovanix {

/// The bits of a message box's style, in the numbering that Basic programs use: buttons in bits 0 to 3, icon
/// in bits 4 to 7, default button in bits 8 and 9.
namespace MessageBoxStyle {
inline constexpr int ok = 0;
inline constexpr int okCancel = 1;
inline constexpr int yesNoCancel = 3;
inline constexpr int yesNo = 4;
inline constexpr int retryCancel = 5;
inline constexpr int cancelTryContinue = 6;
inline constexpr int critical = 16;
inline constexpr int question = 32;
inline constexpr int warning = 48;
inline constexpr int information = 64;
inline constexpr int secondIsDefault = 256;
inline constexpr int thirdIsDefault = 512;
}  // namespace MessageBoxStyle

/// The code, in the same numbering, of the button that answered a box.
namespace MessageBoxAnswer {
inline constexpr int ok = 1;
inline constexpr int cancel = 2;
inline constexpr int retry = 4;
inline constexpr int yes = 6;
inline constexpr int no = 7;
inline constexpr int tryAgain = 10;
inline constexpr int goOn = 11;
}  // namespace MessageBoxAnswer

/// What the buttons of every box read.
struct MessageBoxCaptions {
    QString ok;
    QString cancel;
    QString retry;
    QString yes;
    QString no;
    QString tryAgain;
    QString goOn;
};

/// Sets the captions for the rest of the process; until then the toolkit's own stand on the buttons.
void setMessageBoxCaptions(const MessageBoxCaptions& captions);

/// Shows a modal message box over the active window and waits for its answer. The only place of the program
/// that constructs a box.
///
/// @param text   the body, shown as plain text
/// @param style  MessageBoxStyle bits joined; unknown button or icon values count as ok and no icon
/// @param title  the window title
/// @return the MessageBoxAnswer. Escape and the window's close answer no in a yes-no box, cancel where there
/// is a
///         cancel button, and ok otherwise.
int messageBox(const QString& text, int style, const QString& title);

}  // namespace kovanix
