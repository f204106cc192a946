#include "access/passwordfield.h"

#include <QApplication>
#include <QEvent>
#include <QProxyStyle>
#include <QStyleFactory>

namespace kovanix {

/// The toolkit asks the style which character hides a password.
class PasswordField::Style : public QProxyStyle {
public:
    Style() : QProxyStyle(QStyleFactory::create(QApplication::style()->name())) {}

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returned) const override {
        if (hint == SH_LineEdit_PasswordCharacter && !character.isEmpty())
            return character.front().unicode();
        return QProxyStyle::styleHint(hint, option, widget, returned);
    }

    QString character;
};

PasswordField::PasswordField(QWidget* parent) : QLineEdit(parent), m_style(new Style) {
    m_style->setParent(this);
    setStyle(m_style);
    // Shown or hidden, nothing that suggests or remembers words gets to see it.
    setInputMethodHints(inputMethodHints() | Qt::ImhSensitiveData | Qt::ImhNoPredictiveText);
}

QString PasswordField::passwordchar() const {
    return m_style->character;
}

void PasswordField::setPasswordchar(const QString& text) {
    m_style->character = text.left(1);
    setEchoMode(m_style->character.isEmpty() ? Normal : Password);
    // The field asks its style for the character only when the style changes.
    QEvent changed(QEvent::StyleChange);
    QCoreApplication::sendEvent(this, &changed);
}

}  // namespace kovanix
