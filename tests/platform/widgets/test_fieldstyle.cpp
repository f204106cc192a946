#include "widgets/fieldstyle.h"

#include <QLineEdit>
#include <QStyleFactory>
#include <QtTest>

#include "widgets/look.h"

using namespace kovanix;

/// Rims are told apart by their pixels.
class FieldStyleTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setStyle(new FieldStyle(QStyleFactory::create("Fusion"))); }

    void rims() {
        QWidget window;
        QLineEdit field(&window);
        QLineEdit other(&window);
        field.setGeometry(10, 10, 200, 48);
        other.setGeometry(10, 70, 200, 48);
        window.resize(220, 130);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        const auto pixel = [&](int x, int y) { return field.grab().toImage().pixelColor(x, y); };

        other.setFocus();
        QCOMPARE(pixel(100, 0), roleColor(ColorRole::fieldLine));
        QCOMPARE(pixel(0, 24), roleColor(ColorRole::fieldLine));
        QCOMPARE(pixel(100, 1), field.palette().color(QPalette::Base));

        field.setFocus();
        for (const QPoint place :
             {QPoint(100, 0), QPoint(100, 1), QPoint(1, 24), QPoint(199, 24), QPoint(100, 47)})
            QCOMPARE(pixel(place.x(), place.y()), roleColor(ColorRole::focus));
        QCOMPARE(pixel(100, 3), field.palette().color(QPalette::Base));

        field.setEnabled(false);
        QCOMPARE(pixel(100, 0), roleColor(ColorRole::fieldLine));
        QCOMPARE(pixel(100, 24), roleColor(ColorRole::fieldOff));
    }

    /// A field's own ground stays: the barcode's is red.
    void ownGround() {
        QLineEdit field;
        field.resize(200, 48);
        QPalette palette = field.palette();
        palette.setColor(QPalette::Base, Qt::red);
        field.setPalette(palette);
        QCOMPARE(field.grab().toImage().pixelColor(100, 10), QColor(Qt::red));
    }

    void cornersAreRound() {
        QWidget window;
        window.resize(220, 70);
        QPalette palette = window.palette();
        palette.setColor(QPalette::Window, Qt::green);
        window.setPalette(palette);
        auto* field = new QLineEdit(&window);
        field->setGeometry(10, 10, 200, 48);
        QCOMPARE(window.grab().toImage().pixelColor(10, 10), QColor(Qt::green));
    }

    void aFieldWithoutAFrameHasNoRim() {
        QLineEdit field;
        field.setFrame(false);
        field.resize(200, 48);
        QCOMPARE(field.grab().toImage().pixelColor(100, 0), field.palette().color(QPalette::Base));
    }
};

QTEST_MAIN(FieldStyleTest)
#include "test_fieldstyle.moc"
