#include <QAccessible>
#include <functional>
#include <memory>

#include "widgets/checkbox.h"
#include "widgets/drawnbutton.h"
#include "widgets/image.h"
#include "widgets/setbutton.h"
#include "widgets/swatch.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

/// A control and the count of its presses.
struct Pressed {
    std::unique_ptr<QWidget> control;
    int presses = 0;
};

using Maker = std::function<void(Pressed&)>;

template <class Control>
void make(Pressed& pressed) {
    auto control = std::make_unique<Control>();
    if constexpr (std::is_base_of_v<QAbstractButton, Control>)
        QObject::connect(control.get(), &QAbstractButton::clicked, [&pressed] { ++pressed.presses; });
    else
        QObject::connect(control.get(), &Swatch::mousedown, [&pressed] { ++pressed.presses; });
    pressed.control = std::move(control);
}

struct Keys {
    Maker make;
    std::function<void(QWidget&)> act;
    int presses = 0;
};

void hold(QWidget& control, Qt::Key key) {
    QTest::keyPress(&control, key);
    for (int i = 0; i < 5; ++i) {
        QKeyEvent repeated(QEvent::KeyPress, key, Qt::NoModifier, u" "_s, true);
        QCoreApplication::sendEvent(&control, &repeated);
        QKeyEvent released(QEvent::KeyRelease, key, Qt::NoModifier, u" "_s, true);
        QCoreApplication::sendEvent(&control, &released);
    }
    QTest::keyRelease(&control, key);
}

}  // namespace

Q_DECLARE_METATYPE(Keys)
Q_DECLARE_METATYPE(Maker)

/// What all controls that a finger presses have in common.
class PressableTest : public QObject {
    Q_OBJECT

    static QList<std::pair<const char*, Maker>> all() {
        return {{"button", make<vkCommand>},
                {"toggle", make<vkToggleButton>},
                {"plain button", make<CommandButton>},
                {"button on a plate", make<SetButton>},
                {"check box", make<CheckBox>},
                {"picture", make<Image>},
                {"swatch", make<Swatch>}};
    }

private Q_SLOTS:
    void keys_data() {
        QTest::addColumn<Keys>("row");
        struct Act {
            const char* name;
            std::function<void(QWidget&)> act;
            int presses;
        };
        const auto click = [](Qt::Key key) { return [key](QWidget& on) { QTest::keyClick(&on, key); }; };
        const std::array acts{
            Act{"Enter", click(Qt::Key_Return), 1},
            Act{"Enter of the number block", click(Qt::Key_Enter), 1},
            Act{"Space", click(Qt::Key_Space), 1},
            Act{"a letter", click(Qt::Key_A), 0},
            Act{"Escape", click(Qt::Key_Escape), 0},
            Act{"Enter held", [](QWidget& on) { hold(on, Qt::Key_Return); }, 1},
            Act{"Space held", [](QWidget& on) { hold(on, Qt::Key_Space); }, 1},
            Act{"Space let go only", [](QWidget& on) { QTest::keyRelease(&on, Qt::Key_Space); }, 0},
            Act{"Enter, out of use",
                [](QWidget& on) {
                    on.setEnabled(false);
                    QKeyEvent pressed(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
                    QCoreApplication::sendEvent(&on, &pressed);
                },
                0},
        };
        for (const auto& [name, maker] : all()) {
            for (const Act& act : acts)
                QTest::addRow("%s: %s", name, act.name) << Keys{maker, act.act, act.presses};
        }
    }
    void keys() {
        QFETCH(const Keys, row);
        Pressed pressed;
        row.make(pressed);
        row.act(*pressed.control);
        QCOMPARE(pressed.presses, row.presses);
    }

    void showsItsFocus_data() {
        QTest::addColumn<Maker>("row");
        for (const auto& [name, maker] : all())
            QTest::newRow(name) << maker;
    }
    void showsItsFocus() {
        QFETCH(const Maker, row);
        Pressed pressed;
        row(pressed);
        QWidget& control = *pressed.control;
        control.setFocusPolicy(Qt::TabFocus);
        control.resize(120, 60);
        const QImage without = control.grab().toImage();
        control.show();
        control.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&control));
        control.setFocus(Qt::TabFocusReason);
        QTRY_VERIFY(control.hasFocus());
        QVERIFY(control.grab().toImage() != without);
    }

    void assistiveToolsPress_data() {
        QTest::addColumn<Maker>("row");
        QTest::newRow("picture") << Maker(make<Image>);
        QTest::newRow("swatch") << Maker(make<Swatch>);
    }
    void assistiveToolsPress() {
        QFETCH(const Maker, row);
        Pressed pressed;
        row(pressed);
        QAccessibleInterface* told = QAccessible::queryAccessibleInterface(pressed.control.get());
        QCOMPARE(told->role(), QAccessible::Button);
        told->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QTRY_COMPARE(pressed.presses, 1);
    }
};

QTEST_MAIN(PressableTest)
#include "test_pressable.moc"
