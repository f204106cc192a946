#include <QCheckBox>
#include <QFrame>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QStyleFactory>
#include <QTest>
#include <QToolButton>
#include <functional>
#include <memory>

#include "widgets/controlcolor.h"
#include "widgets/drawnbutton.h"
#include "widgets/drawnframe.h"
#include "widgets/vklabel.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

using Maker = std::function<QWidget*(QWidget* parent)>;

const QString block = QString(40, QChar(0x2588));

/// The share of a control's inner pixels that have exactly this colour.
double shareOf(QWidget& control, const QColor& color) {
    const QImage image = control.grab().toImage().convertToFormat(QImage::Format_RGB32);
    const QRect inner = image.rect().adjusted(12, 8, -12, -8);
    int count = 0;
    for (int y = inner.top(); y <= inner.bottom(); ++y) {
        for (int x = inner.left(); x <= inner.right(); ++x)
            count += image.pixelColor(x, y) == color ? 1 : 0;
    }
    return static_cast<double>(count) / (inner.width() * inner.height());
}

template <class Control>
Maker withText(const QString& text) {
    return [text](QWidget* parent) {
        auto* control = new Control(parent);
        if constexpr (requires { control->setCaption(text); })
            control->setCaption(text);
        else if constexpr (requires { control->setPlainText(text); })
            control->setPlainText(text);
        else
            control->setText(text);
        return control;
    };
}

class PaletteCounter : public QObject {
public:
    explicit PaletteCounter(QObject& watched) { watched.installEventFilter(this); }
    int changes = 0;
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::PaletteChange)
            ++changes;
        return false;
    }
};

}  // namespace

Q_DECLARE_METATYPE(Maker)

class TestControlColor : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setStyle(QStyleFactory::create(u"Fusion"_s)); }

    void everyKindKeepsBoth_data() {
        QTest::addColumn<Maker>("make");
        QTest::newRow("text box") << withText<QLineEdit>(u"a"_s);
        QTest::newRow("text area") << withText<QPlainTextEdit>(u"a"_s);
        QTest::newRow("number box") << Maker([](QWidget* parent) { return new QSpinBox(parent); });
        QTest::newRow("label") << withText<QLabel>(u"a"_s);
        QTest::newRow("drawn label") << withText<vkLabel>(u"a"_s);
        QTest::newRow("check box") << withText<QCheckBox>(u"a"_s);
        QTest::newRow("push button") << withText<QPushButton>(u"a"_s);
        QTest::newRow("tool button") << withText<QToolButton>(u"a"_s);
        QTest::newRow("plain frame") << Maker([](QWidget* parent) { return new QFrame(parent); });
        QTest::newRow("plain widget") << Maker([](QWidget* parent) { return new QWidget(parent); });
        QTest::newRow("drawn frame") << withText<vkFrame>(u"a"_s);
        QTest::newRow("command button") << withText<CommandButton>(u"a"_s);
        QTest::newRow("drawn button") << withText<vkCommand>(u"a"_s);
        QTest::newRow("toggle button") << withText<vkToggleButton>(u"a"_s);
    }
    void everyKindKeepsBoth() {
        QFETCH(Maker, make);
        QWidget window;
        QWidget* control = make(&window);
        setBackColor(*control, QColor(1, 2, 3));
        setForeColor(*control, QColor(200, 201, 202));
        QCOMPARE(backColor(*control), QColor(1, 2, 3));
        QCOMPARE(foreColor(*control), QColor(200, 201, 202));
        // The last of two set one after the other stays.
        setBackColor(*control, Qt::black);
        setBackColor(*control, QColor(250, 250, 251));
        QCOMPARE(backColor(*control), QColor(250, 250, 251));
        QCOMPARE(foreColor(*control), QColor(200, 201, 202));
        // They are kept while the control is out of use, and read back the same.
        control->setEnabled(false);
        QCOMPARE(backColor(*control), QColor(250, 250, 251));
        QCOMPARE(foreColor(*control), QColor(200, 201, 202));
    }

    void groundIsPainted_data() {
        QTest::addColumn<Maker>("make");
        QTest::newRow("text box") << withText<QLineEdit>({});
        QTest::newRow("text area") << withText<QPlainTextEdit>({});
        QTest::newRow("label") << withText<QLabel>({});
        QTest::newRow("drawn label") << withText<vkLabel>({});
        QTest::newRow("check box") << Maker([](QWidget* parent) { return new QCheckBox(parent); });
        QTest::newRow("plain frame") << Maker([](QWidget* parent) { return new QFrame(parent); });
        QTest::newRow("drawn frame") << withText<vkFrame>({});
        QTest::newRow("drawn button") << withText<vkCommand>({});
        QTest::newRow("toggle button") << withText<vkToggleButton>({});
    }
    void groundIsPainted() {
        QFETCH(Maker, make);
        QWidget window;
        QWidget* control = make(&window);
        control->resize(160, 60);
        const QColor color(0xC0, 0x40, 0x20);
        QVERIFY(shareOf(*control, color) == 0.0);
        setBackColor(*control, color);
        const double share = shareOf(*control, color);
        QVERIFY2(share > 0.8, qPrintable(QString::number(share)));
    }

    // The face of a command button runs into a slightly darker tone of the same colour.
    void commandButtonsFaceIsPainted() {
        CommandButton button;
        button.resize(160, 60);
        button.setCaption(u"."_s);
        setBackColor(button, QColor(0xC0, 0x40, 0x20));
        const QColor face = button.grab().toImage().pixelColor(20, 8);
        QVERIFY2(std::abs(face.red() - 0xC0) < 8 && std::abs(face.green() - 0x40) < 8,
                 qPrintable(face.name()));
    }

    void inkIsPainted_data() {
        QTest::addColumn<Maker>("make");
        QTest::newRow("text box") << withText<QLineEdit>(block);
        QTest::newRow("label") << withText<QLabel>(block);
        QTest::newRow("drawn label") << withText<vkLabel>(block.left(8));
        QTest::newRow("push button") << withText<QPushButton>(block.left(8));
        QTest::newRow("check box") << withText<QCheckBox>(block);
        QTest::newRow("drawn button") << withText<vkCommand>(block.left(8));
        QTest::newRow("command button") << withText<CommandButton>(block.left(8));
    }
    void inkIsPainted() {
        QFETCH(Maker, make);
        QWidget window;
        QWidget* control = make(&window);
        control->resize(160, 60);
        const QColor color(0x20, 0x10, 0x80);
        QVERIFY(shareOf(*control, color) == 0.0);
        setForeColor(*control, color);
        const double share = shareOf(*control, color);
        QVERIFY2(share > 0.1, qPrintable(QString::number(share)));
    }

    void pressedColoursAreLeftAlone() {
        vkCommand button;
        const QColor pressed1 = button.backcolorpushed1();
        const QColor pressed2 = button.backcolorpushed2();
        setBackColor(button, Qt::red);
        QCOMPARE(button.backcolor1(), QColor(Qt::red));
        QCOMPARE(button.backcolor2(), QColor(Qt::red));
        QCOMPARE(button.backcolorpushed1(), pressed1);
        QCOMPARE(button.backcolorpushed2(), pressed2);
    }

    void frameTakesBothColours() {
        vkFrame frame;
        const QColor title = frame.titlecolor1();
        setBackColor(frame, Qt::red);
        setForeColor(frame, Qt::yellow);
        QCOMPARE(frame.backcolor1(), QColor(Qt::red));
        QCOMPARE(frame.backcolor2(), QColor(Qt::red));
        QCOMPARE(frame.forecolor(), QColor(Qt::yellow));
        QCOMPARE(frame.titlecolor1(), title);
    }

    void sameColourAgainCostsNothing() {
        QLineEdit field;
        QLabel label;
        for (QWidget* control : {static_cast<QWidget*>(&field), static_cast<QWidget*>(&label)}) {
            PaletteCounter counter(*control);
            setBackColor(*control, Qt::red);
            setForeColor(*control, Qt::blue);
            const int before = counter.changes;
            QVERIFY(before >= 2);
            setBackColor(*control, Qt::red);
            setForeColor(*control, Qt::blue);
            QCOMPARE(counter.changes, before);
        }
    }

    // A colour that is handed down looks the same as one that was set, until the parent's changes.
    void aColourEqualToTheParentsIsItsOwnToo() {
        QWidget window;
        QLabel label(&window);
        const QColor ink = foreColor(label);
        setForeColor(label, ink);
        setForeColor(window, Qt::red);
        QCOMPARE(foreColor(label), ink);
    }

    void hintInAFieldFollowsItsText() {
        QLineEdit field;
        setForeColor(field, Qt::white);
        const QColor hint = field.palette().color(QPalette::PlaceholderText);
        QCOMPARE(hint.rgb(), QColor(Qt::white).rgb());
        QVERIFY(hint.alpha() > 80 && hint.alpha() < 180);
    }
};

QTEST_MAIN(TestControlColor)
#include "test_controlcolor.moc"
