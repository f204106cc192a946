#include <QFile>
#include <QImage>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include "rows.h"
#include "widgets/emptyplace.h"
#include "widgets/image.h"
#include "widgets/look.h"
#include "widgets/paintedhint.h"
#include "widgets/timer.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

// Twice as wide as high, red.
QString makePicture(const QTemporaryDir& folder, bool vector) {
    const QString path = folder.filePath(vector ? u"note.svg"_s : u"note.png"_s);
    if (vector) {
        QFile file(path);
        if (file.open(QIODevice::WriteOnly)) {
            file.write(
                "<svg xmlns='http://www.w3.org/2000/svg' width='40' height='20' viewBox='0 0 40 20'>"
                "<rect width='40' height='20' fill='#ff0000'/></svg>");
        }
    } else {
        QImage image(40, 20, QImage::Format_RGB32);
        image.fill(Qt::red);
        image.save(path);
    }
    return path;
}

// As long as another timer of one millisecond needs for so many ticks.
void waitForTicks(int count) {
    QTimer other;
    const QSignalSpy ticks(&other, &QTimer::timeout);
    other.start(1);
    QTRY_VERIFY(ticks.count() >= count);
}

}  // namespace

class TestSmallControls : public QObject {
    Q_OBJECT

    struct PicturePressesRow {
        Qt::MouseButton mouse;
        QPoint release;
        bool enabled;
        int clicks;
    };

private Q_SLOTS:
    void pictureIsFittedAndCentred_data() {
        QTest::addColumn<bool>("vector");
        QTest::newRow("svg") << true;
        QTest::newRow("bitmap") << false;
    }
    void pictureIsFittedAndCentred() {
        QFETCH(bool, vector);
        const QTemporaryDir folder;
        Image image;
        image.setSource(makePicture(folder, vector));
        QCOMPARE(image.sizeHint(), QSize(40, 20));
        image.resize(100, 100);
        const QImage painted = image.grab().toImage();
        QCOMPARE(painted.pixelColor(50, 50), QColor(Qt::red));
        QCOMPARE(painted.pixelColor(2, 28), QColor(Qt::red));
        QCOMPARE(painted.pixelColor(97, 72), QColor(Qt::red));
        QVERIFY(painted.pixelColor(50, 20) != QColor(Qt::red));
        QVERIFY(painted.pixelColor(50, 80) != QColor(Qt::red));
        image.resize(20, 100);
        QCOMPARE(image.grab().toImage().pixelColor(10, 50), QColor(Qt::red));
        QVERIFY(image.grab().toImage().pixelColor(10, 30) != QColor(Qt::red));
        image.setSource({});
        QVERIFY(image.grab().toImage().pixelColor(10, 50) != QColor(Qt::red));
    }

    void aPictureOnAFaceLeavesAMargin() {
        const QTemporaryDir folder;
        Image image;
        image.setSource(makePicture(folder, true));
        image.resize(100, 100);
        image.setLook(FaceRole::light);
        const FaceColors face = faceColors(FaceRole::light);
        const QImage painted = image.grab().toImage();
        QCOMPARE(painted.pixelColor(50, 50), QColor(Qt::red));
        QCOMPARE(painted.pixelColor(22, 50), QColor(Qt::red));
        const auto tone = [](const QColor& color) { return qGray(color.rgb()); };
        QVERIFY(std::abs(tone(painted.pixelColor(12, 50)) - tone(face.top)) < 20);
        image.setDown(true);
        QVERIFY(tone(image.grab().toImage().pixelColor(12, 20)) < tone(painted.pixelColor(12, 20)) - 20);
        image.setDown(false);
        image.setLook(FaceRole::none);
        QCOMPARE(image.grab().toImage().pixelColor(12, 50), QColor(Qt::red));
    }

    void missingPictureShowsNothing() {
        Image image;
        image.resize(50, 50);
        const QImage empty = image.grab().toImage();
        image.setSource(u"/nowhere/at/all.png"_s);
        QCOMPARE(image.grab().toImage(), empty);
        image.setSource(u"/nowhere/at/all.PNG"_s);
        QCOMPARE(image.sizeHint(), QSize(48, 48));
    }

    void pictureStatesDiffer() {
        const QTemporaryDir folder;
        Image image;
        image.setSource(makePicture(folder, true));
        image.resize(80, 40);
        QTest::mousePress(&image, Qt::LeftButton);
        QVERIFY(image.grab().toImage().pixelColor(40, 20) != QColor(Qt::red));
        QTest::mouseRelease(&image, Qt::LeftButton);
        QCOMPARE(image.grab().toImage().pixelColor(40, 20), QColor(Qt::red));
        image.setEnabled(false);
        QVERIFY(image.grab().toImage().pixelColor(40, 20) != QColor(Qt::red));
    }

    void picturePresses_data() {
        addRows<PicturePressesRow>({{"press", {Qt::LeftButton, QPoint(5, 5), true, 1}},
                                    {"let go outside", {Qt::LeftButton, QPoint(500, 5), true, 0}},
                                    {"right button", {Qt::RightButton, QPoint(5, 5), true, 0}},
                                    {"disabled", {Qt::LeftButton, QPoint(5, 5), false, 0}}});
    }
    void picturePresses() {
        QFETCH(const PicturePressesRow, row);
        Image image;
        image.resize(50, 50);
        image.setEnabled(row.enabled);
        const QSignalSpy clicked(&image, &Image::clicked);
        QTest::mousePress(&image, row.mouse, {}, QPoint(5, 5));
        QTest::mouseRelease(&image, row.mouse, {}, row.release);
        QCOMPARE(clicked.count(), row.clicks);
        QCOMPARE(image.focusPolicy(), Qt::NoFocus);
    }

    void pictureIsNamedByItsTip() {
        Image image;
        image.setToolTip(u"20 lira"_s);
        QCOMPARE(image.accessibleName(), u"20 lira"_s);
    }

    void anEmptyPlaceSaysWhatBringsItsFrame() {
        const QTemporaryDir folder;
        EmptyPlace place;
        place.setPicture(makePicture(folder, true));
        place.setText(u"EKLE’ye dokunun"_s);
        place.resize(400, 600);
        QCOMPARE(place.accessibleDescription(), u"EKLE’ye dokunun"_s);
        QCOMPARE(place.accessibleName(), u""_s);
        const auto inked = [&](const QRect& part) {
            const QImage image = place.grab().toImage();
            for (int y = part.top(); y <= part.bottom(); ++y) {
                for (int x = part.left(); x <= part.right(); ++x) {
                    if (image.pixelColor(x, y) == roleColor(ColorRole::mutedInk))
                        return true;
                }
            }
            return false;
        };
        QVERIFY(inked({164, 232, 72, 72}));   // the picture's shape
        QVERIFY(inked({100, 316, 200, 50}));  // the line below it
        QVERIFY(!inked({0, 0, 400, 200}));
        place.setText({});
        QVERIFY(!inked({100, 316, 200, 50}));
    }

    void aHintWithoutAnIconBeginsAtTheEdge() {
        const auto firstInked = [](const QString& icon, int from) {
            PaintedHint hint(icon, u"MMM"_s);
            hint.resize(300, 40);
            const QImage image = hint.grab().toImage();
            for (int x = from; x < image.width(); ++x) {
                for (int y = 0; y < image.height(); ++y) {
                    if (image.pixelColor(x, y) == roleColor(ColorRole::mutedInk))
                        return x;
                }
            }
            return image.width();
        };
        const QTemporaryDir folder;
        QVERIFY(firstInked({}, 0) < 5);
        const QString icon = makePicture(folder, true);
        QVERIFY(firstInked(icon, 0) < 5);     // the icon,
        QVERIFY(firstInked(icon, 27) >= 36);  // and the text behind it
    }

    void timerTicksUntilStopped() {
        Timer timer;
        const QSignalSpy ticks(&timer, &Timer::tick);
        QCOMPARE(timer.interval(), 0);
        timer.setInterval(1);
        QTRY_VERIFY(ticks.count() >= 3);
        timer.setInterval(0);
        const int stopped = static_cast<int>(ticks.count());
        waitForTicks(10);
        QCOMPARE(ticks.count(), stopped);
        timer.setInterval(-5);
        QCOMPARE(timer.interval(), 0);
    }

    void timerMayStopItselfInItsTick() {
        Timer timer;
        int ticks = 0;
        connect(&timer, &Timer::tick, &timer, [&] {
            ++ticks;
            timer.setInterval(0);
        });
        timer.setInterval(1);
        QTRY_COMPARE(ticks, 1);
        waitForTicks(10);
        QCOMPARE(ticks, 1);
    }
};

QTEST_MAIN(TestSmallControls)
#include "test_smallcontrols.moc"
