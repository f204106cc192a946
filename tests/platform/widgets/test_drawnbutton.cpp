#include <QIcon>
#include <QImage>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>
#include <cstdlib>
#include <functional>

#include "paintcounter.h"
#include "rows.h"
#include "widgets/drawnbutton.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

constexpr QSize buttonSize(120, 60);

QImage picture(QWidget& control) {
    return control.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

bool near(const QColor& one, const QColor& other, int tolerance) {
    return std::abs(one.red() - other.red()) <= tolerance &&
           std::abs(one.green() - other.green()) <= tolerance &&
           std::abs(one.blue() - other.blue()) <= tolerance;
}

// Two face colours that no shading of ours could turn into one another.
void dress(DrawnButton& button) {
    button.resize(buttonSize);
    button.setBackcolor1(QColor(0xFF, 0xFF, 0x00));
    button.setBackcolor2(QColor(0x00, 0xA0, 0x00));
    button.setBackcolorpushed1(QColor(0x00, 0x00, 0xFF));
    button.setBackcolorpushed2(QColor(0xFF, 0x00, 0x00));
}

int inkCount(const QImage& image, const QColor& ink) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += near(image.pixelColor(x, y), ink, 40) ? 1 : 0;
    }
    return count;
}

}  // namespace

class TestDrawnButton : public QObject {
    Q_OBJECT

    struct FacesByStateRow {
        bool down;
        QColor top, bottom;
    };
    struct DisabledCaptionIsLegibleRow {
        QColor face, ink;
    };
    struct CaptionStaysOffTheBorderRow {
        QString caption;
        int fontsize;
    };
    struct CaptionAlignmentRow {
        Qt::Alignment alignment;
        int third;
    };
    struct IconIsPaintedRow {
        QSize size;
        QString caption;
        QPoint place;
        bool atEdge = false;
        bool beside = false;
    };
    struct HeldPressRow {
        std::function<void(vkCommand&)> end;
    };
    struct SameValuesDontRepaintRow {
        QByteArray property;
        QVariant other;
    };
    struct KeysPressRow {
        int key, presses;
    };
    struct MouseButtonsRow {
        Qt::MouseButton mouse;
        int clicks;
    };

private Q_SLOTS:
    void facesByState_data() {
        addRows<FacesByStateRow>({{"at rest", {false, QColor(0xFF, 0xFF, 0x00), QColor(0x00, 0xA0, 0x00)}},
                                  {"pressed", {true, QColor(0x00, 0x00, 0xFF), QColor(0xFF, 0x00, 0x00)}}});
    }
    void facesByState() {
        QFETCH(const FacesByStateRow, row);
        vkCommand button;
        dress(button);
        button.setDown(row.down);
        const QImage image = picture(button);
        QVERIFY2(near(image.pixelColor(60, 5), row.top, 40), qPrintable(image.pixelColor(60, 5).name()));
        QVERIFY2(near(image.pixelColor(60, 55), row.bottom, 40), qPrintable(image.pixelColor(60, 55).name()));
    }

    void checkedToggleShowsPressed() {
        vkToggleButton button;
        dress(button);
        button.setCheckable(true);
        button.setChecked(true);
        QVERIFY(near(picture(button).pixelColor(60, 55), QColor(0xFF, 0x00, 0x00), 40));
    }

    void pressIsSeenWithEqualColours() {
        vkCommand button;
        button.resize(buttonSize);
        button.setBackcolorpushed1(button.backcolor1());
        button.setBackcolorpushed2(button.backcolor2());
        const QImage rest = picture(button);
        button.setDown(true);
        QVERIFY(rest != picture(button));
    }

    void disabledFaceIsPale() {
        vkCommand button;
        dress(button);
        button.setCaption(u"KAYDET"_s);
        button.setForecolor(Qt::black);
        const QColor enabled = picture(button).pixelColor(20, 55);
        button.setEnabled(false);
        const QImage image = picture(button);
        const QColor disabled = image.pixelColor(20, 55);
        QVERIFY2(disabled.hslSaturation() * 3 < enabled.hslSaturation(), qPrintable(disabled.name()));
        QCOMPARE(inkCount(image, Qt::black), 0);
    }

    void disabledCaptionIsLegible_data() {
        addRows<DisabledCaptionIsLegibleRow>({{"dark on light", {QColor(Qt::white), QColor(Qt::black)}},
                                              {"light on dark", {QColor(Qt::black), QColor(Qt::white)}},
                                              {"white on red", {QColor(Qt::red), QColor(Qt::white)}}});
    }
    void disabledCaptionIsLegible() {
        QFETCH(const DisabledCaptionIsLegibleRow, row);
        vkCommand button;
        button.resize(buttonSize);
        button.setBackcolor1(row.face);
        button.setBackcolor2(row.face);
        button.setForecolor(row.ink);
        button.setFontsize(30);
        button.setCaption(u"███"_s);
        button.setEnabled(false);
        const QImage image = picture(button);
        const int ground = qGray(image.pixel(20, 54));
        const int glyph = qGray(image.pixel(60, 30));
        QVERIFY2(std::abs(ground - glyph) >= 40, qPrintable(u"%1 on %2"_s.arg(glyph).arg(ground)));
    }

    void ampersandIsALetter() {
        vkCommand raw;
        vkCommand underlined;
        for (vkCommand* button : {&raw, &underlined})
            dress(*button);
        raw.setCaption(u"A&B"_s);
        underlined.setCaption(u"AB"_s);
        const QImage rawImage = picture(raw);
        QVERIFY(rawImage != picture(underlined));
        QVERIFY(inkCount(rawImage, raw.forecolor()) > inkCount(picture(underlined), raw.forecolor()));
        QCOMPARE(raw.caption(), u"A&B"_s);
        QCOMPARE(raw.shortcut(), QKeySequence());
    }

    void captionStaysOffTheBorder_data() {
        addRows<CaptionStaysOffTheBorderRow>(
            {{"long words", {u"KAYDET VE YAZDIR VE ARDINDAN KAPAT"_s, 0}},
             {"one long word", {u"MUVAFFAKIYETSIZLESTIRICILESTIRIVEREBILECEK"_s, 0}},
             {"huge total", {u"123.456.789,00"_s, 120}},
             {"huge short total", {u"0,00"_s, 120}},
             {"more than can be read", {QString(600, QLatin1Char('W')), 0}},
             {"lines of its own", {u"1\n2\n3\n4\n5"_s, 0}}});
    }
    void captionStaysOffTheBorder() {
        QFETCH(const CaptionStaysOffTheBorderRow, row);
        vkCommand button;
        button.resize(buttonSize);
        button.setForecolor(Qt::red);
        button.setBackcolor1(Qt::white);
        button.setBackcolor2(Qt::white);
        button.setFontsize(row.fontsize);
        button.setCaption(row.caption);
        const QImage image = picture(button);
        int inside = 0;
        int outside = 0;
        const QRect middle = image.rect().adjusted(4, 3, -4, -3);
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor pixel = image.pixelColor(x, y);
                if (pixel.red() - pixel.green() > 60)
                    ++(middle.contains(x, y) ? inside : outside);
            }
        }
        QVERIFY(inside > 20);
        QCOMPARE(outside, 0);
        QCOMPARE(button.fontsize(), row.fontsize);
    }

    void captionAlignment_data() {
        addRows<CaptionAlignmentRow>({{"left", {Qt::Alignment(Qt::AlignLeft | Qt::AlignVCenter), 0}},
                                      {"centre", {Qt::Alignment(Qt::AlignCenter), 1}},
                                      {"right", {Qt::Alignment(Qt::AlignRight | Qt::AlignVCenter), 2}}});
    }
    void captionAlignment() {
        QFETCH(const CaptionAlignmentRow, row);
        vkToggleButton button;
        button.resize(300, 60);
        button.setForecolor(Qt::red);
        button.setCaption(u"HH"_s);
        button.setCaptionAlignment(row.alignment);
        const QImage image = picture(button);
        for (int part = 0; part < 3; ++part)
            QCOMPARE(inkCount(image.copy(100 * part, 0, 100, 60), Qt::red) > 0, part == row.third);
    }

    void keyHintIsPaintedAndMovesNoText() {
        vkCommand button;
        dress(button);
        button.setCaption(u"X"_s);
        const QImage without = picture(button);
        button.setKeyHint(u"F1"_s);
        const QImage with = picture(button);
        QVERIFY(without.copy(0, 0, 40, 25) != with.copy(0, 0, 40, 25));
        QCOMPARE(with.copy(40, 25, 80, 35), without.copy(40, 25, 80, 35));
    }

    void iconIsPainted_data() {
        addRows<IconIsPaintedRow>(
            {{"beside the caption, both in the middle", {QSize(160, 44), u"BUL"_s, QPoint(60, 22)}},
             {"at the edge", {QSize(160, 44), u"BUL"_s, QPoint(20, 22), true}},
             {"above the caption", {QSize(100, 110), u"BUL"_s, QPoint(50, 40)}},
             {"beside the caption on a high one", {QSize(160, 110), u"BUL"_s, QPoint(60, 55), false, true}},
             {"alone", {QSize(100, 60), QString(), QPoint(50, 30)}}});
    }
    void iconIsPainted() {
        QFETCH(const IconIsPaintedRow, row);
        QPixmap icon(32, 32);
        icon.fill(Qt::magenta);
        vkCommand button;
        button.resize(row.size);
        button.setIcon(QIcon(icon));
        button.setIconSize(QSize(28, 28));
        button.setIconAtEdge(row.atEdge);
        button.setIconBeside(row.beside);
        button.setCaption(row.caption);
        // A shape in the caption's colour, whatever its own is.
        button.setForecolor(Qt::darkGreen);
        QVERIFY(near(picture(button).pixelColor(row.place), Qt::darkGreen, 5));
    }

    void sameValuesDontRepaint_data() {
        addRows<SameValuesDontRepaintRow>(
            {{"caption", {QByteArray("caption"), QVariant(u"B"_s)}},
             {"backcolor1", {QByteArray("backcolor1"), QVariant(QColor(1, 2, 3))}},
             {"backcolor2", {QByteArray("backcolor2"), QVariant(QColor(1, 2, 3))}},
             {"backcolorpushed1", {QByteArray("backcolorpushed1"), QVariant(QColor(1, 2, 3))}},
             {"backcolorpushed2", {QByteArray("backcolorpushed2"), QVariant(QColor(1, 2, 3))}},
             {"forecolor", {QByteArray("forecolor"), QVariant(QColor(1, 2, 3))}},
             {"keyHint", {QByteArray("keyHint"), QVariant(u"F2"_s)}},
             {"fontsize", {QByteArray("fontsize"), QVariant(20)}}});
    }
    void sameValuesDontRepaint() {
        QFETCH(const SameValuesDontRepaintRow, row);
        vkCommand button;
        dress(button);
        button.show();
        QVERIFY(QTest::qWaitForWindowExposed(&button));
        QCoreApplication::processEvents();
        PaintCounter paints(button);
        button.setProperty(row.property.constData(), button.property(row.property.constData()));
        QCoreApplication::processEvents();
        QCOMPARE(paints.count(), 0);
        button.setProperty(row.property.constData(), row.other);
        QTRY_COMPARE(paints.count(), 1);
        QCOMPARE(button.property(row.property.constData()), row.other);
    }

    void disabledStaysDead() {
        vkCommand button;
        button.setEnabled(false);
        const QSignalSpy clicked(&button, &QAbstractButton::clicked);
        button.click();
        QTest::keyClick(&button, Qt::Key_Return);
        QTest::mouseClick(&button, Qt::LeftButton);
        QCOMPARE(clicked.count(), 0);
    }

    void mouseButtons_data() {
        addRows<MouseButtonsRow>({{"left", {Qt::LeftButton, 1}},
                                  {"right", {Qt::RightButton, 0}},
                                  {"middle", {Qt::MiddleButton, 0}}});
    }
    void mouseButtons() {
        QFETCH(const MouseButtonsRow, row);
        vkToggleButton button;
        button.resize(buttonSize);
        const QSignalSpy clicked(&button, &QAbstractButton::clicked);
        const QSignalSpy down(&button, &DrawnButton::mousedown);
        QTest::mouseClick(&button, row.mouse);
        QCOMPARE(down.count(), 1);
        QCOMPARE(down.at(0).at(0).value<Qt::MouseButton>(), row.mouse);
        QCOMPARE(clicked.count(), row.clicks);
    }

    void aHeldPressIsARightPress_data() {
        using Act = std::function<void(vkCommand&)>;
        const Act lift = [](vkCommand& button) { QTest::mouseRelease(&button, Qt::LeftButton); };
        const Act backOnto = [](vkCommand& button) {
            const QPoint outside(-20, -20);
            for (const QPoint place : {outside, button.rect().center()}) {
                QMouseEvent move(QEvent::MouseMove, place, button.mapToGlobal(place), Qt::NoButton,
                                 Qt::LeftButton, Qt::NoModifier);
                QCoreApplication::sendEvent(&button, &move);
            }
        };
        addRows<HeldPressRow>({
            {"lifted", {lift}},
            {"off it and back, then lifted", {[=](vkCommand& button) {
                 backOnto(button);
                 lift(button);
             }}},
        });
    }
    void aHeldPressIsARightPress() {
        QFETCH(const HeldPressRow, row);
        vkCommand button;
        button.resize(buttonSize);
        button.setHoldTime(20);
        const QSignalSpy clicked(&button, &QAbstractButton::clicked);
        const QSignalSpy down(&button, &DrawnButton::mousedown);
        QTest::mousePress(&button, Qt::LeftButton);
        QVERIFY(button.isDown());
        QTRY_COMPARE(down.count(), 2);
        QCOMPARE(down.at(1).at(0).value<Qt::MouseButton>(), Qt::RightButton);
        QVERIFY(!button.isDown());
        row.end(button);
        QCOMPARE(clicked.count(), 0);
        QCOMPARE(down.count(), 2);
        QVERIFY(!button.isDown());
        // The next one is an ordinary press again.
        QTest::mouseClick(&button, Qt::LeftButton);
        QCOMPARE(clicked.count(), 1);
    }

    void aPressThatComesBackIsHeldAnew() {
        vkCommand button;
        button.resize(buttonSize);
        button.setHoldTime(20);
        const QSignalSpy down(&button, &DrawnButton::mousedown);
        QTest::mousePress(&button, Qt::LeftButton);
        for (const QPoint place : {QPoint(-20, -20), button.rect().center()}) {
            QMouseEvent move(QEvent::MouseMove, place, button.mapToGlobal(place), Qt::NoButton,
                             Qt::LeftButton, Qt::NoModifier);
            QCoreApplication::sendEvent(&button, &move);
        }
        QTRY_COMPARE(down.count(), 2);
        QCOMPARE(down.at(1).at(0).value<Qt::MouseButton>(), Qt::RightButton);
    }

    void whatIsNoHeldPress_data() {
        const auto press = [](vkCommand& button) { QTest::mousePress(&button, Qt::LeftButton); };
        addRows<HeldPressRow>({
            {"lifted in time", {[](vkCommand& button) { QTest::mouseClick(&button, Qt::LeftButton); }}},
            {"slipped off", {[=](vkCommand& button) {
                 press(button);
                 QMouseEvent move(QEvent::MouseMove, QPointF(-20, -20), QPointF(0, 0), Qt::NoButton,
                                  Qt::LeftButton, Qt::NoModifier);
                 QCoreApplication::sendEvent(&button, &move);
             }}},
            {"hidden meanwhile", {[=](vkCommand& button) {
                 button.show();
                 press(button);
                 button.hide();
             }}},
            {"another button", {[](vkCommand& button) { QTest::mousePress(&button, Qt::MiddleButton); }}},
            {"switched off", {[=](vkCommand& button) {
                 button.setHoldTime(0);
                 press(button);
             }}},
            {"switched off meanwhile", {[=](vkCommand& button) {
                 press(button);
                 button.setHoldTime(0);
             }}},
        });
    }
    void whatIsNoHeldPress() {
        QFETCH(const HeldPressRow, row);
        constexpr int time = 5;
        vkCommand button;
        button.resize(buttonSize);
        button.setHoldTime(time);
        const QSignalSpy down(&button, &DrawnButton::mousedown);
        row.end(button);
        // Until another timer has run that is due later.
        bool later = false;
        QTimer::singleShot(4 * time, &button, [&later] { later = true; });
        QTRY_VERIFY(later);
        QCOMPARE(down.count(), 1);
    }

    void captionBreaksIntoNoMoreLinesThanItMay_data() {
        QTest::addColumn<int>("lines");
        QTest::newRow("one") << 1;
        QTest::newRow("two") << 2;
        QTest::newRow("three") << 3;
    }
    void captionBreaksIntoNoMoreLinesThanItMay() {
        QFETCH(int, lines);
        CommandButton button;
        button.resize(60, 100);
        QFont font;
        font.setPixelSize(15);
        button.setFont(font);
        button.setBackcolor1(Qt::white);
        button.setForecolor(Qt::black);
        button.setCaptionLines(lines);
        button.setCaption(u"mmmm mmmm mmmm"_s);
        // Rows of the picture with ink in them, in runs.
        const QImage image = picture(button);
        int runs = 0;
        bool within = false;
        for (int y = 4; y < image.height() - 4; ++y) {
            bool inked = false;
            for (int x = 4; x < image.width() - 4; ++x)
                inked = inked || qGray(image.pixel(x, y)) < 140;
            runs += inked && !within ? 1 : 0;
            within = inked;
        }
        QCOMPARE(runs, lines);
    }

    void mayBeDeletedByItsOwnMouseDown_data() {
        QTest::addColumn<Qt::MouseButton>("mouse");
        QTest::newRow("left") << Qt::LeftButton;
        QTest::newRow("right") << Qt::RightButton;
    }
    void mayBeDeletedByItsOwnMouseDown() {
        QFETCH(Qt::MouseButton, mouse);
        auto* button = new vkToggleButton;
        const QPointer<vkToggleButton> alive(button);
        connect(button, &DrawnButton::mousedown, button, [button] { delete button; });
        QMouseEvent press(QEvent::MouseButtonPress, QPointF(2, 2), QPointF(2, 2), mouse, mouse,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(button, &press);
        QVERIFY(!alive);
    }

    void mayBeDeletedByAHeldPress() {
        auto* button = new vkToggleButton;
        const QPointer<vkToggleButton> alive(button);
        button->setHoldTime(1);
        connect(button, &DrawnButton::mousedown, button, [button](Qt::MouseButton mouse) {
            if (mouse == Qt::RightButton)
                delete button;
        });
        QTest::mousePress(button, Qt::LeftButton);
        QVERIFY(alive);
        QTRY_VERIFY(!alive);
    }

    void accessibleNameFollows() {
        vkCommand button;
        button.setToolTip(u"tip"_s);
        QCOMPARE(button.accessibleName(), u"tip"_s);
        button.setCaption(u" KAYDET"_s);
        QCOMPARE(button.accessibleName(), u"KAYDET"_s);
        button.setAccessibleName(u"own"_s);
        button.setCaption(u"NAKIT"_s);
        QCOMPARE(button.accessibleName(), u"own"_s);
    }

    void sizeHintIsFreeOfTheCaption() {
        vkCommand button;
        const QSize empty = button.sizeHint();
        QVERIFY(button.minimumSizeHint().height() >= 44);
        button.setCaption(u"a very long caption indeed"_s);
        QCOMPARE(button.sizeHint(), empty);
    }

    void emptyCommandButtonIsAnOpenSlot_data() {
        QTest::addColumn<bool>("enabled");
        QTest::newRow("enabled") << true;
        QTest::newRow("disabled") << false;
    }
    void emptyCommandButtonIsAnOpenSlot() {
        QFETCH(bool, enabled);
        CommandButton button;
        button.resize(buttonSize);
        button.setBackcolor1(Qt::red);
        button.setEnabled(enabled);
        const QColor empty = picture(button).pixelColor(30, 30);
        QVERIFY2(near(empty, button.palette().color(QPalette::Active, QPalette::Window), 30),
                 qPrintable(empty.name()));
        // Dashes: the outline has more than one tone along its upper edge.
        const QImage image = picture(button);
        int darkest = 255;
        int lightest = 0;
        for (int x = 20; x < 100; ++x) {
            darkest = std::min(darkest, qGray(image.pixel(x, 1)));
            lightest = std::max(lightest, qGray(image.pixel(x, 1)));
        }
        QVERIFY(lightest - darkest > 10);
        // A "+" where it can be pressed.
        const QColor ground = image.pixelColor(30, 30);
        for (const QPoint arm : {QPoint(60, 30), QPoint(54, 30), QPoint(60, 24)})
            QCOMPARE(!near(image.pixelColor(arm), ground, 40), enabled);
        button.setCaption(u"."_s);
        button.setEnabled(true);
        QVERIFY(near(picture(button).pixelColor(20, 20), Qt::red, 20));
    }

    void focusRingShows() {
        QWidget window;
        auto* layout = new QVBoxLayout(&window);
        auto* light = new vkCommand(&window);
        auto* dark = new vkCommand(&window);
        dark->setBackcolor1(Qt::black);
        dark->setBackcolor2(Qt::black);
        for (vkCommand* button : {light, dark})
            layout->addWidget(button);
        window.resize(200, 200);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        for (vkCommand* button : {light, dark}) {
            button->clearFocus();
            const QColor without = picture(*button).pixelColor(1, button->height() / 2);
            button->setFocus();
            QVERIFY(button->hasFocus());
            const QColor with = picture(*button).pixelColor(1, button->height() / 2);
            QVERIFY2(std::abs(with.blue() - without.blue()) + std::abs(with.red() - without.red()) > 120,
                     qPrintable(with.name() + without.name()));
        }
    }
};

QTEST_MAIN(TestDrawnButton)
#include "test_drawnbutton.moc"
