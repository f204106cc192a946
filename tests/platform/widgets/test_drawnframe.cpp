#include <QCheckBox>
#include <QImage>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QTest>
#include <QVBoxLayout>
#include <cstdlib>

#include "paintcounter.h"
#include "rows.h"
#include "widgets/activeresize.h"
#include "widgets/controlcolor.h"
#include "widgets/drawnframe.h"
#include "widgets/face.h"
#include "widgets/vklabel.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

/// Counts the changes of a widget's palette.
class PaletteCounter : public QObject {
public:
    PaletteCounter(QObject& watched, int& changes) : m_changes(changes) { watched.installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::PaletteChange)
            ++m_changes;
        return false;
    }

private:
    int& m_changes;
};

}  // namespace

class TestDrawnFrame : public QObject {
    Q_OBJECT

    struct SameValuesDontRepaintRow {
        QByteArray property;
        QVariant other;
    };
    struct LabelsGetAnInkThatReadsRow {
        QColor top, bottom, ink;
    };
    struct TitleStaysLegibleRow {
        QColor from, to;
        bool outlined;
    };
    struct LabelAlignmentRow {
        Qt::Alignment alignment;
        int from;
    };

private Q_SLOTS:
    void titleTakesItsHeightOffTheMargins() {
        vkFrame frame;
        frame.setContentsMargins(3, 5, 7, 9);
        frame.setCaption(u"SATIS DUZENLE"_s);
        const int title = frame.contentsMargins().top() - 5;
        QVERIFY(title > QFontMetrics(frame.font()).height());
        QCOMPARE(frame.contentsMargins().bottom(), 9);
        frame.setCaption(u"other"_s);
        QCOMPARE(frame.contentsMargins().top(), title + 5);
        frame.setCaption({});
        QCOMPARE(frame.contentsMargins(), QMargins(3, 5, 7, 9));
    }

    // The container has its scale before the frame is there, and another one once it is shown.
    void titleKeepsToTheScale() {
        ActiveResize container;
        container.setDesignSize({520, 280});
        vkFrame frame(&container);
        frame.setLook(FrameRole::window);
        frame.setCaption(u"T"_s);
        QVERIFY(frame.contentsMargins().top() != 48);
        container.resize(520, 280);
        container.show();
        QCOMPARE(frame.contentsMargins().top(), 48);
        container.resize(1040, 560);
        QCOMPARE(frame.contentsMargins().top(), 96);
    }

    void aSmallWindowHasARim() {
        vkFrame frame;
        frame.setLook(FrameRole::window);
        frame.setCaption(u"T"_s);
        frame.resize(200, 120);
        const QImage image = frame.grab().toImage();
        for (const QPoint place : {QPoint(1, 60), QPoint(198, 60), QPoint(100, 1), QPoint(100, 118)})
            QCOMPARE(image.pixelColor(place), roleColor(ColorRole::windowRim));
        QCOMPARE(image.pixelColor(100, 90), roleColor(ColorRole::card));
    }

    void aRimAsWideAsTold() {
        vkFrame frame;
        frame.setLook(FrameRole::window);
        frame.setBorderWidth(4);
        frame.resize(200, 120);
        const QImage image = frame.grab().toImage();
        QCOMPARE(image.pixelColor(3, 60), roleColor(ColorRole::windowRim));
        QCOMPARE(image.pixelColor(5, 60), roleColor(ColorRole::card));
    }

    void titleGrowsWithTheFont() {
        vkFrame frame;
        frame.setCaption(u"T"_s);
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
        frame.setCaption(u"T"_s);
        const QImage image = frame.grab().toImage();
        QVERIFY(image.pixelColor(6, 12).blue() > 240);
        QVERIFY(image.pixelColor(294, 12).green() > 240);
        QCOMPARE(image.pixelColor(150, 150), QColor(Qt::red));
        QCOMPARE(image.pixelColor(0, 150), QColor(Qt::magenta));
    }

    void sameValuesDontRepaint_data() {
        QTest::addColumn<SameValuesDontRepaintRow>("row");
        QTest::newRow("caption") << SameValuesDontRepaintRow{"caption", u"B"_s};
        for (const char* name :
             {"backcolor1", "backcolor2", "bordercolor", "forecolor", "titlecolor1", "titlecolor2"})
            QTest::newRow(name) << SameValuesDontRepaintRow{name, QColor(1, 2, 3)};
    }
    void sameValuesDontRepaint() {
        QFETCH(const SameValuesDontRepaintRow, row);
        vkFrame frame;
        frame.show();
        QVERIFY(QTest::qWaitForWindowExposed(&frame));
        QCoreApplication::processEvents();
        PaintCounter paints(frame);
        frame.setProperty(row.property.constData(), frame.property(row.property.constData()));
        QCoreApplication::processEvents();
        QCOMPARE(paints.count(), 0);
        frame.setProperty(row.property.constData(), row.other);
        QTRY_VERIFY(paints.count() > 0);
        QCOMPARE(frame.property(row.property.constData()), row.other);
    }

    void labelsGetAnInkThatReads_data() {
        const QColor dark(0x1B, 0x26, 0x36);
        addRows<LabelsGetAnInkThatReadsRow>(
            {{"white", {QColor(Qt::white), QColor(Qt::white), dark}},
             {"light grey", {QColor(0xFB, 0xFB, 0xFB), QColor(0xDC, 0xDC, 0xDC), dark}},
             {"dark grey", {QColor(0x40, 0x40, 0x40), QColor(0x40, 0x40, 0x40), QColor(Qt::white)}},
             {"darker", {QColor(0x2E, 0x2E, 0x2E), QColor(0x2E, 0x2E, 0x2E), QColor(Qt::white)}},
             {"light to dark, dark middle", {QColor(0xA0, 0xA0, 0xA0), QColor(Qt::black), QColor(Qt::white)}},
             {"light to dark, light middle", {QColor(Qt::white), QColor(0x80, 0x80, 0x80), dark}}});
    }
    void labelsGetAnInkThatReads() {
        QFETCH(const LabelsGetAnInkThatReadsRow, row);
        vkFrame frame;
        auto* before = new QLabel(&frame);
        auto* panel = new QWidget(&frame);
        auto* deeper = new QCheckBox(panel);
        frame.setBackcolor1(row.top);
        frame.setBackcolor2(row.bottom);
        auto* after = new QLabel(&frame);
        for (const QWidget* control :
             {static_cast<QWidget*>(before), static_cast<QWidget*>(deeper), static_cast<QWidget*>(after)})
            QCOMPARE(control->palette().color(QPalette::Active, QPalette::WindowText), row.ink);
        QCOMPARE(frame.forecolor(), QColor(Qt::white));
    }

    void labelsInkIsPainted() {
        vkFrame frame;
        frame.resize(200, 60);
        auto* label = new QLabel(QString(20, QChar(0x2588)), &frame);
        label->setGeometry(10, 10, 180, 40);
        QCOMPARE(frame.grab().toImage().pixelColor(60, 30), QColor(0x1B, 0x26, 0x36));
        for (const auto set : {&vkFrame::setBackcolor1, &vkFrame::setBackcolor2})
            (frame.*set)(QColor(0x40, 0x40, 0x40));
        QCOMPARE(frame.grab().toImage().pixelColor(60, 30), QColor(Qt::white));
    }

    void aNewFramesLabelsAreDark() {
        vkFrame frame;
        const QLabel label(&frame);
        QCOMPARE(label.palette().color(QPalette::Active, QPalette::WindowText), QColor(0x1B, 0x26, 0x36));
    }

    void aFrameOnAFrameHasItsOwnInk() {
        vkFrame outer;
        auto* inner = new vkFrame(&outer);
        const QLabel onInner(inner);
        outer.setBackcolor1(Qt::black);
        outer.setBackcolor2(Qt::black);
        const QLabel onOuter(&outer);
        QCOMPARE(onOuter.palette().color(QPalette::Active, QPalette::WindowText), QColor(Qt::white));
        QCOMPARE(onInner.palette().color(QPalette::Active, QPalette::WindowText), QColor(0x1B, 0x26, 0x36));
    }

    void aLabelsOwnColourStays() {
        vkFrame frame;
        QLabel label(&frame);
        setForeColor(label, Qt::yellow);
        frame.setBackcolor1(Qt::black);
        frame.setBackcolor2(Qt::black);
        QCOMPARE(foreColor(label), QColor(Qt::yellow));
        QCOMPARE(label.palette().color(QPalette::Active, QPalette::WindowText), QColor(Qt::yellow));
    }

    void fieldsAreNotTouched() {
        vkFrame frame;
        frame.resize(200, 60);
        auto* field = new QLineEdit(u"8690504000018"_s, &frame);
        field->setGeometry(20, 15, 160, 30);
        const QImage before = field->grab().toImage();
        const QColor text = field->palette().color(QPalette::Text);
        const QColor base = field->palette().color(QPalette::Base);
        frame.setBackcolor1(QColor(0x40, 0x40, 0x40));
        frame.setBackcolor2(QColor(0x40, 0x40, 0x40));
        QCOMPARE(field->palette().color(QPalette::Text), text);
        QCOMPARE(field->palette().color(QPalette::Base), base);
        const QRect inside = before.rect().adjusted(3, 3, -3, -3);
        QCOMPARE(field->grab().toImage().copy(inside), before.copy(inside));
    }

    void labelsOfADisabledFrameArePaler() {
        vkFrame frame;
        frame.setBackcolor1(Qt::black);
        frame.setBackcolor2(Qt::black);
        QLabel label(&frame);
        QCOMPARE(foreColor(label), QColor(Qt::white));
        frame.setEnabled(false);
        const QColor pale = label.palette().color(QPalette::WindowText);
        QVERIFY2(pale.red() < 200 && pale.red() > 60, qPrintable(pale.name()));
    }

    void sameFaceTellsNoOne() {
        vkFrame frame;
        QLabel label(&frame);
        frame.setBackcolor1(QColor(0xF0, 0xF0, 0xF0));
        int changes = 0;
        PaletteCounter counter(label, changes);
        frame.setBackcolor2(QColor(0xF0, 0xF0, 0xF0));
        frame.setBackcolor1(QColor(0xE0, 0xF0, 0xF0));
        QCOMPARE(changes, 0);
        frame.setBackcolor1(Qt::black);
        frame.setBackcolor2(Qt::black);
        QCOMPARE(changes, 1);
    }

    void faceRunsFromItsFirstToItsSecondColour_data() {
        QTest::addColumn<bool>("enabled");
        QTest::newRow("in use") << true;
        QTest::newRow("out of use") << false;
    }
    void faceRunsFromItsFirstToItsSecondColour() {
        QFETCH(bool, enabled);
        vkFrame frame;
        frame.resize(120, 100);
        frame.setBackcolor1(QColor(0xFF, 0xC0, 0x80));
        frame.setBackcolor2(QColor(0x2A, 0x0A, 0x93));
        frame.setEnabled(enabled);
        QImage image(frame.size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        frame.render(&image, {}, {}, QWidget::DrawChildren);
        for (const int y : {3, 30, 50, 70, 96}) {
            const QColor wanted = mixed(frame.backcolor1(), frame.backcolor2(), (y + 0.5) / 100);
            const QColor painted = image.pixelColor(60, y);
            QVERIFY2(
                std::abs(painted.red() - wanted.red()) < 5 && std::abs(painted.blue() - wanted.blue()) < 5,
                qPrintable(painted.name() + wanted.name()));
        }
        for (int y = 4; y < 96; ++y) {
            for (int x = 4; x < 116; ++x)
                QCOMPARE(image.pixelColor(x, y).alpha(), 255);
        }
    }

    void titleStaysLegible_data() {
        addRows<TitleStaysLegibleRow>(
            {{"blue to light blue", {QColor(0x10, 0x30, 0x90), QColor(0x18, 0x40, 0xA0), false}},
             {"cyan to blue", {QColor(0, 0xFF, 0xFF), QColor(0, 0, 0xFF), true}}});
    }
    void titleStaysLegible() {
        QFETCH(const TitleStaysLegibleRow, row);
        vkFrame frame;
        QFont font = frame.font();
        font.setPixelSize(16);
        frame.setFont(font);
        frame.resize(300, 100);
        frame.setTitlecolor1(row.from);
        frame.setTitlecolor2(row.to);
        frame.setForecolor(Qt::white);
        frame.setCaption(u"FIYAT GOR"_s);
        // Between the bar's two colours and the white of the caption nothing is as dark as an outline.
        const QImage image = frame.grab().toImage();
        const int darkest = std::min(qGray(row.from.rgb()), qGray(mixed(row.from, row.to, 0.3).rgb()));
        int darker = 0;
        for (int y = 6; y < 24; ++y) {
            for (int x = 6; x < 110; ++x)
                darker += qGray(image.pixel(x, y)) < darkest - 12 ? 1 : 0;
        }
        QVERIFY2(row.outlined ? darker > 40 : darker == 0, qPrintable(QString::number(darker)));
        QCOMPARE(frame.forecolor(), QColor(Qt::white));
    }

    void titleStandsWhereItIsTold() {
        vkFrame frame;
        frame.setLook(FrameRole::window);
        frame.setCaption(u"Mayıs 2026"_s);
        frame.resize(400, 100);
        // The first and the last column that the caption's white is in.
        const auto ends = [&] {
            const QImage image = frame.grab().toImage();
            std::pair found(image.width(), -1);
            for (int x = 0; x < image.width(); ++x) {
                for (int y = 8; y < 40; ++y) {
                    if (qGray(image.pixel(x, y)) > 220)
                        found = {std::min(found.first, x), x};
                }
            }
            return found;
        };
        const auto [left, right] = ends();
        QVERIFY(left < 40);
        frame.setTitleAlignment(Qt::AlignHCenter);
        const auto [centredLeft, centredRight] = ends();
        QCOMPARE(centredRight - centredLeft, right - left);
        QVERIFY(std::abs(centredLeft + centredRight - 400) <= 4);
    }

    void titleBreaksIntoTheLinesThatItMayTake() {
        vkFrame frame;
        frame.setLook(FrameRole::window);
        frame.setCaption(u"ürün listesinden silinsin mi diye soran bir kutu"_s);
        frame.setTitleHeight(100);
        frame.resize(200, 200);
        // The height that the caption's white takes.
        const auto height = [&] {
            const QImage image = frame.grab().toImage();
            std::pair found(image.height(), -1);
            for (int y = 4; y < 96; ++y) {
                for (int x = 8; x < 192; ++x) {
                    if (qGray(image.pixel(x, y)) > 220)
                        found = {std::min(found.first, y), y};
                }
            }
            return found.second - found.first;
        };
        QVERIFY(height() < frame.fontMetrics().height());
        frame.setTitleLines(2);
        QVERIFY(height() > frame.fontMetrics().height());
    }

    // Nothing lets events through while a list is read.
    void progressIsPaintedAtOnce() {
        QWidget window;
        vkFrame frame(&window);
        frame.setLook(FrameRole::page);
        frame.setCaption(u"LİSTE"_s);
        frame.resize(400, 200);
        window.resize(400, 200);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QCoreApplication::processEvents();
        PaintCounter paintings(frame);
        const auto honey = [&](int x, int y) {
            return frame.grab().toImage().pixelColor(x, y) == roleColor(ColorRole::honey);
        };
        frame.setProgress(0.25);
        QCOMPARE(paintings.region(), QRegion(0, 44, 400, 4));
        QVERIFY(honey(99, 44) && honey(0, 47));
        QVERIFY(!honey(101, 44) && !honey(99, 43) && !honey(99, 48));
        frame.setProgress(0.5);
        QVERIFY(honey(199, 44));
        paintings.reset();
        frame.setProgress(0.5);
        QCOMPARE(paintings.count(), 0);
        frame.setProgress({});
        QCOMPARE(paintings.count(), 1);
        QVERIFY(!honey(0, 47));
    }

    void aNoteRepaintsTheStripAlone() {
        vkFrame frame;
        frame.setLook(FrameRole::page);
        frame.setCaption(u"LİSTE"_s);
        frame.resize(400, 200);
        frame.show();
        QVERIFY(QTest::qWaitForWindowExposed(&frame));
        QCoreApplication::processEvents();
        PaintCounter paintings(frame);
        frame.setTitleNote(u"14 / 18.420"_s);
        QCoreApplication::processEvents();
        QCOMPARE(paintings.region(), QRegion(0, 0, 400, 48));
    }

    void labelKeepsItsGlyphsInside() {
        vkLabel label;
        label.setForecolor(Qt::red);
        label.setCaption(u"a label that is far too long & has no room"_s);
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
        addRows<LabelAlignmentRow>({{"left", {Qt::Alignment(Qt::AlignLeft | Qt::AlignVCenter), 0}},
                                    {"centre", {Qt::Alignment(Qt::AlignCenter), 100}},
                                    {"right", {Qt::Alignment(Qt::AlignRight | Qt::AlignVCenter), 200}}});
    }
    void labelAlignment() {
        QFETCH(const LabelAlignmentRow, row);
        vkLabel label;
        label.resize(300, 40);
        label.setForecolor(Qt::red);
        label.setCaption(u"HH"_s);
        label.setCaptionAlignment(row.alignment);
        const QImage image = label.grab().toImage();
        for (int x = 0; x < 300; ++x) {
            for (int y = 0; y < 40; ++y) {
                if (image.pixelColor(x, y).red() - image.pixelColor(x, y).green() > 100)
                    QVERIFY2(x >= row.from && x < row.from + 100, qPrintable(QString::number(x)));
            }
        }
    }

    void labelLaysOutOnlyWhenItsSizeChanges() {
        QWidget window;
        auto* layout = new QVBoxLayout(&window);
        auto* label = new vkLabel(&window);
        layout->addWidget(label);
        label->setCaption(u"12:00"_s);
        const QSize before = label->sizeHint();
        label->setCaption(u"12:01:00"_s);
        QVERIFY(label->sizeHint().width() > before.width());
        QCOMPARE(label->sizeHint().height(), before.height());
    }
};

QTEST_MAIN(TestDrawnFrame)
#include "test_drawnframe.moc"
