#pragma once

#include "widgets/drawnframe.h"

namespace kovanix {

/// A frame that shows one colour. Where its focus policy lets the keyboard reach it, Enter and Space press it
/// like a finger.
class Swatch : public vkFrame {
    Q_OBJECT

public:
    using vkFrame::vkFrame;

Q_SIGNALS:
    /// A mouse button (any), a finger, Enter or Space went down on it.
    void mousedown();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace kovanix
