#pragma once

#include <QCheckBox>

#include "widgets/pressable.h"

namespace kovanix {

/// A check box for thumbs: the box is drawn as large as its text and the whole control takes the press. A
/// text that doesn't fit on one line breaks.
class CheckBox : public Pressable<QCheckBox> {
    Q_OBJECT

public:
    using Pressable::Pressable;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool hitButton(const QPoint& position) const override { return rect().contains(position); }
};

}  // namespace kovanix
