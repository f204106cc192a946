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

    void haloOnlyWhereNeeded_data() {
        QTest::addColumn<QColor>("text");
        QTest::addColumn<QColor>("face");
        QTest::addColumn<bool>("halo");
        QTest::newRow("black on white") << QColor(Qt::black) << QColor(Qt::white) << false;
        QTest::newRow("teal on white") << QColor(0, 0xC0, 0xC0) << QColor(Qt::white) << false;
        QTest::newRow("white on cyan") << QColor(Qt::white) << QColor(Qt::cyan) << true;
        QTest::newRow("black on black") << QColor(Qt::black) << QColor(Qt::black) << true;
    }
    void haloOnlyWhereNeeded() {
        QFETCH(QColor, text);
        QFETCH(QColor, face);
        QFETCH(bool, halo);
        QCOMPARE(haloFor(text, face).isValid(), halo);
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
