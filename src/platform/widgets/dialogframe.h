#pragma once

#include "widgets/drawnframe.h"

namespace kovanix {

/// Whether a window without a frame of the desktop's can be cut out. Transparent corners would be black where
/// there is no compositor, and only X cuts windows out.
bool canCutWindows();

/// Cuts the corners of a window round. @param radius in pixels
void cutCorners(QWidget& window, double radius);

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
