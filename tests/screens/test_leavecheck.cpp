#include "screens/leavecheck.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <functional>

#include "desktop/focus.h"
#include "rows.h"
#include "runtests.h"
#include "shopfixture.h"
#include "widgets/keyfilter.h"

using namespace kovanix;

namespace {

/// A window with a field that is checked when it is left.
struct Form : QWidget {
    Form() {
        int y = 0;
        for (QWidget* control :
             std::initializer_list<QWidget*>{&field, &other, &button, &second, &picture, &label}) {
            control->setParent(this);
            control->setGeometry(0, y, 200, 30);
            y += 40;
        }
        picture.setFocusPolicy(Qt::NoFocus);
        resize(240, y);
        new LeaveCheck(field, [this] {
            ++checks;
            if (duringTheCheck)
                duringTheCheck();
            if (!accepts)
                giveFocus(field);
            return accepts;
        });
        new KeyFilter(field,
                      [this](int key) {
                          if (key == Qt::Key_Return)
                              giveFocus(other);
                      },
                      {});
        show();
        activateWindow();
        if (!QTest::qWaitForWindowActive(this))
            qFatal("the form doesn't become active");
        field.setFocus();
    }

    QLineEdit field, other;
    QPushButton button, second, picture;
    QLabel label;
    int checks = 0;
    bool accepts = true;
    std::function<void()> duringTheCheck;
};

/// A way out of the field.
struct WayRow {
    std::function<void(Form&)> leave;
    int checks = 1;
};

}  // namespace

Q_DECLARE_METATYPE(WayRow)

class LeaveCheckTest : public QObject {
    Q_OBJECT

    static QList<std::pair<const char*, WayRow>> ways() {
        return {
            {"a press on a button", {[](Form& form) { QTest::mouseClick(&form.button, Qt::LeftButton); }}},
            {"a press into another field",
             {[](Form& form) { QTest::mouseClick(&form.other, Qt::LeftButton); }}},
            {"Tab", {[](Form& form) { QTest::keyClick(&form.field, Qt::Key_Tab); }}},
            {"Shift and Tab",
             {[](Form& form) { QTest::keyClick(&form.field, Qt::Key_Backtab, Qt::ShiftModifier); }}},
            {"the Enter walk", {[](Form& form) { QTest::keyClick(&form.field, Qt::Key_Return); }}},
            {"the program", {[](Form& form) { form.other.setFocus(); }}},
            {"a press on what takes no focus",
             {[](Form& form) { QTest::mouseClick(&form.picture, Qt::LeftButton); }, 0}},
            {"a press on a label", {[](Form& form) { QTest::mouseClick(&form.label, Qt::LeftButton); }, 0}},
            {"a press into the field itself",
             {[](Form& form) { QTest::mouseClick(&form.field, Qt::LeftButton); }, 0}},
            {"typing", {[](Form& form) { QTest::keyClicks(&form.field, "123"); }, 0}},
            {"a press on what is disabled",
             {[](Form& form) {
                  form.button.setEnabled(false);
                  QTest::mouseClick(&form.button, Qt::LeftButton);
                  form.button.setEnabled(true);
              },
              0}},
            {"the field is disabled", {[](Form& form) { form.field.setEnabled(false); }, 0}},
            {"the field is hidden", {[](Form& form) { form.field.hide(); }, 0}},
            {"the window is hidden", {[](Form& form) { form.hide(); }, 0}}};
    }

private Q_SLOTS:
    void leaving_data() {
        QTest::addColumn<WayRow>("row");
        for (const auto& [name, row] : ways())
            QTest::newRow(name) << row;
    }
    void leaving() {
        QFETCH(const WayRow, row);
        Form form;
        row.leave(form);
        QCOMPARE(form.checks, row.checks);
        if (row.checks == 0)
            return;
        QVERIFY(!form.field.hasFocus());
        // Whoever isn't in it can't leave it.
        form.second.setFocus();
        QTest::mouseClick(&form.button, Qt::LeftButton);
        QCOMPARE(form.checks, 1);
        form.field.setFocus();
        QCOMPARE(form.checks, 1);
        row.leave(form);
        QCOMPARE(form.checks, 2);
    }

    void refused_data() { leaving_data(); }
    void refused() {
        QFETCH(const WayRow, row);
        Form form;
        form.accepts = false;
        const QSignalSpy pressed(&form.button, &QAbstractButton::pressed);
        const QSignalSpy clicked(&form.button, &QAbstractButton::clicked);
        row.leave(form);
        QCOMPARE(form.checks, row.checks);
        QCOMPARE(pressed.size() + clicked.size(), 0);
        QVERIFY(!form.button.isDown());
        if (row.checks == 0)
            return;
        QVERIFY(form.field.hasFocus());
        row.leave(form);  // it is asked again
        QCOMPARE(form.checks, 2);
        form.accepts = true;
        row.leave(form);
        QCOMPARE(form.checks, 3);
        QVERIFY(!form.field.hasFocus());
    }

    void anAcceptedPressGoesOn() {
        Form form;
        QStringList order;
        form.duringTheCheck = [&] { order << "check"; };
        connect(&form.button, &QAbstractButton::pressed, this, [&] { order << "pressed"; });
        connect(&form.button, &QAbstractButton::clicked, this, [&] { order << "clicked"; });
        QTest::mouseClick(&form.button, Qt::LeftButton);
        QCOMPARE(order, (QStringList{"check", "pressed", "clicked"}));
        QVERIFY(form.button.hasFocus());
    }

    void aDroppedPressLeavesNothingBehind() {
        Form form;
        form.accepts = false;
        QTest::mousePress(&form.button, Qt::LeftButton);
        QVERIFY(!form.button.isDown());
        QTest::mouseRelease(&form.button, Qt::LeftButton);
        // The next press, on something else, is its own.
        form.accepts = true;
        const QSignalSpy clicked(&form.button, &QAbstractButton::clicked);
        const QSignalSpy second(&form.second, &QAbstractButton::clicked);
        QTest::mouseClick(&form.second, Qt::LeftButton);
        QCOMPARE(clicked.size(), 0);
        QCOMPARE(second.size(), 1);
        QCOMPARE(form.checks, 2);
    }

    void aMessageBoxOfTheCheck() {
        ShopFixture shop;
        Form form;
        form.accepts = false;
        form.duringTheCheck = [&] {
            QMessageBox box(&form);
            box.setText("var");
            box.exec();
        };
        for (const auto& [name, row] : ways()) {
            if (row.checks == 0)
                continue;
            form.checks = 0;
            shop.boxes.expectAny(BoxAnswers::escape);
            row.leave(form);
            QVERIFY2(form.checks == 1, name);
            QVERIFY(QTest::qWaitFor([&] {
                form.activateWindow();
                return form.isActiveWindow();
            }));
            giveFocus(form.field);
        }
        QVERIFY(allAnswered(shop.boxes));
    }

    void aMessageBoxIsNoLeaving() {
        ShopFixture shop;
        Form form;
        shop.boxes.expectAny(BoxAnswers::escape);
        QMessageBox box(&form);
        box.setText("bir dakika");
        box.exec();
        QCOMPARE(form.checks, 0);
        form.activateWindow();
        QTRY_VERIFY(form.field.hasFocus());
        QCOMPARE(form.checks, 0);
        form.other.setFocus();
        QCOMPARE(form.checks, 1);
        QVERIFY(allAnswered(shop.boxes));
    }

    void anotherWindowIsNoLeaving() {
        Form form;
        QWidget window;
        QLineEdit elsewhere(&window);
        window.show();
        giveFocus(elsewhere);
        QTRY_VERIFY(elsewhere.hasFocus());
        QCOMPARE(form.checks, 0);
        // Back by a press on something else of the first one.
        giveFocus(form.field);
        QTRY_VERIFY(form.field.hasFocus());
        QTest::mouseClick(&form.button, Qt::LeftButton);
        QCOMPARE(form.checks, 1);
    }

    void theProgramMayLeaveWhileTheButtonIsPressed() {
        Form form;
        connect(&form.button, &QAbstractButton::clicked, &form, [&] { giveFocus(form.field); });
        QTest::mouseClick(&form.button, Qt::LeftButton);
        QCOMPARE(form.checks, 1);
        QVERIFY(form.field.hasFocus());
        QTest::mouseClick(&form.button, Qt::LeftButton);
        QCOMPARE(form.checks, 2);
    }
};

int main(int argc, char** argv) {
    return runTests<LeaveCheckTest>(argc, argv);
}

#include "test_leavecheck.moc"
