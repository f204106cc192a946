#include <QImage>
#include <QPainter>
#include <QTest>

#include "widgets/face.h"
#include "widgets/fittedtext.h"

using namespace kovanix;

class TestFittedText : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void fits_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QSizeF>("box");
        QTest::addColumn<int>("mostLines");
        QTest::addColumn<int>("lines");
        QTest::addColumn<bool>("fullSize");
        QTest::newRow("one line in plenty of room")
            << QStringLiteral("TAMAM") << QSizeF(400, 100) << 3 << 1 << true;
        QTest::newRow("two words, narrow")
            << QStringLiteral("MMMMM MMMMM") << QSizeF(130, 100) << 3 << 2 << true;
        QTest::newRow("two words, one line allowed")
            << QStringLiteral("MMMMM MMMMM") << QSizeF(130, 100) << 1 << 1 << false;
        QTest::newRow("low box") << QStringLiteral("TAMAM") << QSizeF(400, 12) << 3 << 1 << false;
        QTest::newRow("wide word") << QStringLiteral("MMMMMMMMMMMM") << QSizeF(100, 100) << 3 << 1 << false;
        QTest::newRow("own line break") << QStringLiteral("1\n2") << QSizeF(100, 100) << 1 << 2 << true;
        QTest::newRow("amount isn't broken")
            << QStringLiteral("123.456.789,00") << QSizeF(60, 100) << 3 << 1 << false;
        QTest::newRow("empty") << QString() << QSizeF(100, 100) << 3 << 1 << true;
        QTest::newRow("hopeless") << QString(900, QLatin1Char('M')) << QSizeF(40, 20) << 3 << 2 << false;
        QTest::newRow("no room at all") << QStringLiteral("M") << QSizeF(0, 0) << 3 << 1 << false;
    }
    void fits() {
        QFETCH(QString, text);
        QFETCH(QSizeF, box);
        QFETCH(int, mostLines);
        QFETCH(int, lines);
        QFETCH(bool, fullSize);
        FittedText fitted;
        fitted.fit(text, QFont(), 20, QRectF(QPointF(10, 20), box), Qt::AlignCenter, mostLines);
        QCOMPARE(fitted.lineCount(), lines);
        QCOMPARE(fitted.pixelSize() == 20, fullSize);
        if (!box.isEmpty() && !text.isEmpty())
            QVERIFY(QRectF(QPointF(10, 20), box).adjusted(-0.1, -0.1, 0.1, 0.1).contains(fitted.bounds()));
    }

    void linesAreBalanced() {
        FittedText fitted;
        const QRectF box(0, 0, 190, 100);
        fitted.fit(QStringLiteral("MMM MMM MMM MMM"), QFont(), 20, box, Qt::AlignCenter, 3);
        QCOMPARE(fitted.lineCount(), 2);
        FittedText half;
        half.fit(QStringLiteral("MMM MMM"), QFont(), 20, box, Qt::AlignCenter, 3);
        QVERIFY(fitted.bounds().width() < half.bounds().width() + 1);
    }

    void everyArgumentIsHeeded() {
        FittedText fitted;
        const QRectF box(0, 0, 200, 40);
        fitted.fit(QStringLiteral("A"), QFont(), 20, box, Qt::AlignCenter, 1);
        const QRectF first = fitted.bounds();
        fitted.fit(QStringLiteral("AAAA"), QFont(), 20, box, Qt::AlignCenter, 1);
        QVERIFY(fitted.bounds().width() > first.width());
        fitted.fit(QStringLiteral("A"), QFont(), 20, box, Qt::AlignRight, 1);
        QVERIFY(fitted.bounds().left() > first.left());
        fitted.fit(QStringLiteral("A"), QFont(), 10, box, Qt::AlignCenter, 1);
        QCOMPARE(fitted.pixelSize(), 10);
        fitted.fit(QStringLiteral("A"), QFont(), 20, QRectF(0, 0, 200, 10), Qt::AlignCenter, 1);
        QVERIFY(fitted.pixelSize() < 20);
        QFont spaced;
        spaced.setLetterSpacing(QFont::AbsoluteSpacing, 30);
        fitted.fit(QStringLiteral("AA"), QFont(), 20, box, Qt::AlignCenter, 1);
        const double narrow = fitted.bounds().width();
        fitted.fit(QStringLiteral("AA"), spaced, 20, box, Qt::AlignCenter, 1);
        QVERIFY(fitted.bounds().width() > narrow + 20);
        fitted.fit(QStringLiteral("A"), QFont(), 20, box, Qt::AlignCenter, 1);
        QCOMPARE(fitted.bounds(), first);
    }

    void pixelSizes_data() {
        QTest::addColumn<double>("points");
        QTest::addColumn<int>("dots");
        QTest::addColumn<int>("pixels");
        QTest::newRow("12 points at 96") << 12.0 << 96 << 16;
        QTest::newRow("12 points at 72") << 12.0 << 72 << 12;
        QTest::newRow("10.5 points at 96") << 10.5 << 96 << 14;
    }
    void pixelSizes() {
        QFETCH(double, points);
        QFETCH(int, dots);
        QFETCH(int, pixels);
        QFont font;
        font.setPointSizeF(points);
        QCOMPARE(FittedText::pixelSizeOf(font, dots), pixels);
        font.setPixelSize(33);
        QCOMPARE(FittedText::pixelSizeOf(font, dots), 33);
    }

    void outlineOnlyWhereNeeded_data() {
        QTest::addColumn<QColor>("ink");
        QTest::addColumn<QColor>("from");
        QTest::addColumn<QColor>("to");
        QTest::addColumn<double>("wanted");
        QTest::addColumn<QColor>("outline");
        const QColor none;
        const QColor teal(0, 0xC0, 0xC0);
        const QColor orange(0xFF, 0xC0, 0x80);
        const QColor deepBlue(0x2A, 0x0A, 0x93);
        QTest::newRow("black on white")
            << QColor(Qt::black) << QColor(Qt::white) << QColor(Qt::white) << 4.5 << none;
        QTest::newRow("red on white, large")
            << QColor(Qt::red) << QColor(Qt::white) << QColor(Qt::white) << 3.0 << none;
        QTest::newRow("red on white, small")
            << QColor(Qt::red) << QColor(Qt::white) << QColor(Qt::white) << 4.5 << QColor(Qt::black);
        QTest::newRow("teal on white, large")
            << teal << QColor(Qt::white) << QColor(Qt::white) << 3.0 << QColor(Qt::black);
        QTest::newRow("teal on black") << teal << QColor(Qt::black) << QColor(Qt::black) << 4.5 << none;
        QTest::newRow("white, orange to blue")
            << QColor(Qt::white) << orange << deepBlue << 4.5 << QColor(Qt::black);
        QTest::newRow("white, the blue part") << QColor(Qt::white) << deepBlue << deepBlue << 4.5 << none;
        QTest::newRow("black, white to blue")
            << QColor(Qt::black) << QColor(Qt::white) << deepBlue << 4.5 << QColor(Qt::white);
        QTest::newRow("white, black to green")
            << QColor(Qt::white) << QColor(Qt::black) << QColor(0, 0xFF, 0) << 4.5 << QColor(Qt::black);
        // Both ends stand out, the middle doesn't.
        QTest::newRow("grey, black to white")
            << QColor(0x80, 0x80, 0x80) << QColor(Qt::black) << QColor(Qt::white) << 3.0 << QColor(Qt::black);
        QTest::newRow("black on black")
            << QColor(Qt::black) << QColor(Qt::black) << QColor(Qt::black) << 4.5 << QColor(Qt::white);
    }
    void outlineOnlyWhereNeeded() {
        QFETCH(QColor, ink);
        QFETCH(QColor, from);
        QFETCH(QColor, to);
        QFETCH(double, wanted);
        QFETCH(QColor, outline);
        const QColor given = outlineFor(ink, from, to, wanted);
        QCOMPARE(given.isValid(), outline.isValid());
        if (!outline.isValid())
            return;
        QCOMPARE(given.rgb(), outline.rgb());
        // Soft, and of no use to anyone when it can't be seen.
        QVERIFY2(given.alphaF() >= 0.19F && given.alphaF() <= 0.6F,
                 qPrintable(QString::number(given.alphaF())));
    }

    // The rim that is left of the face behind the outline reaches the wanted contrast with the glyphs,
    // wherever.
    void outlineIsStrongEnough_data() {
        QTest::addColumn<QColor>("ink");
        QTest::addColumn<QColor>("from");
        QTest::addColumn<QColor>("to");
        const QColor deepBlue(0x2A, 0x0A, 0x93);
        QTest::newRow("white, orange to blue") << QColor(Qt::white) << QColor(0xFF, 0xC0, 0x80) << deepBlue;
        QTest::newRow("black, white to blue") << QColor(Qt::black) << QColor(Qt::white) << deepBlue;
        QTest::newRow("white, black to green")
            << QColor(Qt::white) << QColor(Qt::black) << QColor(0, 0xFF, 0);
        QTest::newRow("white, cyan to blue")
            << QColor(Qt::white) << QColor(0, 0xFF, 0xFF) << QColor(0, 0, 0xFF);
        QTest::newRow("white on white") << QColor(Qt::white) << QColor(Qt::white) << QColor(Qt::white);
        QTest::newRow("black, orange to red")
            << QColor(Qt::black) << QColor(0xFF, 0xC0, 0x80) << QColor(0xC0, 0, 0);
    }
    void outlineIsStrongEnough() {
        QFETCH(QColor, ink);
        QFETCH(QColor, from);
        QFETCH(QColor, to);
        const QColor outline = outlineFor(ink, from, to, 4.5);
        QVERIFY(outline.isValid());
        for (int i = 0; i <= 20; ++i) {
            const QColor rim = mixed(mixed(from, to, i / 20.0), QColor(outline.rgb()), outline.alphaF());
            QVERIFY2(contrast(ink, rim) >= 4.4,
                     qPrintable(QStringLiteral("%1 at %2").arg(contrast(ink, rim)).arg(i)));
        }
    }

    void inkOnAFace_data() {
        QTest::addColumn<QColor>("wanted");
        QTest::addColumn<QColor>("face");
        QTest::addColumn<QColor>("ink");
        QTest::newRow("legible stays") << QColor(Qt::blue) << QColor(Qt::white) << QColor(Qt::blue);
        QTest::newRow("white on pure red") << QColor(Qt::white) << QColor(Qt::red) << QColor(Qt::black);
        QTest::newRow("white on dark red") << QColor(Qt::white) << QColor(0xC0, 0, 0) << QColor(Qt::white);
        QTest::newRow("ink on dark red")
            << QColor(0x12, 0x1A, 0x22) << QColor(0xC0, 0, 0) << QColor(Qt::white);
        QTest::newRow("ink on black") << QColor(0x12, 0x1A, 0x22) << QColor(Qt::black) << QColor(Qt::white);
        QTest::newRow("white on white") << QColor(Qt::white) << QColor(Qt::white) << QColor(Qt::black);
    }
    void inkOnAFace() {
        QFETCH(QColor, wanted);
        QFETCH(QColor, face);
        QFETCH(QColor, ink);
        QCOMPARE(inkOn(wanted, face, face), ink);
    }

    void largeGlyphsNeedLessContrast() {
        FittedText fitted;
        fitted.fit(QStringLiteral("A"), QFont(), 23, QRectF(0, 0, 200, 200), Qt::AlignCenter, 1);
        QCOMPARE(fitted.wantedContrast(), 4.5);
        fitted.fit(QStringLiteral("A"), QFont(), 24, QRectF(0, 0, 200, 200), Qt::AlignCenter, 1);
        QCOMPARE(fitted.wantedContrast(), 3.0);
        // What counts is the size that is painted, not the one that was asked for.
        fitted.fit(QStringLiteral("A"), QFont(), 60, QRectF(0, 0, 200, 20), Qt::AlignCenter, 1);
        QCOMPARE(fitted.wantedContrast(), 4.5);
    }

    void outlineStandsAroundTheGlyphs_data() {
        QTest::addColumn<double>("ratio");
        QTest::newRow("usual screen") << 1.0;
        QTest::newRow("dense screen") << 2.0;
    }
    void outlineStandsAroundTheGlyphs() {
        QFETCH(double, ratio);
        FittedText fitted;
        // A block of whole pixels: what isn't the block's own is its outline.
        fitted.fit(QString(QChar(0x2588)), QFont(), 20, QRectF(10, 10, 60, 40), Qt::AlignCenter, 1);
        const auto painted = [&](const QColor& outline) {
            QImage image(QSizeF(80 * ratio, 60 * ratio).toSize(), QImage::Format_RGB32);
            image.setDevicePixelRatio(ratio);
            image.fill(Qt::white);
            QPainter painter(&image);
            fitted.paint(painter, Qt::blue, outline);
            return image;
        };
        const auto countOf = [](const QImage& image, const auto& isOne) {
            int count = 0;
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x)
                    count += isOne(image.pixelColor(x, y)) ? 1 : 0;
            }
            return count;
        };
        const auto isInk = [](const QColor& pixel) { return pixel == QColor(Qt::blue); };
        const auto isRim = [](const QColor& pixel) { return pixel.blue() < 200; };
        const QImage plain = painted({});
        QVERIFY(countOf(plain, isInk) > 100);
        QCOMPARE(countOf(plain, isRim), 0);
        const QImage outlined = painted(QColor(0, 0, 0, 128));
        QCOMPARE(countOf(outlined, isInk), countOf(plain, isInk));
        const int rim = countOf(outlined, isRim);
        QVERIFY2(rim > 20, qPrintable(QString::number(rim)));
        // Half as strong as black, and one pixel wide.
        QCOMPARE(countOf(outlined, [](const QColor& pixel) { return pixel.blue() < 110; }), 0);
        const QRectF around = fitted.bounds().adjusted(-2, -2, 2, 2);
        QVERIFY(rim < 2.2 * ratio * ratio * (around.width() + around.height()) * 2);
        // Kept for the next painting, and made anew for another colour.
        QCOMPARE(painted(QColor(0, 0, 0, 128)), outlined);
        QVERIFY(painted(QColor(255, 0, 0, 128)) != outlined);
        QCOMPARE(painted(QColor(0, 0, 0, 128)), outlined);
    }

    void outlineFollowsTheText() {
        const auto painted = [](FittedText& fitted, const QString& text) {
            fitted.fit(text, QFont(), 20, QRectF(0, 0, 100, 40), Qt::AlignLeft | Qt::AlignVCenter, 1);
            QImage image(100, 40, QImage::Format_RGB32);
            image.fill(Qt::white);
            QPainter painter(&image);
            fitted.paint(painter, Qt::white, QColor(0, 0, 0, 200));
            return image;
        };
        FittedText fitted;
        FittedText fresh;
        painted(fitted, QStringLiteral("I"));
        QCOMPARE(painted(fitted, QStringLiteral("MMM")), painted(fresh, QStringLiteral("MMM")));
    }

    void contrastRatios() {
        QVERIFY(std::abs(contrast(Qt::black, Qt::white) - 21.0) < 0.01);
        QVERIFY(std::abs(contrast(Qt::red, Qt::red) - 1.0) < 0.001);
        // A known pair of the guideline's own examples: the lightest grey that passes 4.5 on white.
        QVERIFY(contrast(QColor(0x76, 0x76, 0x76), Qt::white) >= 4.5);
        QVERIFY(contrast(QColor(0x77, 0x77, 0x77), Qt::white) < 4.5);
    }
};

QTEST_MAIN(TestFittedText)
#include "test_fittedtext.moc"
