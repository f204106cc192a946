#pragma once

#include <QColor>
#include <QIcon>
#include <QRectF>
#include <QWidget>
#include <memory>
#include <optional>

#include "widgets/look.h"

namespace kovanix {

class FittedText;

/// The frame of the drawn family: a rounded panel with a vertical gradient from backcolor1 to backcolor2, a
/// border in bordercolor and, when there is a caption, a title bar from titlecolor1 to titlecolor2 with the
/// caption in forecolor, an icon ahead of it and a note at its right end, where there are such.
///
/// Labels that stand on it and have no colour of their own get an ink that reads on its face: dark, or white
/// on a dark face. It is the window text of the frame's palette, which text fields don't use.
class vkFrame : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QString caption READ caption WRITE setCaption)
    Q_PROPERTY(kovanix::FrameRole look READ look WRITE setLook)
    Q_PROPERTY(QColor backcolor1 READ backcolor1 WRITE setBackcolor1)
    Q_PROPERTY(QColor backcolor2 READ backcolor2 WRITE setBackcolor2)
    Q_PROPERTY(QColor bordercolor READ bordercolor WRITE setBordercolor)
    Q_PROPERTY(QColor forecolor READ forecolor WRITE setForecolor)
    Q_PROPERTY(QColor titlecolor1 READ titlecolor1 WRITE setTitlecolor1)
    Q_PROPERTY(QColor titlecolor2 READ titlecolor2 WRITE setTitlecolor2)
    Q_PROPERTY(int cornerRadius READ cornerRadius WRITE setCornerRadius)
    Q_PROPERTY(int titleHeight READ titleHeight WRITE setTitleHeight)
    Q_PROPERTY(QIcon titleIcon READ titleIcon WRITE setTitleIcon)
    Q_PROPERTY(QString titleIconFile READ titleIconFile WRITE setTitleIconFile)
    Q_PROPERTY(QString titleNote READ titleNote WRITE setTitleNote)
    Q_PROPERTY(bool titleNoteRange READ isTitleNoteRange WRITE setTitleNoteRange)

public:
    explicit vkFrame(QWidget* parent = nullptr);
    ~vkFrame() override;

    const QString& caption() const { return m_caption; }
    /// The title bar takes its height off the contents' margins.
    void setCaption(const QString& text);
    /// The role that gave the frame its colours; each can be changed behind it.
    FrameRole look() const { return m_look; }
    void setLook(FrameRole role);
    QColor backcolor1() const { return m_backcolor1; }
    void setBackcolor1(const QColor& color);
    QColor backcolor2() const { return m_backcolor2; }
    void setBackcolor2(const QColor& color);
    QColor bordercolor() const { return m_bordercolor; }
    void setBordercolor(const QColor& color);
    QColor forecolor() const { return m_forecolor; }
    void setForecolor(const QColor& color);
    QColor titlecolor1() const { return m_titlecolor1; }
    void setTitlecolor1(const QColor& color);
    QColor titlecolor2() const { return m_titlecolor2; }
    void setTitlecolor2(const QColor& color);
    /// In design pixels; 0 makes a ground that fills its window to the edges, without a border.
    int cornerRadius() const { return m_cornerRadius; }
    void setCornerRadius(int radius);
    /// In design pixels.
    void setBorderWidth(int width);
    /// The title bar's height in design pixels; 0 (the start value) takes it from the font's.
    int titleHeight() const { return m_titleHeight; }
    void setTitleHeight(int height);
    /// How many lines the caption may break into; 1 unless told otherwise.
    void setTitleLines(int lines);
    /// What the title bar takes of the frame.
    QRect titleBar() const;
    /// Gives the title bar its height at the scale in use: the resizing container calls it when that changes.
    void layOutTitle();
    /// Where the caption stands in the title bar: at its left unless told otherwise.
    Qt::Alignment titleAlignment() const { return m_titleAlignment; }
    void setTitleAlignment(Qt::Alignment alignment);
    /// Painted in forecolor, as a shape.
    const QIcon& titleIcon() const { return m_titleIcon; }
    void setTitleIcon(const QIcon& icon);
    /// Takes the icon from a file, as sharedIcon does.
    const QString& titleIconFile() const { return m_titleIconFile; }
    void setTitleIconFile(const QString& path);
    /// What a list says of itself ("14 / 18.420"), in three quarters of the caption's size. Told to assistive
    /// tools as the frame's description.
    const QString& titleNote() const { return m_titleNote; }
    void setTitleNote(const QString& text);
    /// Whether the note is a range in words, which a report's title bar tells larger and in its own colour.
    bool isTitleNoteRange() const { return m_titleNoteIsRange; }
    void setTitleNoteRange(bool range);
    /// A line along the title bar's lower edge that tells how much of a reading is done: 0 to 1, nothing for
    /// no line. It is painted before the call returns, since whoever reads lets no events through.
    std::optional<double> progress() const { return m_progress; }
    void setProgress(std::optional<double> share);

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    int titlePixels() const;
    QRect progressLine() const;
    void paintTitle(QPainter& painter, const QRectF& bounds, double radius);
    QRectF paintTitleIcon(QPainter& painter, QRectF room) const;
    void inkLabels();
    void setColor(QColor& member, const QColor& color);

    QString m_caption;
    FrameRole m_look = FrameRole::none;
    QColor m_backcolor1;
    QColor m_backcolor2;
    QColor m_bordercolor;
    QColor m_forecolor;
    QColor m_titlecolor1;
    QColor m_titlecolor2;
    std::unique_ptr<FittedText> m_title;
    Qt::Alignment m_titleAlignment = Qt::AlignLeft;
    QIcon m_titleIcon;
    QString m_titleIconFile;
    QString m_titleNote;
    bool m_titleNoteIsRange = false;
    std::unique_ptr<FittedText> m_note;
    std::optional<double> m_progress;
    int m_titleHeight = 0;
    int m_titleLines = 1;
    int m_cornerRadius = 9;
    int m_borderWidth = 1;
    int m_titleMargin = 0;  // what the title bar takes of the contents' upper margin
};

}  // namespace kovanix
