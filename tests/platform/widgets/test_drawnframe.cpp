#include <QImage>
#include <QLayout>
#include <QTest>
#include <QVBoxLayout>
#include <cstdlib>

#include "paintcounter.h"
#include "widgets/drawnframe.h"
#include "widgets/vklabel.h"

using namespace kovanix;

class TestDrawnFrame : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void titleTakesItsHeightOffTheMargins() {
        vkFrame frame;
        frame.setContentsMargins(3, 5, 7, 9);
        frame.setCaption(QStringLiteral("SATIS DUZENLE"));
        const int title = frame.contentsMargins().top() - 5;
        QVERIFY(title > QFontMetrics(frame.font()).height());
        QCOMPARE(frame.contentsMargins().bottom(), 9);
        frame.setCaption(QStringLiteral("other"));
        QCOMPARE(frame.contentsMargins().top(), title + 5);
        frame.setCaption({});
        QCOMPARE(frame.contentsMargins(), QMargins(3, 5, 7, 9));
    }

    void titleGrowsWithTheFont() {
        vkFrame frame;
        frame.setCaption(QStringLiteral("T"));
        const int before = frame.contentsMargins().top();
        QFont font = frame.font();
        font.setPixelSize(60);
        frame.setFont(font);
        QVERIFY(frame.contentsMargins().top() > before);
        frame.setCaption({});
        QCOMPARE(frame.contentsMargins().top(), 0);
    }

    void coloursArePainted() {
        vkFrame frame;
        frame.resize(300, 200);
        frame.setBackcolor1(Qt::red);
        frame.setBackcolor2(Qt::red);
        frame.setTitlecolor1(Qt::blue);
        frame.setTitlecolor2(Qt::green);
        frame.setBordercolor(Qt::magenta);
        QCOMPARE(frame.grab().toImage().pixelColor(150, 6), QColor(Qt::red));
        frame.setCaption(QStringLiteral("T"));
        const QImage image = frame.grab().toImage();
        QVERIFY(image.pixelColor(6, 12).blue() > 240);
        QVERIFY(image.pixelColor(294, 12).green() > 240);
        QCOMPARE(image.pixelColor(150, 150), QColor(Qt::red));
        QCOMPARE(image.pixelColor(0, 150), QColor(Qt::magenta));
    }

    void sameValuesDontRepaint_data() {
        QTest::addColumn<QByteArray>("property");
        QTest::addColumn<QVariant>("other");
        QTest::newRow("caption") << QByteArray("caption") << QVariant(QStringLiteral("B"));
        for (const char* name :
             {"backcolor1", "backcolor2", "bordercolor", "forecolor", "titlecolor1", "titlecolor2"})
            QTest::newRow(name) << QByteArray(name) << QVariant(QColor(1, 2, 3));
    }
    void sameValuesDontRepaint() {
        QFETCH(QByteArray, property);
        QFETCH(QVariant, other);
        vkFrame frame;
        frame.show();
        QVERIFY(QTest::qWaitForWindowExposed(&frame));
        QCoreApplication::processEvents();
        PaintCounter paints(frame);
        frame.setProperty(property.constData(), frame.property(property.constData()));
        QCoreApplication::processEvents();
        QCOMPARE(paints.count(), 0);
        frame.setProperty(property.constData(), other);
        QTRY_VERIFY(paints.count() > 0);
        QCOMPARE(frame.property(property.constData()), other);
    }

    void labelKeepsItsGlyphsInside() {
        vkLabel label;
        label.setForecolor(Qt::red);
        label.setCaption(QStringLiteral("a label that is far too long & has no room"));
        label.resize(60, 12);
        const QImage image = label.grab().toImage();
        int ink = 0;
        for (int x = 0; x < 60; ++x) {
            for (int y = 0; y < 12; ++y)
                ink += image.pixelColor(x, y).red() - image.pixelColor(x, y).green() > 40 ? 1 : 0;
        }
        QVERIFY(ink > 10);
        for (int y = 0; y < 12; ++y)
            QVERIFY(image.pixelColor(59, y).red() - image.pixelColor(59, y).green() < 100);
    }

    void labelAlignment_data() {
        QTest::addColumn<Qt::Alignment>("alignment");
        QTest::addColumn<int>("from");
        QTest::newRow("left") << Qt::Alignment(Qt::AlignLeft | Qt::AlignVCenter) << 0;
        QTest::newRow("centre") << Qt::Alignment(Qt::AlignCenter) << 100;
        QTest::newRow("right") << Qt::Alignment(Qt::AlignRight | Qt::AlignVCenter) << 200;
    }
    void labelAlignment() {
        QFETCH(Qt::Alignment, alignment);
        QFETCH(int, from);
        vkLabel label;
        label.resize(300, 40);
        label.setForecolor(Qt::red);
        label.setCaption(QStringLiteral("HH"));
        label.setCaptionAlignment(alignment);
        const QImage image = label.grab().toImage();
        for (int x = 0; x < 300; ++x) {
            for (int y = 0; y < 40; ++y) {
                if (image.pixelColor(x, y).red() - image.pixelColor(x, y).green() > 100)
                    QVERIFY2(x >= from && x < from + 100, qPrintable(QString::number(x)));
            }
        }
    }

    void labelLaysOutOnlyWhenItsSizeChanges() {
        QWidget window;
        auto* layout = new QVBoxLayout(&window);
        auto* label = new vkLabel(&window);
        layout->addWidget(label);
        label->setCaption(QStringLiteral("12:00"));
        const QSize before = label->sizeHint();
        label->setCaption(QStringLiteral("12:01:00"));
        QVERIFY(label->sizeHint().width() > before.width());
        QCOMPARE(label->sizeHint().height(), before.height());
    }
};

QTEST_MAIN(TestDrawnFrame)
#include "test_drawnframe.moc"
