#pragma once

#include "access/passwordfield.h"

namespace kovanix {

/// The box of an on-screen keyboard that holds what has been typed, with the name of what is being filled in
/// painted above the text. Assistive tools hear the name as the description.
class KeyboardField : public PasswordField {
    Q_OBJECT

public:
    explicit KeyboardField(QWidget* parent = nullptr);

    const QString& label() const { return m_label; }
    /// Empty for none: the text then has the whole box.
    void setLabel(const QString& label);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    QFont labelFont() const;
    void placeText();
    void paintFocusLine(QPainter& painter) const;

    QString m_label;
};

}  // namespace kovanix
