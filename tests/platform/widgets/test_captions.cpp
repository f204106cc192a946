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

    struct KindsRow {
        Make make;
        QString kind;
    };

private Q_SLOTS:
    void roundTrips_data() {
        QTest::addColumn<Make>("make");
        QTest::addColumn<QString>("text");
        const QStringList texts{QStringLiteral("plain"), QStringLiteral("A&B"),      QStringLiteral("&&"),
                                QStringLiteral("&"),     QStringLiteral("<b>x</b>"), QString()};
        const auto rows = [&](const char* kind, const Make& make) {
            for (const QString& text : texts)
                QTest::addRow("%s: '%s'", kind, qPrintable(text)) << make << text;
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
        QFETCH(Make, make);
        QFETCH(QString, text);
        const std::unique_ptr<QWidget> control = make();
        QVERIFY(setCaption(*control, QStringLiteral("before")));
        QVERIFY(setCaption(*control, text));
        QCOMPARE(caption(*control), text);
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
        QVERIFY(!setCaption(*control, QStringLiteral("x")));
        QCOMPARE(caption(*control), QString());
        QWidget window;
        QWidget inner(&window);
        QVERIFY(!setCaption(inner, QStringLiteral("x")));
    }

    void toolkitTextIsEscaped() {
        QPushButton button;
        setCaption(button, QStringLiteral("A&B"));
        QCOMPARE(button.text(), QStringLiteral("A&&B"));
        QVERIFY(button.shortcut().isEmpty());
        QGroupBox group;
        setCaption(group, QStringLiteral("A&B"));
        QCOMPARE(group.title(), QStringLiteral("A&&B"));
        button.setText(QStringLiteral("&Tamam"));
        QCOMPARE(caption(button), QStringLiteral("Tamam"));
    }

    void labelsArePlainText() {
        QLabel label;
        setCaption(label, QStringLiteral("<b>x</b>"));
        QCOMPARE(label.textFormat(), Qt::PlainText);
    }

    void kinds_data() {
        addRows<KindsRow>({{"vkCommand", {made<vkCommand>(), QStringLiteral("vkCommand")}},
                           {"vkToggleButton", {made<vkToggleButton>(), QStringLiteral("vkToggleButton")}},
                           {"CommandButton", {made<CommandButton>(), QStringLiteral("CommandButton")}},
                           {"vkFrame", {made<vkFrame>(), QStringLiteral("vkFrame")}},
                           {"vkLabel", {made<vkLabel>(), QStringLiteral("vkLabel")}},
                           {"ActiveResize", {made<ActiveResize>(), QStringLiteral("ActiveResize")}},
                           {"VSFlexGrid", {made<VSFlexGrid>(), QStringLiteral("VSFlexGrid")}},
                           {"toolkit", {made<QLabel>(), QStringLiteral("QLabel")}}});
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
            key->setObjectName(QStringLiteral("tus_%1").arg(index));
        }
        for (const char* stray :
             {"tus", "tus_", "tus_x", "tus_01", "tus_+1", "tus_-1", "tus_1_2", "tuslar_1", "atus_1"})
            (new vkCommand(&screen))->setObjectName(QString::fromLatin1(stray));
        const std::vector<QWidget*> members = controlArray(screen, QStringLiteral("tus"));
        QCOMPARE(members.size(), 12U);
        for (int index = 0; index < 12; ++index)
            QCOMPARE(members[static_cast<size_t>(index)]->objectName(), QStringLiteral("tus_%1").arg(index));
    }

    void arraysWithGapsAndClasses() {
        QWidget screen;
        (new vkCommand(&screen))->setObjectName(QStringLiteral("duzenlemetusu_23"));
        (new QLabel(&screen))->setObjectName(QStringLiteral("duzenlemetusu_14"));
        (new vkCommand(&screen))->setObjectName(QStringLiteral("duzenlemetusu_12"));
        QCOMPARE(controlArray(screen, QStringLiteral("duzenlemetusu")).size(), 3U);
        const auto buttons = controlArrayOf<vkCommand>(screen, QStringLiteral("duzenlemetusu"));
        QCOMPARE(buttons.size(), 2U);
        QCOMPARE(controlIndex(*buttons[1]), std::optional<int>(23));
        QVERIFY(controlArray(screen, QStringLiteral("none")).empty());
    }

    void indices_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("index");  // -1: no member of an array
        QTest::newRow("first") << QStringLiteral("tus_0") << 0;
        QTest::newRow("two digits") << QStringLiteral("tus_11") << 11;
        QTest::newRow("underscore in the name") << QStringLiteral("a_b_7") << 7;
        QTest::newRow("no index") << QStringLiteral("tus") << -1;
        QTest::newRow("number without underscore") << QStringLiteral("kisayol4") << -1;
        QTest::newRow("leading zero") << QStringLiteral("tus_07") << -1;
        QTest::newRow("no name") << QStringLiteral("_7") << -1;
        QTest::newRow("no number") << QStringLiteral("tus_") << -1;
        QTest::newRow("too large") << QStringLiteral("tus_99999999999") << -1;
        QTest::newRow("nothing") << QString() << -1;
    }
    void indices() {
        QFETCH(QString, name);
        QFETCH(int, index);
        QWidget control;
        control.setObjectName(name);
        QCOMPARE(controlIndex(control).value_or(-1), index);
    }
};

QTEST_MAIN(TestCaptions)
#include "test_captions.moc"
