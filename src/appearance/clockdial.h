#pragma once

#include <QPixmap>
#include <QPointF>
#include <QRect>
#include <QSize>
#include <QTime>
#include <array>
#include <span>

#include "widgets/colorvalue.h"

class QPainter;

namespace kovanix {

// The analog clock without its window. The hands are reckoned in dial units around the centre: x to the
// right, y up, the minute hand 18 long.

/// A colour of the basic 16-colour table: 0 black, 1 blue … 7 white, 8 gray, 9 light blue … 15 bright white.
/// @throws std::out_of_range for any other index
ColorValue basicColor(int index);

/// Angles in degrees, 0 to the right and counted against the clock.
double minuteAngle(int minute);
double hourAngle(int hour);  ///< hour 0 to 23, with no share of the minute
double sweepAngle(int c);

/// Where a line from the centre ends that goes in the direction of that angle.
QPointF handEnd(double degrees, double length);

/// A line from the centre of the dial.
struct HandLine {
    QPointF end;
    ColorValue color;
    qreal designPixels;  ///< width at the design size
};

/// What stands on the dial: the stored ends of the hands and of the sweep, before and after the last tick.
/// Until the first tick all of them are the centre.
///
/// An old line stays on the dial till the next tick of its timer: where a hand has moved on, its old place
/// glows for a second, and the sweep draws a short trail.
class ClockHands {
public:
    /// The slow timer's tick: what the hands showed becomes old, and they go to that time.
    void showTime(QTime time);
    /// The fast timer's tick: the counter goes on by one, and the sweep with it.
    void advance();

    /// The sweep's running counter, 0 to 359. At 3.6 degrees a step the sweep goes round 3.6 times till it
    /// wraps.
    int c() const { return m_c; }

    /// What a tick draws, in the order of drawing: the old lines first, the new ones over them.
    std::array<HandLine, 4> hands() const;
    std::array<HandLine, 2> sweep() const;

private:
    struct Ends {
        QPointF minute;
        QPointF hour;
    };

    Ends m_old;
    Ends m_new;
    QPointF m_oldSweep;
    QPointF m_newSweep;
    int m_c = 0;
};

/// A word on the dial, centred on a place.
struct DialWord {
    QString text;
    QPointF place;
};

/// The dial drawn for a window of one size: its picture is made once, painting it again is a copy.
class ClockDial {
public:
    ClockDial() = default;
    /// @param area in device-independent pixels
    ClockDial(QSize area, qreal devicePixelRatio);

    /// The size, in device-independent pixels, at which the dial has its design measures.
    static constexpr QSize designSize{280, 280};
    static constexpr QRgb faceColor = 0xFF16233A;
    static constexpr QRgb wordColor = 0xFFB8C6D8;
    static std::array<DialWord, 2> words();

    QSize area() const { return m_area; }
    qreal devicePixelRatio() const { return m_ratio; }
    /// Window, dial, marks and words, without the hands.
    const QPixmap& picture() const { return m_picture; }

    /// Where a point in dial units stands in the window.
    QPointF at(QPointF point) const;
    /// What the hands, and the sweep, can cover in any direction.
    QRect handReach() const;
    QRect sweepReach() const;
    /// How wide a line is painted, in device-independent pixels.
    qreal lineWidth(const HandLine& line) const;
    /// What the dial takes of the window, its rim included.
    QRect dialRect() const;

    /// Paints the dial, then the hands, then the sweep.
    void paint(QPainter& painter, const ClockHands& hands) const;

private:
    qreal wholeWidth(qreal designPixels) const;
    QRect reach(double length, qreal designPixels) const;
    void makePicture();
    void paintFace(QPainter& painter) const;
    void paintWords(QPainter& painter) const;
    void paintMarks(QPainter& painter) const;
    void paintLines(QPainter& painter, std::span<const HandLine> lines) const;

    QSize m_area;
    qreal m_ratio = 1;
    QPointF m_centre;
    double m_unit = 0;   ///< device-independent pixels
    double m_scale = 0;  ///< 1 at the design size
    QPixmap m_picture;
};

}  // namespace kovanix
