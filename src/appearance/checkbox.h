#pragma once

#include <QCheckBox>

namespace kovanix {

/// A check box for thumbs: the box is drawn as large as its text and the whole control takes the press. A
/// text that doesn't fit on one line breaks.
class CheckBox : public QCheckBox {
    Q_OBJECT

public:
    using QCheckBox::QCheckBox;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool hitButton(const QPoint& position) const override { return rect().contains(position); }
};

}  // namespace kovanix
