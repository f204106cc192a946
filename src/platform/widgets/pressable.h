#pragma once

#include <QAbstractButton>
#include <QKeyEvent>
#include <type_traits>

namespace kovanix {

/// A control that a finger presses and that takes Enter (both of them) and Space like a finger while it has
/// the focus: once per key press, however long the key is held.
///
/// @tparam Control  the toolkit's control that it is besides
template <class Control>
class Pressable : public Control {
public:
    using Control::Control;

protected:
    void keyPressEvent(QKeyEvent* event) override {
        const int key = event->key();
        if (key != Qt::Key_Return && key != Qt::Key_Enter && key != Qt::Key_Space) {
            Control::keyPressEvent(event);
            return;
        }
        event->accept();
        if (!event->isAutoRepeat())
            pressedByKey();
    }

    /// What such a key does; a button is clicked.
    virtual void pressedByKey() {
        if constexpr (std::is_base_of_v<QAbstractButton, Control>)
            this->click();
    }
};

/// Has assistive tools know a control that isn't one of the toolkit's buttons as a button that they can
/// press.
void tellAsButton(QWidget& control);

}  // namespace kovanix
