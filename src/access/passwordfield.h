#pragma once

#include <QLineEdit>
#include <QString>

namespace kovanix {

/// A text box that can hide what is typed into it behind a password character. Shown or hidden, it keeps no
/// history: an undo brings nothing back.
class PasswordField : public QLineEdit {
    Q_OBJECT
    Q_PROPERTY(QString passwordchar READ passwordchar WRITE setPasswordchar)

public:
    explicit PasswordField(QWidget* parent = nullptr);

    /// What stands for each character; empty (the start value) shows the text itself.
    const QString& passwordchar() const { return m_passwordchar; }
    /// Takes the first character of the text.
    void setPasswordchar(const QString& text);

private:
    void forgetHistory();

    QString m_passwordchar;
};

}  // namespace kovanix
