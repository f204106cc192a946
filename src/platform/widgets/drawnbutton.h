#pragma once

#include <QBasicTimer>
#include <QColor>
#include <QMarginsF>
#include <memory>
#include <span>
#include <utility>

#include "widgets/look.h"
#include "widgets/pressable.h"

namespace kovanix {

/// A button that paints itself: a rounded face with a vertical gradient from backcolor1 to backcolor2 (while
/// pressed from backcolorpushed1 to backcolorpushed2), the caption in forecolor, an optional icon, a focus
/// ring that can be seen from arm's length, and a disabled state that can't be taken for an enabled one.
/// Where the face behind the caption comes too near to forecolor, a thin outline keeps it legible, and a
/// ground of its own the key hint; the colours themselves are painted as they were set. Icons have no
/// outline: the caption says what they show.
///
/// An icon stands where iconPlace says; its iconSize is in design pixels and grows with the resizing
/// container, never beyond the face. The size hint doesn't depend on the caption, so that no change of a text
/// moves a neighbour.
class DrawnButton : public Pressable<QAbstractButton> {
    Q_OBJECT
    Q_PROPERTY(QString caption READ caption WRITE setCaption)
    Q_PROPERTY(kovanix::FaceRole look READ look WRITE setLook)
    Q_PROPERTY(QColor backcolor1 READ backcolor1 WRITE setBackcolor1)
    Q_PROPERTY(QColor backcolor2 READ backcolor2 WRITE setBackcolor2)
    Q_PROPERTY(QColor backcolorpushed1 READ backcolorpushed1 WRITE setBackcolorpushed1)
    Q_PROPERTY(QColor backcolorpushed2 READ backcolorpushed2 WRITE setBackcolorpushed2)
    Q_PROPERTY(QColor forecolor READ forecolor WRITE setForecolor)
    Q_PROPERTY(QString keyHint READ keyHint WRITE setKeyHint)
    Q_PROPERTY(int fontsize READ fontsize WRITE setFontsize)
    Q_PROPERTY(QString iconFile READ iconFile WRITE setIconFile)
    Q_PROPERTY(IconPlace iconPlace READ iconPlace WRITE setIconPlace)
    Q_PROPERTY(bool iconAtEdge READ isIconAtEdge WRITE setIconAtEdge)
    Q_PROPERTY(bool captionIsName READ isCaptionName WRITE setCaptionIsName)
    Q_PROPERTY(int captionLines READ captionLines WRITE setCaptionLines)
    Q_PROPERTY(int holdTime READ holdTime WRITE setHoldTime)
    Q_PROPERTY(Qt::Alignment captionAlignment READ captionAlignment WRITE setCaptionAlignment)

public:
    /// Where an icon stands that has a caption.
    enum class IconPlace {
        byHeight,  ///< above the caption where the button is high enough for two lines below it, else beside
        above,     ///< above it on a lower button, too: for captions of one line
        beside,    ///< at its left, however high the button is
    };
    Q_ENUM(IconPlace)

    explicit DrawnButton(QWidget* parent = nullptr);
    ~DrawnButton() override;

    const QString& caption() const { return m_caption; }
    /// Painted as it stands; breaks into lines where it doesn't fit, and shrinks where the lines don't fit
    /// either.
    void setCaption(const QString& text);

    /// Whether the caption is a name that somebody typed, of any length: that ends in an ellipsis before it
    /// gets too small to be read. What a button does is never cut.
    bool isCaptionName() const { return m_captionIsName; }
    void setCaptionIsName(bool isName);

    /// The role that the colours, the rim and the disabled state come from. A colour that is set by itself
    /// ends it.
    FaceRole look() const { return m_look; }
    void setLook(FaceRole role);

    QColor backcolor1() const { return m_backcolor1; }
    void setBackcolor1(const QColor& color);
    QColor backcolor2() const { return m_backcolor2; }
    void setBackcolor2(const QColor& color);
    QColor backcolorpushed1() const { return m_backcolorpushed1; }
    void setBackcolorpushed1(const QColor& color);
    QColor backcolorpushed2() const { return m_backcolorpushed2; }
    void setBackcolorpushed2(const QColor& color);
    QColor forecolor() const { return m_forecolor; }
    void setForecolor(const QColor& color);

    /// A short reminder of the key that presses the button ("F1"), small in a corner; empty for none.
    const QString& keyHint() const { return m_keyHint; }
    void setKeyHint(const QString& hint);

    /// The caption's size in points; 0 (the start value) follows the widget's font. A fixed size isn't
    /// touched by the resizing container.
    int fontsize() const { return m_fontsize; }
    void setFontsize(int points);

    /// The size in pixels that the caption is painted in, where nothing but its own room limits it.
    int fittingCaptionSize();
    /// The largest size in pixels that the caption is painted in; 0 (the start value) for no limit.
    void setLargestCaption(int pixels);
    /// The size in pixels that the caption is painted in.
    int captionSize();

    /// Takes the icon from a file, as sharedIcon does.
    const QString& iconFile() const { return m_iconFile; }
    void setIconFile(const QString& path);

    IconPlace iconPlace() const { return m_iconPlace; }
    void setIconPlace(IconPlace place);

    Qt::Alignment captionAlignment() const { return m_captionAlignment; }
    void setCaptionAlignment(Qt::Alignment alignment);

    /// Whether an icon beside the caption stands at the left edge, so that those of buttons above one another
    /// are in one column; else both stand in the middle together.
    bool isIconAtEdge() const { return m_iconAtEdge; }
    void setIconAtEdge(bool atEdge);

    /// How many lines the caption may break into before it shrinks; 3 unless told otherwise.
    int captionLines() const { return m_captionLines; }
    void setCaptionLines(int lines);

    /// A finger has no right button: one that rests on the control for so many milliseconds presses it, as
    /// mousedown tells, and its lifting is no click then. 0 (the start value) leaves it at clicks.
    int holdTime() const { return m_holdTime; }
    void setHoldTime(int milliseconds);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// A mouse button (any) went down on the control, enabled or not clicked in the end.
    void mousedown(Qt::MouseButton button);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    bool event(QEvent* event) override;

    /// The colours of the face, top and bottom, before a disabled control's are muted.
    virtual std::pair<QColor, QColor> faceColors(bool pressed) const;
    /// What an enabled control's caption, icon and key hint are painted in.
    virtual QColor ink() const;
    /// The rim of a face of those two colours, where it has no role.
    virtual QColor rim(const QColor& top, const QColor& bottom) const;
    /// Whether an enabled face that isn't pressed is lit along its upper edge.
    virtual bool isLit() const { return true; }
    /// What the caption leaves free at the face's edges besides the usual padding, in pixels.
    virtual QMarginsF captionMargins() const { return {}; }
    /// The caption is another one now.
    virtual void captionChanged() {}
    double cornerRadius() const;

private:
    struct Arrangement;
    struct State;

    void setColor(QColor& member, const QColor& color);
    void arrange();
    void fitCaption(const QRectF& box, int wanted);
    State state() const;
    QColor outlineAt(const State& state, const QRectF& part, double wanted) const;
    void paintIcon(QPainter& painter, const State& state);
    void paintKeyHint(QPainter& painter, const State& state);
    void nameAfterCaption();

    QString m_caption;
    FaceRole m_look = FaceRole::none;
    QString m_keyHint;
    QColor m_backcolor1;
    QColor m_backcolor2;
    QColor m_backcolorpushed1;
    QColor m_backcolorpushed2;
    QColor m_forecolor;
    int m_fontsize = 0;
    int m_largestCaption = 0;
    QString m_iconFile;
    IconPlace m_iconPlace = IconPlace::byHeight;
    bool m_iconAtEdge = false;
    bool m_captionIsName = false;
    int m_captionLines = 3;
    int m_holdTime = 0;
    QBasicTimer m_hold;   // runs while a press may still become a held one
    bool m_held = false;  // the running press was held: it clicks nothing
    Qt::Alignment m_captionAlignment = Qt::AlignCenter;
    QString m_givenName;  // the accessible name that follows the caption or tip
    std::unique_ptr<Arrangement> m_arrangement;
};

/// Gives the captions of a row of buttons one size: the smallest of those that fit each by itself.
void equalizeCaptions(std::span<DrawnButton* const> row);

/// The command button of the drawn family.
class vkCommand : public DrawnButton {
    Q_OBJECT
public:
    using DrawnButton::DrawnButton;
};

/// The toggle button of the drawn family; as long as it isn't checkable, a display that can be pressed.
class vkToggleButton : public DrawnButton {
    Q_OBJECT
public:
    using DrawnButton::DrawnButton;
};

/// The plain command button: one face colour, unless it has a role. Its caption is painted in forecolor where
/// that is legible, else in black or white: themes change the face alone. With an empty caption it shows as
/// an open slot that waits to be filled: a dashed rim and, where it can be pressed, a "+".
class CommandButton : public DrawnButton {
    Q_OBJECT
public:
    using DrawnButton::DrawnButton;

protected:
    void paintEvent(QPaintEvent* event) override;
    std::pair<QColor, QColor> faceColors(bool pressed) const override;
    QColor ink() const override;

private:
    void paintPlus(QPainter& painter) const;
};

}  // namespace kovanix
