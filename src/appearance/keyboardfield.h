#pragma once

#include "access/passwordfield.h"

namespace kovanix {

/// The box of an on-screen keyboard that holds what has been typed, with the name of what is being filled in
/// painted above the text. A long text is written smaller, down to half the size. Assistive tools hear the
/// name as the description.
class KeyboardField : public PasswordField {
    Q_OBJECT

public:
    explicit KeyboardField(QWidget* parent = nullptr);

    const QString& label() const { return m_label; }
    /// Empty for none: the text then has the whole box.
    void setLabel(const QString& label);

    /// Finds the size that suits the text as it is displayed; by itself behind every change of the text.
    void fitText();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    QFont labelFont() const;
    void placeText();
    void paintFocusLine(QPainter& painter) const;

    QString m_label;
    int m_fullPixels = 0;  ///< the text's size as the screen gives it
    bool m_fitting = false;
};

}  // namespace kovanix
