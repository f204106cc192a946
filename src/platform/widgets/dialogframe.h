#pragma once

#include "widgets/drawnframe.h"

namespace kovanix {

/// The frame of a dialog that gets none from the desktop: a rim, and a title bar by which the dialog can be
/// moved. Its corners are round, and with them the dialog's, where a window can have such. Fills the dialog.
class DialogFrame : public vkFrame {
    Q_OBJECT

public:
    explicit DialogFrame(QWidget* parent);

    /// For a dialog without a resizing container, which scales the frame by itself.
    void setScale(double scale);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
};

}  // namespace kovanix
