#pragma once

#include <QPixmap>

#include "appearance/palette.h"
#include "widgets/pressable.h"

namespace kovanix {

/// A press button that shows the sales screen small, in one of its palettes. It is drawn from the palette
/// table itself, so that the picture can't promise what the screen doesn't keep; nothing is drawn before it
/// is seen.
class Miniature : public Pressable<QAbstractButton> {
    Q_OBJECT
    Q_PROPERTY(bool chosen READ chosen WRITE setChosen)

public:
    explicit Miniature(QWidget* parent = nullptr);

    Palette look() const { return m_look; }
    void setLook(Palette look);

    /// Whether it bears the mark of the palette in use.
    bool chosen() const { return m_chosen; }
    void setChosen(bool chosen);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    QRectF pictureRect() const;

    Palette m_look = Palette::resim1;
    bool m_chosen = false;
    QPixmap m_picture;  // at the size and scale of the last painting
};

/// Draws the sales screen in a palette into a rectangle: schematic, each control in its own colours.
void paintMiniature(QPainter& painter, const QRectF& room, Palette look);

}  // namespace kovanix
