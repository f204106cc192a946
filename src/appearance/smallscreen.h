#pragma once

#include <QFont>

#include "runtime/screen.h"
#include "widgets/fontsize.h"

class QAbstractButton;

namespace kovanix {

/// A small window above the sales screen. Escape presses its close button, the window's own X unloads it, and
/// whichever way it goes, the barcode field of the sales screen has the keyboard again.
class SmallScreen : public Screen {
    Q_OBJECT

public:
    using Screen::Screen;
    ~SmallScreen() override;

protected:
    /// Names the button that closes the screen. It has the focus at first: the Enter of a scan that arrives
    /// here then does nothing worse than close the screen.
    void setCloseButton(QAbstractButton& button);

    /// Unloads the screen and gives `barkod` the focus where the sales screen stands.
    void leave();

    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QAbstractButton* m_closeButton = nullptr;
};

}  // namespace kovanix
