#include "widgets/drawnframe.h"

#include <QEvent>
#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <algorithm>
#include <cmath>

#include "widgets/face.h"
#include "widgets/fittedtext.h"
#include "widgets/look.h"
#include "widgets/pictures.h"

namespace kovanix {
namespace {

// What labels are written in while they are out of use.
const QColor paleInk(0x7C, 0x87, 0x94);
const QColor paleInkOnDark(0xA3, 0xAB, 0xB5);

// The title bar runs from left to right, slowly first: a caption at the left stands on its first colour
// whatever the second one is.
constexpr double titleKnee = 0.35;

double titleShare(double place) {
    constexpr double shareAtKnee = 0.15;
    return place <= titleKnee ? shareAtKnee * place / titleKnee
                              : shareAtKnee + (1 - shareAtKnee) * (place - titleKnee) / (1 - titleKnee);
}

}  // namespace

vkFrame::vkFrame(QWidget* parent)
    : QWidget(parent),
      m_backcolor1(0xFB, 0xFB, 0xFB),
      m_backcolor2(0xEC, 0xEF, 0xF3),
      m_bordercolor(0xB4, 0xBE, 0xCA),
      m_forecolor(Qt::white),
      m_titlecolor1(0x21, 0x5A, 0xC8),
      m_titlecolor2(0x4C, 0x86, 0xE8),
      m_title(std::make_unique<FittedText>()),
      m_note(std::make_unique<FittedText>()) {
    inkLabels();
}

vkFrame::~vkFrame() = default;

void vkFrame::setCaption(const QString& text) {
    if (m_caption == text)
        return;
    if (accessibleName().isEmpty() || accessibleName() == m_caption)
        setAccessibleName(text);
    m_caption = text;
    layOutTitle();
    update();
}

void vkFrame::setColor(QColor& member, const QColor& color) {
    if (member == color)
        return;
    member = color;
    update();
}

void vkFrame::setLook(FrameRole role) {
    m_look = role;
    if (role == FrameRole::none || role == FrameRole::ring)
        return;
    if (role == FrameRole::backdrop) {
        setBackcolor1(roleColor(ColorRole::backdropTop));
        setBackcolor2(roleColor(ColorRole::backdropBottom));
        setCornerRadius(0);
        return;
    }
    m_borderWidth = 1;
    if (role == FrameRole::adds || role == FrameRole::edits) {
        const bool adds = role == FrameRole::adds;
        m_borderWidth = 2;
        setBackcolor1(roleColor(ColorRole::card));
        setBackcolor2(roleColor(ColorRole::card));
        setBordercolor(roleColor(adds ? ColorRole::addRim : ColorRole::editRim));
        setForecolor(roleColor(adds ? ColorRole::stripInk : ColorRole::editStripInk));
        setTitlecolor1(roleColor(adds ? ColorRole::addStripLeft : ColorRole::editStripLeft));
        setTitlecolor2(roleColor(adds ? ColorRole::addStripRight : ColorRole::editStripRight));
        return;
    }
    const bool page = role == FrameRole::page;
    const bool window = role == FrameRole::window;
    if (page || window) {
        constexpr int stripHeight = 48;
        setCornerRadius(window ? 1 : 0);  // the desktop's windows are square; without any there is no rim
        setTitleHeight(stripHeight);
        m_borderWidth = window ? 2 : 1;
    }
    setBackcolor1(roleColor(page ? ColorRole::ground : ColorRole::card));
    setBackcolor2(roleColor(page ? ColorRole::ground : ColorRole::card));
    setBordercolor(roleColor(window                     ? ColorRole::windowRim
                             : role == FrameRole::alert ? ColorRole::danger
                                                        : ColorRole::edge));
    setForecolor(roleColor(ColorRole::stripInk));
    setTitlecolor1(roleColor(ColorRole::stripLeft));
    setTitlecolor2(roleColor(ColorRole::stripRight));
}

void vkFrame::setBackcolor1(const QColor& color) {
    setColor(m_backcolor1, color);
    inkLabels();
}

void vkFrame::setBackcolor2(const QColor& color) {
    setColor(m_backcolor2, color);
    inkLabels();
}

void vkFrame::inkLabels() {
    const QColor darkInk = roleColor(ColorRole::ink);
    const QColor middle = mixed(m_backcolor1, m_backcolor2, 0.5);
    const bool dark = contrast(darkInk, middle) < contrast(Qt::white, middle);
    const QColor ink = dark ? QColor(Qt::white) : darkInk;
    QPalette colors = palette();
    colors.setColor(QPalette::WindowText, ink);
    colors.setColor(QPalette::Disabled, QPalette::WindowText, dark ? paleInkOnDark : paleInk);
    setPalette(colors);  // nobody is told where it is the same as before
}

void vkFrame::setBordercolor(const QColor& color) {
    setColor(m_bordercolor, color);
}

void vkFrame::setForecolor(const QColor& color) {
    setColor(m_forecolor, color);
}

void vkFrame::setTitlecolor1(const QColor& color) {
    setColor(m_titlecolor1, color);
}

void vkFrame::setTitlecolor2(const QColor& color) {
    setColor(m_titlecolor2, color);
}

void vkFrame::setCornerRadius(int radius) {
    m_cornerRadius = radius;
    update();
}

void vkFrame::setBorderWidth(int width) {
    m_borderWidth = width;
    update();
}

void vkFrame::setTitleLines(int lines) {
    m_titleLines = lines;
    update(titleBar());
}

void vkFrame::setTitleHeight(int height) {
    m_titleHeight = height;
    layOutTitle();
    update();
}

void vkFrame::setTitleAlignment(Qt::Alignment alignment) {
    m_titleAlignment = alignment;
    update(titleBar());
}

void vkFrame::setTitleIcon(const QIcon& icon) {
    m_titleIcon = sharedIcon(icon);
    update();
}

void vkFrame::setTitleIconFile(const QString& path) {
    setTitleIcon(sharedIcon(path));
    m_titleIconFile = path;
}

void vkFrame::setTitleNote(const QString& text) {
    if (m_titleNote == text)
        return;
    m_titleNote = text;
    setAccessibleDescription(text);
    // The strip alone: what stands on the frame needn't be painted anew for it.
    update(titleBar());
}

void vkFrame::setTitleNoteRange(bool range) {
    m_titleNoteIsRange = range;
    update();
}

void vkFrame::setProgress(std::optional<double> share) {
    if (share == m_progress)
        return;
    m_progress = share;
    repaint(progressLine());
}

QRect vkFrame::progressLine() const {
    constexpr int lineHeight = 4;
    const int height = static_cast<int>(std::lround(lineHeight * designScale(*this)));
    return {0, titlePixels() - height, width(), height};
}

int vkFrame::titlePixels() const {
    if (m_caption.isEmpty())
        return 0;
    return m_titleHeight > 0 ? static_cast<int>(std::lround(m_titleHeight * designScale(*this)))
                             : QFontMetrics(font()).height() * 17 / 10;
}

QRect vkFrame::titleBar() const {
    return {0, 0, width(), titlePixels()};
}

void vkFrame::layOutTitle() {
    const int height = titlePixels();
    if (height == m_titleMargin)
        return;
    QMargins margins = contentsMargins();
    margins.setTop(margins.top() - m_titleMargin + height);
    m_titleMargin = height;
    setContentsMargins(margins);
}

void vkFrame::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        layOutTitle();
    if (event->type() == QEvent::EnabledChange)
        update();
}

void vkFrame::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF bounds(rect());
    if (m_cornerRadius <= 0) {
        QLinearGradient ground(bounds.topLeft(), bounds.bottomLeft());
        ground.setColorAt(0, m_backcolor1);
        ground.setColorAt(1, m_backcolor2);
        painter.fillRect(bounds, ground);
        if (!m_caption.isEmpty())
            paintTitle(painter, bounds, 0);
        return;
    }
    const double radius =
        std::min(m_cornerRadius * designScale(*this), std::min(bounds.width(), bounds.height()) / 3);
    paintFace(painter, bounds, radius, m_backcolor1, m_backcolor2,
              m_look == FrameRole::ring ? m_backcolor1 : m_bordercolor, false);
    if (!m_caption.isEmpty())
        paintTitle(painter, bounds, radius);
    if (m_borderWidth > 1) {
        const double width = m_borderWidth * designScale(*this);
        painter.setPen(QPen(m_bordercolor, width));
        painter.setBrush(Qt::NoBrush);
        const double inset = width / 2;
        painter.drawRoundedRect(bounds.adjusted(inset, inset, -inset, -inset), radius - inset,
                                radius - inset);
    }
    if (hasFocus())
        paintFocusRing(painter, bounds, radius);
}

void vkFrame::paintTitle(QPainter& painter, const QRectF& bounds, double radius) {
    QPainterPath inside;
    if (radius > 0)
        inside.addRoundedRect(bounds.adjusted(1, 1, -1, -1), radius - 0.5, radius - 0.5);
    else
        inside.addRect(bounds);
    QPainterPath strip;
    const QRectF bar(bounds.left(), bounds.top(), bounds.width(), titlePixels());
    strip.addRect(bar);
    const QColor from = isEnabled() ? m_titlecolor1 : mutedFace(m_titlecolor1, standsOnDark(*this));
    const QColor to = isEnabled() ? m_titlecolor2 : mutedFace(m_titlecolor2, standsOnDark(*this));
    QLinearGradient gradient(bar.topLeft(), bar.topRight());
    for (const double place : {0.0, titleKnee, 1.0})
        gradient.setColorAt(place, mixed(from, to, titleShare(place)));
    painter.fillPath(inside.intersected(strip), gradient);
    if (radius > 0) {
        painter.setPen(QPen(m_bordercolor, 1.0));
        painter.drawLine(bar.bottomLeft() + QPointF(1, -0.5), bar.bottomRight() + QPointF(-1, -0.5));
    }

    const int pixels = FittedText::pixelSizeOf(font(), logicalDpiY());
    const double padding =
        m_titleIcon.isNull() ? QFontMetricsF(font()).height() * 0.6 : 16 * designScale(*this);
    QRectF room = bar.adjusted(padding, 2, -padding, -2);
    if (!m_titleIcon.isNull())
        room = paintTitleIcon(painter, room);
    if (!m_titleNote.isEmpty()) {
        QFont small = font();
        small.setWeight(m_titleNoteIsRange ? QFont::Medium : QFont::Normal);
        m_note->fit(m_titleNote, small, m_titleNoteIsRange ? pixels * 9 / 10 : pixels * 3 / 4,
                    room.adjusted(room.width() / 2, 0, 0, 0), Qt::AlignRight | Qt::AlignVCenter, 1);
        const bool onStrip = m_forecolor == roleColor(ColorRole::stripInk);
        const ColorRole ink = m_titleNoteIsRange ? ColorRole::stripRange : ColorRole::stripNote;
        m_note->paint(painter, onStrip ? roleColor(ink) : m_forecolor);
        room.setRight(m_note->bounds().left() - padding);
    }
    m_title->fit(m_caption, font(), pixels, room, m_titleAlignment | Qt::AlignVCenter, m_titleLines);
    if (!isEnabled()) {
        m_title->paint(painter, mutedText(m_forecolor, from));
        return;
    }
    const QColor end = mixed(from, to, titleShare(m_title->bounds().right() / bar.width()));
    m_title->paint(painter, m_forecolor, outlineFor(m_forecolor, from, end, m_title->wantedContrast()));
    if (m_progress) {
        QRect line = progressLine();
        line.setWidth(static_cast<int>(std::lround(line.width() * std::clamp(*m_progress, 0.0, 1.0))));
        painter.fillRect(line, roleColor(ColorRole::honey));
    }
}

/// @return the room that is left behind the icon
QRectF vkFrame::paintTitleIcon(QPainter& painter, QRectF room) const {
    constexpr double designIcon = 24;
    const double side = designIcon * designScale(*this);
    const QPixmap shape = m_titleIcon.pixmap(QSizeF(side, side).toSize(), devicePixelRatioF());
    const QPointF place(room.left(), room.center().y() - side / 2);
    painter.drawPixmap(place, inColor(shape, m_forecolor));
    room.setLeft(room.left() + side * 1.5);
    return room;
}

}  // namespace kovanix
