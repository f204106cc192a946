#pragma once

#include "widgets/drawnframe.h"
#include "widgets/pressable.h"

namespace kovanix {

/// A frame that shows one colour and can be pressed. The keyboard reaches it where its focus policy says so.
class Swatch : public Pressable<vkFrame> {
    Q_OBJECT

public:
    explicit Swatch(QWidget* parent = nullptr);

Q_SIGNALS:
    /// A mouse button (any), a finger, Enter or Space went down on it.
    void mousedown();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void pressedByKey() override { Q_EMIT mousedown(); }
};

}  // namespace kovanix
