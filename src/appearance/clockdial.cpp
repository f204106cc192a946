#include "appearance/clockdial.h"

#include <QFont>
#include <QLinearGradient>
#include <QPainter>
#include <QPen>
#include <algorithm>
#include <cmath>

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr double pi = 3.1415;  // required: these four digits, not the full value

constexpr double minuteLength = 18;
constexpr double hourLength = 12;
constexpr double sweepLength = 3;

constexpr int oldHandColor = 11;
constexpr int newHandColor = 12;
constexpr int oldSweepColor = 8;
constexpr int newSweepColor = 10;

constexpr int sweepSteps = 360;

// The window reaches that many dial units from the centre. The words stand between the reach of the hands and
// the marks, so that no hand ever covers them.
constexpr double windowReach = 32;
constexpr double bezelRadius = 31.9;
constexpr double faceRadius = 30;
constexpr double marksOuter = 28.9;
constexpr double wordRadius = 21.7;

// Design pixels.
constexpr qreal minuteWidth = 6;
constexpr qreal hourWidth = 8;
constexpr qreal sweepWidth = 4;
constexpr int wordPixels = 18;

constexpr QRgb bezelTop = 0xFF4A6588;
constexpr QRgb bezelBottom = 0xFF2C405B;
constexpr QRgb hourMarkColor = 0xFFF1F4F8;
constexpr QRgb minuteMarkColor = 0xFF7F93AD;

struct Mark {
    double length;       // dial units
    qreal designPixels;  // width
    QRgb color;
};

constexpr Mark quarterMark{3.0, 4, hourMarkColor};
constexpr Mark hourMark{2.2, 2, hourMarkColor};
constexpr Mark minuteMark{0.9, 1, minuteMarkColor};

const Mark& markOf(int minute) {
    if (minute % 15 == 0)
        return quarterMark;
    return minute % 5 == 0 ? hourMark : minuteMark;
}

}  // namespace

ColorValue basicColor(int index) {
    // Low byte red, then green, then blue.
    static constexpr std::array<ColorValue, 16> table{
        0x000000, 0x800000, 0x008000, 0x808000, 0x000080, 0x800080, 0x008080, 0xC0C0C0,
        0x808080, 0xFF0000, 0x00FF00, 0xFFFF00, 0x0000FF, 0xFF00FF, 0x00FFFF, 0xFFFFFF,
    };
    return table.at(static_cast<size_t>(index));
}

double minuteAngle(int minute) {
    return 90 - 6.0 * minute;
}

double hourAngle(int hour) {
    return 90 - 30.0 * hour;
}

double sweepAngle(int c) {
    return 90 - 3.6 * c;
}

QPointF handEnd(double degrees, double length) {
    const double radians = degrees * pi / 180;
    return {length * std::cos(radians), length * std::sin(radians)};
}

void ClockHands::showTime(QTime time) {
    m_old = m_new;
    m_new = {handEnd(minuteAngle(time.minute()), minuteLength), handEnd(hourAngle(time.hour()), hourLength)};
}

void ClockHands::advance() {
    m_c = (m_c + 1) % sweepSteps;
    m_oldSweep = m_newSweep;
    m_newSweep = handEnd(sweepAngle(m_c), sweepLength);
}

std::array<HandLine, 4> ClockHands::hands() const {
    return {{{m_old.minute, basicColor(oldHandColor), minuteWidth},
             {m_old.hour, basicColor(oldHandColor), hourWidth},
             {m_new.minute, basicColor(newHandColor), minuteWidth},
             {m_new.hour, basicColor(newHandColor), hourWidth}}};
}

std::array<HandLine, 2> ClockHands::sweep() const {
    return {{{m_oldSweep, basicColor(oldSweepColor), sweepWidth},
             {m_newSweep, basicColor(newSweepColor), sweepWidth}}};
}

std::array<DialWord, 2> ClockDial::words() {
    return {{{u"Kovanix"_s, {0, wordRadius}}, {u"Saat"_s, {0, -wordRadius}}}};
}

ClockDial::ClockDial(QSize area, qreal devicePixelRatio) : m_area(area), m_ratio(devicePixelRatio) {
    const double side = std::min(area.width(), area.height());
    m_unit = side / 2 / windowReach;
    m_scale = side / designSize.width();
    // On whole device pixels, so that upright and level lines of an even width have sharp edges.
    m_centre =
        QPointF(std::floor(area.width() * m_ratio / 2), std::floor(area.height() * m_ratio / 2)) / m_ratio;
    makePicture();
}

QPointF ClockDial::at(QPointF point) const {
    return {m_centre.x() + point.x() * m_unit, m_centre.y() - point.y() * m_unit};
}

QRect ClockDial::reach(double length, qreal designPixels) const {
    const double radius = length * m_unit + wholeWidth(designPixels);
    return QRectF(m_centre - QPointF(radius, radius), QSizeF(2 * radius, 2 * radius)).toAlignedRect();
}

QRect ClockDial::handReach() const {
    return reach(std::max(minuteLength, hourLength), std::max(minuteWidth, hourWidth));
}

QRect ClockDial::sweepReach() const {
    return reach(sweepLength, sweepWidth);
}

qreal ClockDial::lineWidth(const HandLine& line) const {
    return wholeWidth(line.designPixels);
}

QRect ClockDial::dialRect() const {
    const QPointF reach(bezelRadius * m_unit, bezelRadius * m_unit);
    return QRectF(m_centre - reach, m_centre + reach).toRect();
}

// A width that grows with the dial, an even number of device pixels.
qreal ClockDial::wholeWidth(qreal designPixels) const {
    const qreal wanted = designPixels * std::max(1.0, m_scale);
    return std::max(2.0, 2 * std::round(wanted * m_ratio / 2)) / m_ratio;
}

void ClockDial::makePicture() {
    m_picture = QPixmap((QSizeF(m_area) * m_ratio).toSize());
    if (m_picture.isNull())
        return;
    m_picture.setDevicePixelRatio(m_ratio);
    // The window ends where the dial does: its edge is of one colour.
    m_picture.fill(bezelBottom);
    QPainter painter(&m_picture);
    painter.setRenderHint(QPainter::Antialiasing);
    paintFace(painter);
    paintWords(painter);
    paintMarks(painter);
}

void ClockDial::paintFace(QPainter& painter) const {
    painter.setPen(Qt::NoPen);
    QLinearGradient bezel(at({0, bezelRadius}), at({0, -bezelRadius}));
    bezel.setColorAt(0, QColor(bezelTop));
    bezel.setColorAt(1, QColor(bezelBottom));
    painter.setBrush(bezel);
    painter.drawEllipse(m_centre, bezelRadius * m_unit, bezelRadius * m_unit);
    // Dark: red, cyan, gray and green lines all stand out on it, as they would not on white.
    painter.setBrush(QColor(faceColor));
    painter.drawEllipse(m_centre, faceRadius * m_unit, faceRadius * m_unit);
}

void ClockDial::paintWords(QPainter& painter) const {
    QFont font = painter.font();
    // At this size and weight the stems of the letters are as wide as the lines of the hands.
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(wordPixels * m_scale))));
    font.setWeight(QFont::Medium);
    painter.setFont(font);
    painter.setPen(QColor(wordColor));
    const QSizeF room(2 * faceRadius * m_unit, 2.0 * font.pixelSize());
    for (const DialWord& word : words()) {
        QRectF box({}, room);
        box.moveCenter(at(word.place));
        painter.drawText(box, Qt::AlignCenter, word.text);
    }
}

void ClockDial::paintMarks(QPainter& painter) const {
    for (int minute = 0; minute < 60; ++minute) {
        const Mark& mark = markOf(minute);
        const qreal width = mark.designPixels > 1 ? wholeWidth(mark.designPixels) : std::max(1.0, m_scale);
        painter.setPen(QPen(QColor(mark.color), width, Qt::SolidLine, Qt::FlatCap));
        const double degrees = minuteAngle(minute);
        painter.drawLine(at(handEnd(degrees, marksOuter - mark.length)), at(handEnd(degrees, marksOuter)));
    }
}

void ClockDial::paintLines(QPainter& painter, std::span<const HandLine> lines) const {
    for (auto line = lines.begin(); line != lines.end(); ++line) {
        // Under a line that covers it, a line would still show as a rim of mixed pixels.
        const auto covers = [&line](const HandLine& later) { return later.end == line->end; };
        if (std::any_of(line + 1, lines.end(), covers))
            continue;
        painter.setPen(QPen(colorOf(line->color), lineWidth(*line), Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(m_centre, at(line->end));
    }
}

void ClockDial::paint(QPainter& painter, const ClockHands& hands) const {
    painter.drawPixmap(QPointF(0, 0), m_picture);
    painter.setRenderHint(QPainter::Antialiasing);
    paintLines(painter, hands.hands());
    paintLines(painter, hands.sweep());
}

}  // namespace kovanix
