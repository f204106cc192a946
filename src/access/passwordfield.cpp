#include "access/passwordfield.h"

namespace kovanix {

using namespace Qt::StringLiterals;

PasswordField::PasswordField(QWidget* parent) : QLineEdit(parent) {
    // Shown or hidden, nothing that suggests or remembers words gets to see it.
    setInputMethodHints(inputMethodHints() | Qt::ImhSensitiveData | Qt::ImhNoPredictiveText);
    connect(this, &QLineEdit::textChanged, this, &PasswordField::forgetHistory);
}

/// The toolkit's line keeps what was typed for an undo, and has no switch for it; setting a text clears that.
void PasswordField::forgetHistory() {
    const int cursor = cursorPosition();
    setText(text());
    setCursorPosition(cursor);
}

void PasswordField::setPasswordchar(const QString& text) {
    m_passwordchar = text.left(1);
    if (m_passwordchar.isEmpty()) {
        setEchoMode(Normal);
        return;
    }
    ensurePolished();  // before that, a second character would not be taken
    setStyleSheet(u"lineedit-password-character: %1"_s.arg(m_passwordchar.front().unicode()));
    setEchoMode(Password);
}

}  // namespace kovanix
