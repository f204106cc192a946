#include <QImage>
#include <QPainter>
#include <QTest>
#include <optional>

#include "rows.h"
#include "widgets/face.h"
#include "widgets/fittedtext.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

class TestFittedText : public QObject {
    Q_OBJECT

    struct FitsRow {
        QString text;
        QSizeF box;
        int mostLines, lines;
        bool fullSize;
    };
    struct TooLongRow {
        QString text;
        int wanted, smallest;
        std::optional<int> elidedAt;
    };
    struct PixelSizesRow {
        double points;
        int dots, pixels;
    };
    struct OutlineOnlyWhereNeededRow {
        QColor ink, from, to;
        double wanted;
        QColor outline;
    };
    struct OutlineIsStrongEnoughRow {
        QColor ink, from, to;
    };
    struct InkOnAFaceRow {
        QColor wanted, face, ink;
    };

private Q_SLOTS:
    void fits_data() {
        addRows<FitsRow>(
            {{"one line in plenty of room", {u"TAMAM"_s, QSizeF(400, 100), 3, 1, true}},
             {"two words, narrow", {u"MMMMM MMMMM"_s, QSizeF(130, 100), 3, 2, true}},
             {"two words, one line allowed", {u"MMMMM MMMMM"_s, QSizeF(130, 100), 1, 1, false}},
             {"low box", {u"TAMAM"_s, QSizeF(400, 12), 3, 1, false}},
             {"wide word", {u"MMMMMMMMMMMM"_s, QSizeF(150, 100), 3, 1, false}},
             {"word too wide for legible glyphs", {u"MMMMMMMMMMMM"_s, QSizeF(100, 100), 3, 2, false}},
             {"own line break", {u"1\n2"_s, QSizeF(100, 100), 1, 2, true}},
             {"amount isn't broken", {u"123.456.789,00"_s, QSizeF(60, 100), 3, 1, false}},
             {"empty", {QString(), QSizeF(100, 100), 3, 1, true}},
             {"hopeless", {QString(900, QLatin1Char('M')), QSizeF(40, 20), 3, 1, false}},
             {"no room at all", {u"M"_s, QSizeF(0, 0), 3, 1, false}}});
    }
    void fits() {
        QFETCH(const FitsRow, row);
        FittedText fitted;
        fitted.fit(row.text, QFont(), 20, QRectF(QPointF(10, 20), row.box), Qt::AlignCenter, row.mostLines);
        QCOMPARE(fitted.lineCount(), row.lines);
        QCOMPARE(fitted.pixelSize() == 20, row.fullSize);
        if (!row.box.isEmpty() && !row.text.isEmpty())
            QVERIFY(
                QRectF(QPointF(10, 20), row.box).adjusted(-0.1, -0.1, 0.1, 0.1).contains(fitted.bounds()));
    }

    void wordsEndLegiblyFiguresNever_data() {
        addRows<TooLongRow>({{"a name", {u"Acıbadem kurabiyesi çikolata kaplı fıstıklı 250 g"_s, 20, 11, 11}},
                             {"a name that may get smaller", {QString(60, u'm'), 20, 7, 7}},
                             {"one word", {QString(60, u'm'), 20, 11, 11}},
                             {"a name that is to be small", {QString(60, u'm'), 9, 11, 9}},
                             {"an amount", {u"123.456.789.012.345,00"_s, 20, 11, {}}},
                             {"an amount that no ticket comes to", {QString(60, u'9'), 20, 11, {}}}});
    }
    void wordsEndLegiblyFiguresNever() {
        QFETCH(const TooLongRow, row);
        const QRectF box(0, 0, 66, 34);
        FittedText fitted;
        fitted.fit(row.text, QFont(), row.wanted, box, Qt::AlignCenter, 2, row.smallest);
        QVERIFY(box.adjusted(-0.1, -0.1, 0.1, 0.1).contains(fitted.bounds()));
        if (row.elidedAt) {
            QCOMPARE(fitted.pixelSize(), *row.elidedAt);
            QVERIFY2(fitted.shown().endsWith(QChar(0x2026)), qPrintable(fitted.shown()));
        } else {
            QVERIFY(fitted.pixelSize() < 11);
            QCOMPARE(fitted.shown(), row.text);
        }
    }

    void controlCharactersArentDrawn() {
        const auto drawn = [](const QString& text) {
            FittedText fitted;
            fitted.fit(text, QFont(), 20, QRectF(0, 0, 300, 40), Qt::AlignLeft | Qt::AlignVCenter, 1);
            QImage image(300, 40, QImage::Format_RGB32);
            image.fill(Qt::white);
            QPainter painter(&image);
            fitted.paint(painter, Qt::black);
            return image;
        };
        QCOMPARE(drawn(u"\u009D\u009DFRE G\u009DSTER"_s), drawn(u"FRE GSTER"_s));
        QVERIFY(drawn(u"FRE GSTER"_s) != drawn(u"FRE STER"_s));
    }

    void linesAreBalanced() {
        FittedText fitted;
        const QRectF box(0, 0, 190, 100);
        fitted.fit(u"MMM MMM MMM MMM"_s, QFont(), 20, box, Qt::AlignCenter, 3);
        QCOMPARE(fitted.lineCount(), 2);
        FittedText half;
        half.fit(u"MMM MMM"_s, QFont(), 20, box, Qt::AlignCenter, 3);
        QVERIFY(fitted.bounds().width() < half.bounds().width() + 1);
    }

    void everyArgumentIsHeeded() {
        FittedText fitted;
        const QRectF box(0, 0, 200, 40);
        fitted.fit(u"A"_s, QFont(), 20, box, Qt::AlignCenter, 1);
        const QRectF first = fitted.bounds();
        fitted.fit(u"AAAA"_s, QFont(), 20, box, Qt::AlignCenter, 1);
        QVERIFY(fitted.bounds().width() > first.width());
        fitted.fit(u"A"_s, QFont(), 20, box, Qt::AlignRight, 1);
        QVERIFY(fitted.bounds().left() > first.left());
        fitted.fit(u"A"_s, QFont(), 10, box, Qt::AlignCenter, 1);
        QCOMPARE(fitted.pixelSize(), 10);
        fitted.fit(u"A"_s, QFont(), 20, QRectF(0, 0, 200, 10), Qt::AlignCenter, 1);
        QVERIFY(fitted.pixelSize() < 20);
        QFont spaced;
        spaced.setLetterSpacing(QFont::AbsoluteSpacing, 30);
        fitted.fit(u"AA"_s, QFont(), 20, box, Qt::AlignCenter, 1);
        const double narrow = fitted.bounds().width();
        fitted.fit(u"AA"_s, spaced, 20, box, Qt::AlignCenter, 1);
        QVERIFY(fitted.bounds().width() > narrow + 20);
        fitted.fit(u"A"_s, QFont(), 20, box, Qt::AlignCenter, 1);
        QCOMPARE(fitted.bounds(), first);
    }

    void pixelSizes_data() {
        addRows<PixelSizesRow>({{"12 points at 96", {12.0, 96, 16}},
                                {"12 points at 72", {12.0, 72, 12}},
                                {"10.5 points at 96", {10.5, 96, 14}}});
    }
    void pixelSizes() {
        QFETCH(const PixelSizesRow, row);
        QFont font;
        font.setPointSizeF(row.points);
        QCOMPARE(FittedText::pixelSizeOf(font, row.dots), row.pixels);
        font.setPixelSize(33);
        QCOMPARE(FittedText::pixelSizeOf(font, row.dots), 33);
    }

    void outlineOnlyWhereNeeded_data() {
        QTest::addColumn<OutlineOnlyWhereNeededRow>("row");
        const QColor none;
        const QColor teal(0, 0xC0, 0xC0);
        const QColor orange(0xFF, 0xC0, 0x80);
        const QColor deepBlue(0x2A, 0x0A, 0x93);
        QTest::newRow("black on white")
            << OutlineOnlyWhereNeededRow{QColor(Qt::black), QColor(Qt::white), QColor(Qt::white), 4.5, none};
        QTest::newRow("red on white, large")
            << OutlineOnlyWhereNeededRow{QColor(Qt::red), QColor(Qt::white), QColor(Qt::white), 3.0, none};
        QTest::newRow("red on white, small") << OutlineOnlyWhereNeededRow{
            QColor(Qt::red), QColor(Qt::white), QColor(Qt::white), 4.5, mixed(Qt::red, Qt::black, 0.1)};
        QTest::newRow("teal on white, large") << OutlineOnlyWhereNeededRow{
            teal, QColor(Qt::white), QColor(Qt::white), 3.0, mixed(teal, Qt::black, 0.35)};
        // Too dark for a shade that is still one of it.
        QTest::newRow("navy on black")
            << OutlineOnlyWhereNeededRow{QColor(0, 0, 0x40), QColor(Qt::black), QColor(Qt::black), 4.5,
                                         mixed(QColor(0, 0, 0x40), Qt::white, 0.45)};
        QTest::newRow("teal on black")
            << OutlineOnlyWhereNeededRow{teal, QColor(Qt::black), QColor(Qt::black), 4.5, none};
        QTest::newRow("white, orange to blue")
            << OutlineOnlyWhereNeededRow{QColor(Qt::white), orange, deepBlue, 4.5, QColor(Qt::black)};
        QTest::newRow("white, the blue part")
            << OutlineOnlyWhereNeededRow{QColor(Qt::white), deepBlue, deepBlue, 4.5, none};
        QTest::newRow("black, white to blue") << OutlineOnlyWhereNeededRow{
            QColor(Qt::black), QColor(Qt::white), deepBlue, 4.5, QColor(Qt::white)};
        QTest::newRow("white, black to green") << OutlineOnlyWhereNeededRow{
            QColor(Qt::white), QColor(Qt::black), QColor(0, 0xFF, 0), 4.5, QColor(Qt::black)};
        // Both ends stand out, the middle doesn't.
        QTest::newRow("grey, black to white") << OutlineOnlyWhereNeededRow{
            QColor(0x80, 0x80, 0x80), QColor(Qt::black), QColor(Qt::white), 3.0, QColor(Qt::black)};
        QTest::newRow("black on black") << OutlineOnlyWhereNeededRow{
            QColor(Qt::black), QColor(Qt::black), QColor(Qt::black), 4.5, QColor(Qt::white)};
    }
    void outlineOnlyWhereNeeded() {
        QFETCH(const OutlineOnlyWhereNeededRow, row);
        const QColor given = outlineFor(row.ink, row.from, row.to, row.wanted);
        QCOMPARE(given.isValid(), row.outline.isValid());
        if (!row.outline.isValid())
            return;
        QCOMPARE(given.rgb(), row.outline.rgb());
        // A shade of the ink is painted as it is. Black or white is soft, and of no use when it can't be
        // seen.
        if (row.ink.hsvSaturation() > 60)
            return;
        QVERIFY2(given.alphaF() >= 0.49F && given.alphaF() <= 0.6F,
                 qPrintable(QString::number(given.alphaF())));
    }

    // The rim that is left of the face behind the outline reaches the wanted contrast with the glyphs,
    // wherever.
    void outlineIsStrongEnough_data() {
        const QColor deepBlue(0x2A, 0x0A, 0x93);
        addRows<OutlineIsStrongEnoughRow>(
            {{"white, orange to blue", {QColor(Qt::white), QColor(0xFF, 0xC0, 0x80), deepBlue}},
             {"black, white to blue", {QColor(Qt::black), QColor(Qt::white), deepBlue}},
             {"white, black to green", {QColor(Qt::white), QColor(Qt::black), QColor(0, 0xFF, 0)}},
             {"white, cyan to blue", {QColor(Qt::white), QColor(0, 0xFF, 0xFF), QColor(0, 0, 0xFF)}},
             {"white on white", {QColor(Qt::white), QColor(Qt::white), QColor(Qt::white)}},
             {"black, orange to red", {QColor(Qt::black), QColor(0xFF, 0xC0, 0x80), QColor(0xC0, 0, 0)}}});
    }
    void outlineIsStrongEnough() {
        QFETCH(const OutlineIsStrongEnoughRow, row);
        const QColor outline = outlineFor(row.ink, row.from, row.to, 4.5);
        QVERIFY(outline.isValid());
        for (int i = 0; i <= 20; ++i) {
            const QColor rim =
                mixed(mixed(row.from, row.to, i / 20.0), QColor(outline.rgb()), outline.alphaF());
            QVERIFY2(contrast(row.ink, rim) >= 4.4,
                     qPrintable(u"%1 at %2"_s.arg(contrast(row.ink, rim)).arg(i)));
        }
    }

    void inkOnAFace_data() {
        addRows<InkOnAFaceRow>(
            {{"legible stays", {QColor(Qt::blue), QColor(Qt::white), QColor(Qt::blue)}},
             {"white on pure red", {QColor(Qt::white), QColor(Qt::red), QColor(Qt::black)}},
             {"white on dark red", {QColor(Qt::white), QColor(0xC0, 0, 0), QColor(Qt::white)}},
             {"ink on dark red", {QColor(0x12, 0x1A, 0x22), QColor(0xC0, 0, 0), QColor(Qt::white)}},
             {"ink on black", {QColor(0x12, 0x1A, 0x22), QColor(Qt::black), QColor(Qt::white)}},
             {"white on white", {QColor(Qt::white), QColor(Qt::white), QColor(Qt::black)}}});
    }
    void inkOnAFace() {
        QFETCH(const InkOnAFaceRow, row);
        QCOMPARE(inkOn(row.wanted, row.face, row.face), row.ink);
    }

    void largeGlyphsNeedLessContrast() {
        FittedText fitted;
        fitted.fit(u"A"_s, QFont(), 23, QRectF(0, 0, 200, 200), Qt::AlignCenter, 1);
        QCOMPARE(fitted.wantedContrast(), 4.5);
        fitted.fit(u"A"_s, QFont(), 24, QRectF(0, 0, 200, 200), Qt::AlignCenter, 1);
        QCOMPARE(fitted.wantedContrast(), 3.0);
        // What counts is the size that is painted, not the one that was asked for.
        fitted.fit(u"A"_s, QFont(), 60, QRectF(0, 0, 200, 20), Qt::AlignCenter, 1);
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
        painted(fitted, u"I"_s);
        QCOMPARE(painted(fitted, u"MMM"_s), painted(fresh, u"MMM"_s));
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
