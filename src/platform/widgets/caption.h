#pragma once

#include <QString>

class QWidget;

namespace kovanix {

// A caption is raw text: "&" is a letter of product names and a sign of the letter transcription, never a
// mnemonic.

/// The caption of a control as it stands: the `caption` property of the drawn family, a label's text, a
/// toolkit button's text or a group's title with the mnemonic escapes taken out, a screen's window title.
/// Empty for a control that has none (text boxes hold text, not captions).
QString caption(const QWidget& control);

/// Sets it; a toolkit button or group gets the text escaped. @return false for a control that has no caption.
bool setCaption(QWidget& control, const QString& text);

/// The name of a control's kind, as the modules speak of it: the class name without its namespace.
QString controlKind(const QWidget& control);

}  // namespace kovanix
