#include <QPainter>
#include <cmath>
#include <stdexcept>

#include "dialpixels.h"
#include "rows.h"
#include "runtests.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

// Tells an end reckoned with pi = 3.1415 from one reckoned with the full value, which is off by 0.0001 or
// more.
constexpr double tolerance = 0.000002;

bool isAt(QPointF point, QPointF expected) {
    return std::hypot(point.x() - expected.x(), point.y() - expected.y()) < tolerance;
}

QImage painted(const ClockDial& dial, const ClockHands& hands) {
    QImage image((QSizeF(dial.area()) * dial.devicePixelRatio()).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(dial.devicePixelRatio());
    image.fill(Qt::magenta);
    QPainter painter(&image);
    dial.paint(painter, hands);
    return image;
}

}  // namespace

/// The hands as they are reckoned, and their pixels on the dial.
class TestClockDial : public QObject {
    Q_OBJECT

    struct HandsOfATimeRow {
        QTime time;
        double minute, hour;
        QPointF minuteEnd, hourEnd;
    };
    struct SweepOfACountRow {
        int ticks, c;
        double angle;
        QPointF end;
    };
    struct HandsOnTheDialRow {
        QSize size;
        double ratio;
    };

private Q_SLOTS:
    void handsOfATime_data() {
        addRows<HandsOfATimeRow>(
            {{"0:00", {{0, 0}, 90, 90, {0.000834, 18.000000}, {0.000556, 12.000000}}},
             {"3:15", {{3, 15}, 0, 0, {18, 0}, {12, 0}}},
             {"9:30", {{9, 30}, -90, -180, {0.000834, -18.000000}, {-12.000000, -0.001112}}},
             {"9:30:59, seconds don't count",
              {{9, 30, 59}, -90, -180, {0.000834, -18.000000}, {-12.000000, -0.001112}}},
             {"12:00 is a turn on from 0:00",
              {{12, 0}, 90, -270, {0.000834, 18.000000}, {-0.001668, 12.000000}}},
             {"13:00 is a turn on from 1:00",
              {{13, 0}, 90, -300, {0.000834, 18.000000}, {5.998395, 10.393231}}},
             {"18:45", {{18, 45}, -180, -450, {-18.000000, -0.001668}, {0.002780, -12.000000}}},
             {"23:00", {{23, 0}, 90, -600, {0.000834, 18.000000}, {-6.003209, 10.390451}}},
             {"23:59, the hour without a share of the minute",
              {{23, 59}, -264, -600, {-1.883945, 17.901138}, {-6.003209, 10.390451}}}});
    }
    void handsOfATime() {
        QFETCH(const HandsOfATimeRow, row);
        QCOMPARE(minuteAngle(row.time.minute()), row.minute);
        QCOMPARE(hourAngle(row.time.hour()), row.hour);
        ClockHands hands;
        hands.showTime(row.time);
        const auto lines = hands.hands();
        QVERIFY(isAt(lines[2].end, row.minuteEnd));
        QVERIFY(isAt(lines[3].end, row.hourEnd));
    }

    void sweepOfACount_data() {
        addRows<SweepOfACountRow>(
            {{"first tick", {1, 1, 86.4, QPointF(0.188505, 2.994072)}},
             {"a quarter", {25, 25, 0.0, QPointF(3, 0)}},
             {"half", {50, 50, -90.0, QPointF(0.000139, -3.000000)}},
             {"once round", {100, 100, -270.0, QPointF(-0.000417, 3.000000)}},
             {"two and a half rounds", {250, 250, -810.0, QPointF(0.001251, -3.000000)}},
             {"last before the wrap", {359, 359, -1202.4, QPointF(-1.605912, -2.533978)}},
             {"the wrap", {360, 0, 90.0, QPointF(0.000139, 3.000000)}},
             {"behind the wrap", {361, 1, 86.4, QPointF(0.188505, 2.994072)}}});
    }
    void sweepOfACount() {
        QFETCH(const SweepOfACountRow, row);
        ClockHands hands;
        for (int tick = 0; tick < row.ticks; ++tick)
            hands.advance();
        QCOMPARE(hands.c(), row.c);
        QVERIFY(std::abs(sweepAngle(row.c) - row.angle) < 1e-9);
        QVERIFY(isAt(hands.sweep()[1].end, row.end));
    }

    void sweepGoesRoundThreeTimesAndSixTenths() {
        ClockHands hands;
        hands.advance();
        double degrees = 0;
        for (int c = 1; c < 359; ++c) {
            hands.advance();
            degrees += sweepAngle(c) - sweepAngle(hands.c());
        }
        QVERIFY(std::abs(degrees - 358 * 3.6) < 1e-6);
        // From 359 to 0 it jumps: 360 steps of 3.6 degrees are no whole number of rounds.
        const QPointF last = hands.sweep()[1].end;
        hands.advance();
        QCOMPARE(hands.c(), 0);
        QVERIFY(std::hypot(hands.sweep()[1].end.x() - last.x(), hands.sweep()[1].end.y() - last.y()) > 5);
    }

    void basicColors() {
        const char* const names[16] = {"#000000", "#000080", "#008000", "#008080", "#800000", "#800080",
                                       "#808000", "#c0c0c0", "#808080", "#0000ff", "#00ff00", "#00ffff",
                                       "#ff0000", "#ff00ff", "#ffff00", "#ffffff"};
        for (int index = 0; index < 16; ++index)
            QCOMPARE(colorOf(basicColor(index)).name(), QString::fromLatin1(names[index]));
        QVERIFY_THROWS_EXCEPTION(std::out_of_range, basicColor(16));
        QVERIFY_THROWS_EXCEPTION(std::out_of_range, basicColor(-1));
    }

    void linesStartAtTheCentre() {
        const ClockHands hands;
        QCOMPARE(hands.c(), 0);
        for (const HandLine& line : hands.hands())
            QCOMPARE(line.end, QPointF());
        for (const HandLine& line : hands.sweep())
            QCOMPARE(line.end, QPointF());
    }

    void oldHandsFirstNewOver() {
        ClockHands hands;
        hands.showTime({9, 59});
        const auto before = hands.hands();
        hands.showTime({10, 0});
        const auto after = hands.hands();
        for (const size_t line : {0, 1}) {
            QCOMPARE(after[line].color, basicColor(11));
            QCOMPARE(after[line].end, before[line + 2].end);
            QCOMPARE(after[line + 2].color, basicColor(12));
            QVERIFY(after[line + 2].end != before[line + 2].end);
        }
        hands.showTime({10, 0});
        for (const size_t line : {0, 1})
            QCOMPARE(hands.hands()[line].end, after[line + 2].end);
    }

    void oldSweepFirstNewOver() {
        ClockHands hands;
        for (int tick = 1; tick <= 720; ++tick) {
            const QPointF stood = hands.sweep()[1].end;
            hands.advance();
            const auto lines = hands.sweep();
            QCOMPARE(lines[0].color, basicColor(8));
            QCOMPARE(lines[0].end, stood);
            QCOMPARE(lines[1].color, basicColor(10));
            QVERIFY(lines[1].end != stood);
        }
    }

    void words() {
        const auto words = ClockDial::words();
        QCOMPARE(words[0].text, u"Kovanix"_s);
        QCOMPARE(words[1].text, u"Saat"_s);
        QVERIFY(words[0].place.y() > 0);
        QVERIFY(words[1].place.y() < 0);
    }

    void handsOnTheDial_data() {
        QTest::addColumn<HandsOnTheDialRow>("row");
        const QSize sizes[] = {{120, 120}, {280, 280}, {281, 351}, {393, 393}, {560, 560}};
        for (const QSize size : sizes)
            for (const double ratio : {1.0, 1.5, 2.0})
                QTest::addRow("%dx%d at %g", size.width(), size.height(), ratio)
                    << HandsOnTheDialRow{size, ratio};
    }
    void handsOnTheDial() {
        QFETCH(const HandsOnTheDialRow, row);
        const ClockDial dial(row.size, row.ratio);
        for (const QTime time : {QTime(0, 20), QTime(3, 40), QTime(7, 52), QTime(16, 0), QTime(23, 8)}) {
            ClockHands hands;
            hands.showTime(time);
            hands.showTime(time);
            const QImage image = painted(dial, hands);
            QVERIFY(endsThere(image, dial, hands.hands()[2]));
            QVERIFY(endsThere(image, dial, hands.hands()[3]));
        }
    }

    void oldHandsOnTheDial_data() { handsOnTheDial_data(); }
    void oldHandsOnTheDial() {
        QFETCH(const HandsOnTheDialRow, row);
        const ClockDial dial(row.size, row.ratio);
        ClockHands hands;
        hands.showTime({7, 52});
        hands.showTime({8, 10});
        const QImage image = painted(dial, hands);
        for (const HandLine& line : hands.hands())
            QVERIFY(endsThere(image, dial, line));

        // The old hour hand of 12:59 and the new minute hand of 13:00 lie on each other: the new one is on
        // top.
        hands.showTime({12, 59});
        hands.showTime({13, 0});
        const QImage overlaid = painted(dial, hands);
        for (const double radius : {4.0, 8.0, 11.0, 17.0}) {
            QVERIFY(shows(overlaid, dial.at({0, radius}), red));
            QVERIFY(!shows(overlaid, dial.at({0, radius}), cyan));
        }
    }

    void sweepOnTheDial_data() { handsOnTheDial_data(); }
    void sweepOnTheDial() {
        QFETCH(const HandsOnTheDialRow, row);
        const ClockDial dial(row.size, row.ratio);
        ClockHands hands;
        hands.showTime({12, 0});
        for (int tick = 1; tick <= 360; ++tick) {
            hands.advance();
            if (tick % 7 != 0)
                continue;
            const QImage image = painted(dial, hands);
            // On top of the hands where they meet, in every direction.
            QVERIFY(endsThere(image, dial, hands.sweep()[1]));
        }
        // The old one shows where the new one left it: at the wrap, in another direction.
        QVERIFY(endsThere(painted(dial, hands), dial, hands.sweep()[0]));
    }

    void uprightHandIsSharp_data() { handsOnTheDial_data(); }
    void uprightHandIsSharp() {
        QFETCH(const HandsOnTheDialRow, row);
        const ClockDial dial(row.size, row.ratio);
        ClockHands hands;
        hands.showTime({6, 0});
        hands.showTime({6, 0});
        const QImage image = painted(dial, hands);
        // A row across the hand: the face's colour, an even number of red pixels, the face's colour.
        const QPoint middle = (dial.at({0, 15}) * row.ratio).toPoint();
        int reds = 0;
        const int room = static_cast<int>(2 * dial.lineWidth(hands.hands()[2]) * row.ratio);
        for (int x = middle.x() - room; x <= middle.x() + room; ++x) {
            const QColor color = image.pixelColor(x, middle.y());
            const bool isRed = color.red() > 250 && color.green() < 5;
            const bool isFace = std::abs(color.red() - qRed(ClockDial::faceColor)) < 5 &&
                                std::abs(color.green() - qGreen(ClockDial::faceColor)) < 5;
            QVERIFY2(isRed || isFace, qPrintable(color.name()));
            reds += isRed;
        }
        QCOMPARE(reds % 2, 0);
        QCOMPARE(double(reds), dial.lineWidth(hands.hands()[2]) * row.ratio);
        // Six wide at the design size, and growing with the dial from there.
        const double wanted =
            6 * row.ratio * std::max(1.0, std::min(row.size.width(), row.size.height()) / 280.0);
        QVERIFY(std::abs(reds - wanted) <= 1);
    }

    void coveredLineLeavesNoRim() {
        const ClockDial dial(ClockDial::designSize, 1);
        ClockHands hands;
        hands.showTime({1, 7});
        hands.showTime({1, 7});
        const QImage image = painted(dial, hands);
        const int faceGreen = qGreen(ClockDial::faceColor);
        // Mixed with the face, red has less green and blue than the face; a cyan rim would have more.
        for (double radius = 4; radius < 17; radius += 0.25) {
            const QPoint point = dial.at(handEnd(minuteAngle(7), radius)).toPoint();
            for (int x = point.x() - 6; x <= point.x() + 6; ++x)
                QVERIFY(image.pixelColor(x, point.y()).green() <= faceGreen);
        }
    }

    void wordsOnTheDial() {
        const ClockDial dial(ClockDial::designSize, 1);
        const QImage image = dial.picture().toImage();
        const QPointF centre = dial.at({});
        QFont font = QGuiApplication::font();
        font.setPixelSize(18);
        font.setWeight(QFont::Medium);
        for (const DialWord& word : ClockDial::words()) {
            QRect ink;
            const QRect expected = QFontMetrics(font).tightBoundingRect(word.text);
            const QPoint place = dial.at(word.place).toPoint();
            const QRect room(place - QPoint(expected.width() / 2 + 6, 10),
                             place + QPoint(expected.width() / 2 + 6, 10));
            for (int y = room.top(); y <= room.bottom(); ++y)
                for (int x = room.left(); x <= room.right(); ++x)
                    if (qRed(image.pixel(x, y)) > 120)
                        ink |= QRect(x, y, 1, 1);
            QVERIFY(std::abs(ink.width() - expected.width()) <= 3);
            QVERIFY(std::abs(ink.height() - expected.height()) <= 3);
            QVERIFY(std::abs(ink.center().x() - centre.x()) <= 3);
            QVERIFY(std::abs(ink.center().y() - place.y()) <= 4);
            // No hand comes near.
            const double nearest = word.place.y() > 0 ? centre.y() - ink.bottom() : ink.top() - centre.y();
            QVERIFY(nearest > dial.handReach().height() / 2.0);
        }
        // Nothing of them in the middle row.
        for (int x = 60; x < 220; ++x)
            QCOMPARE(QColor(image.pixel(x, 140)), QColor(ClockDial::faceColor));
    }
};

int main(int argc, char** argv) {
    return runTests<TestClockDial>(argc, argv);
}
#include "test_clockdial.moc"
