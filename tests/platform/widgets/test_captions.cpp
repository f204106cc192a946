#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <functional>
#include <memory>

#include "rows.h"
#include "widgets/activeresize.h"
#include "widgets/caption.h"
#include "widgets/controlarray.h"
#include "widgets/drawnbutton.h"
#include "widgets/drawnframe.h"
#include "widgets/vklabel.h"
#include "widgets/vsflexgrid.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

using Make = std::function<std::unique_ptr<QWidget>()>;
Q_DECLARE_METATYPE(Make)

namespace {

template <class Control>
Make made() {
    return [] { return std::make_unique<Control>(); };
}

}  // namespace

class TestCaptions : public QObject {
    Q_OBJECT

    struct RoundTripsRow {
        Make make;
        QString text;
    };
    struct KindsRow {
        Make make;
        QString kind;
    };
    struct IndicesRow {
        QString name;
        int index;  // -1: no member of an array
    };

private Q_SLOTS:
    void roundTrips_data() {
        QTest::addColumn<RoundTripsRow>("row");
        const QStringList texts{u"plain"_s, u"A&B"_s, u"&&"_s, u"&"_s, u"<b>x</b>"_s, QString()};
        const auto rows = [&](const char* kind, const Make& make) {
            for (const QString& text : texts)
                QTest::addRow("%s: '%s'", kind, qPrintable(text)) << RoundTripsRow{make, text};
        };
        rows("vkCommand", made<vkCommand>());
        rows("vkToggleButton", made<vkToggleButton>());
        rows("CommandButton", made<CommandButton>());
        rows("vkFrame", made<vkFrame>());
        rows("vkLabel", made<vkLabel>());
        rows("label", made<QLabel>());
        rows("push button", made<QPushButton>());
        rows("check box", made<QCheckBox>());
        rows("group", made<QGroupBox>());
        rows("window", made<QWidget>());
    }
    void roundTrips() {
        QFETCH(const RoundTripsRow, row);
        const std::unique_ptr<QWidget> control = row.make();
        QVERIFY(setCaption(*control, u"before"_s));
        QVERIFY(setCaption(*control, row.text));
        QCOMPARE(caption(*control), row.text);
    }

    void controlsWithoutCaption_data() {
        QTest::addColumn<Make>("make");
        QTest::newRow("line edit") << made<QLineEdit>();
        QTest::newRow("text edit") << made<QPlainTextEdit>();
        QTest::newRow("combo box") << made<QComboBox>();
    }
    void controlsWithoutCaption() {
        QFETCH(Make, make);
        const std::unique_ptr<QWidget> control = make();
        QVERIFY(!setCaption(*control, u"x"_s));
        QCOMPARE(caption(*control), QString());
        QWidget window;
        QWidget inner(&window);
        QVERIFY(!setCaption(inner, u"x"_s));
    }

    void toolkitTextIsEscaped() {
        QPushButton button;
        setCaption(button, u"A&B"_s);
        QCOMPARE(button.text(), u"A&&B"_s);
        QVERIFY(button.shortcut().isEmpty());
        QGroupBox group;
        setCaption(group, u"A&B"_s);
        QCOMPARE(group.title(), u"A&&B"_s);
        button.setText(u"&Tamam"_s);
        QCOMPARE(caption(button), u"Tamam"_s);
    }

    void labelsArePlainText() {
        QLabel label;
        setCaption(label, u"<b>x</b>"_s);
        QCOMPARE(label.textFormat(), Qt::PlainText);
    }

    void kinds_data() {
        addRows<KindsRow>({{"vkCommand", {made<vkCommand>(), u"vkCommand"_s}},
                           {"vkToggleButton", {made<vkToggleButton>(), u"vkToggleButton"_s}},
                           {"CommandButton", {made<CommandButton>(), u"CommandButton"_s}},
                           {"vkFrame", {made<vkFrame>(), u"vkFrame"_s}},
                           {"vkLabel", {made<vkLabel>(), u"vkLabel"_s}},
                           {"ActiveResize", {made<ActiveResize>(), u"ActiveResize"_s}},
                           {"VSFlexGrid", {made<VSFlexGrid>(), u"VSFlexGrid"_s}},
                           {"toolkit", {made<QLabel>(), u"QLabel"_s}}});
    }
    void kinds() {
        QFETCH(const KindsRow, row);
        QCOMPARE(controlKind(*row.make()), row.kind);
    }

    void arraysInOrder() {
        QWidget screen;
        vkFrame frame(&screen);
        // Made in an order that is neither the numbers' nor the letters', half of them nested.
        for (const int index : {10, 2, 0, 11, 1, 9, 3, 8, 4, 7, 5, 6}) {
            auto* key = new vkCommand(index % 2 ? static_cast<QWidget*>(&frame) : &screen);
            key->setObjectName(u"tus_%1"_s.arg(index));
        }
        for (const char* stray :
             {"tus", "tus_", "tus_x", "tus_01", "tus_+1", "tus_-1", "tus_1_2", "tuslar_1", "atus_1"})
            (new vkCommand(&screen))->setObjectName(QString::fromLatin1(stray));
        const std::vector<QWidget*> members = controlArray(screen, u"tus"_s);
        QCOMPARE(members.size(), 12U);
        for (int index = 0; index < 12; ++index)
            QCOMPARE(members[static_cast<size_t>(index)]->objectName(), u"tus_%1"_s.arg(index));
    }

    void arraysWithGapsAndClasses() {
        QWidget screen;
        (new vkCommand(&screen))->setObjectName(u"duzenlemetusu_23"_s);
        (new QLabel(&screen))->setObjectName(u"duzenlemetusu_14"_s);
        (new vkCommand(&screen))->setObjectName(u"duzenlemetusu_12"_s);
        QCOMPARE(controlArray(screen, u"duzenlemetusu"_s).size(), 3U);
        const auto buttons = controlArrayOf<vkCommand>(screen, u"duzenlemetusu"_s);
        QCOMPARE(buttons.size(), 2U);
        QCOMPARE(controlIndex(*buttons[1]), std::optional<int>(23));
        QVERIFY(controlArray(screen, u"none"_s).empty());
    }

    void indices_data() {
        addRows<IndicesRow>({{"first", {u"tus_0"_s, 0}},
                             {"two digits", {u"tus_11"_s, 11}},
                             {"underscore in the name", {u"a_b_7"_s, 7}},
                             {"no index", {u"tus"_s, -1}},
                             {"number without underscore", {u"kisayol4"_s, -1}},
                             {"leading zero", {u"tus_07"_s, -1}},
                             {"no name", {u"_7"_s, -1}},
                             {"no number", {u"tus_"_s, -1}},
                             {"too large", {u"tus_99999999999"_s, -1}},
                             {"nothing", {QString(), -1}}});
    }
    void indices() {
        QFETCH(const IndicesRow, row);
        QWidget control;
        control.setObjectName(row.name);
        QCOMPARE(controlIndex(control).value_or(-1), row.index);
    }
};

QTEST_MAIN(TestCaptions)
#include "test_captions.moc"
