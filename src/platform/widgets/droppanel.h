#pragma once

#include <QList>
#include <QRect>

#include "widgets/drawnframe.h"

namespace kovanix {

/// Where a panel goes that drops from a field, in the coordinates that the rectangles have.
struct DropPlace {
    QPoint corner;  ///< its upper left one
    bool inside;    ///< it stays in the window of its field
};

/// Below the field or, where there is no room, above it: within its window, else on the display. A panel with
/// room in neither place covers the field; it never leaves the display where it fits onto it.
/// @param gap  between the field and the panel
DropPlace dropPlace(QSize panel, const QRect& field, const QRect& window, const QRect& display, int gap);

/// A small panel that drops from a field, modeless. It is a part of the field's window where that has room
/// for it, and a window of its own where it hasn't. It has the keyboard, and Tab goes round in it.
class DropPanel : public vkFrame {
    Q_OBJECT

public:
    /// @param field  belongs to the same window; outlives the panel
    explicit DropPanel(QWidget& field);
    ~DropPanel() override;

    /// Shows it near its field, with the keyboard in it.
    /// @param byKeyboard  a key has done it, so what has the focus in there shows it
    void drop(bool byKeyboard);
    /// Hides it and gives the keyboard back to the field, where the panel has it. It is deleted later.
    void discard();

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    /// It is to go and nothing was chosen: Escape or F4, a press elsewhere, or a window of another size.
    void left();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    bool focusNextPrevChild(bool next) override;

    /// What Tab goes to, the first one at first.
    virtual QList<QWidget*> stops() const = 0;

    /// A length in pixels, from that at the design size; one that a finger has to hit is never below 40.
    int scaled(int design) const;
    int target(int design) const;
    /// In the size that a text of so many pixels at the design size has; never too small to be read.
    QFont textFont(int design, QFont::Weight weight) const;

    bool isByKeyboard() const { return m_byKeyboard; }

private:
    bool dropsPress(const QWidget& hit, const QPoint& place);

    QWidget& m_field;
    const double m_scale;
    bool m_byKeyboard = false;
};

}  // namespace kovanix
