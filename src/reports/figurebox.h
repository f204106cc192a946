#pragma once

#include <QLineEdit>
#include <memory>

#include "widgets/look.h"

namespace kovanix {

class FittedText;

/// A box for a figure that is worked out and can't be typed: at the right, on a quiet ground. A figure that
/// has no room gets smaller and is never cut.
class FigureBox : public QLineEdit {
    Q_OBJECT

public:
    explicit FigureBox(QWidget* parent = nullptr);
    ~FigureBox() override;

    /// The role that the figure has its colour from; ink at first.
    void setInk(ColorRole role);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    ColorRole m_ink = ColorRole::ink;
    std::unique_ptr<FittedText> m_figure;
};

}  // namespace kovanix
