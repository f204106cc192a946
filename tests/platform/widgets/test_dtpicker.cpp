#include <QAccessible>
#include <functional>
#include <memory>

#include "pickerform.h"
#include "rows.h"
#include "widgets/drawnbutton.h"
#include "widgets/look.h"

using namespace kovanix;

namespace {

using Act = std::function<void(Form&)>;

struct PathRow {
    Act act;
    QString told;
    QString text;
    bool dropped = false;
};

}  // namespace

Q_DECLARE_METATYPE(PathRow)

class DTPickerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        Clock::setSource([] { return now; });
    }

    void holdsTodayAtFirst() {
        const DTPicker picker;
        QCOMPARE(picker.date(), now.date());
        QCOMPARE(picker.time(), QTime(10, 24, 31));
        QCOMPARE(picker.text(), u"04.05.2026"_s);
    }

    void tells_data() {
        const QString former = u"01.05.2026"_s;
        const QString typed = u"02.05.2026"_s;
        addRows<PathRow>({
            {"Enter, untouched", {[](Form&) { key(Qt::Key_Return); }, u"closeUp"_s, former}},
            {"typed and Enter",
             {[](Form& form) {
                  form.type(u"2.5.26"_s);
                  key(Qt::Key_Enter);
              },
              u"change closeUp"_s, typed}},
            {"the same typed and Enter",
             {[](Form& form) {
                  form.type(u"1.5.26"_s);
                  key(Qt::Key_Return);
              },
              u"closeUp"_s, former}},
            {"refused and Enter",
             {[](Form& form) {
                  form.type(u"31.4.2026"_s);
                  key(Qt::Key_Return);
              },
              u""_s, former}},
            {"typed and nothing else", {[](Form& form) { form.type(u"2.5.26"_s); }, u""_s, former}},
            {"typed and left",
             {[](Form& form) {
                  form.type(u"2.5.26"_s);
                  key(Qt::Key_Tab);
              },
              u"change lostFocus"_s, typed}},
            {"refused and left",
             {[](Form& form) {
                  form.type(u"abc"_s);
                  key(Qt::Key_Tab);
              },
              u"lostFocus"_s, former}},
            {"emptied and left",
             {[](Form& form) {
                  form.edit().selectAll();
                  key(Qt::Key_Delete);
                  key(Qt::Key_Tab);
              },
              u"lostFocus"_s, former}},
            {"left by a press", {[](Form& form) { tap(form.other); }, u"lostFocus"_s, former}},
            {"left twice",
             {[](Form& form) {
                  tap(form.other);
                  form.picker.setFocus();
                  tap(form.other);
              },
              u"lostFocus lostFocus"_s, former}},
            {"never entered",
             {[](Form& form) {
                  form.other.setFocus();
                  form.told.clear();
                  QLineEdit third(&form.window);
                  third.show();
                  third.setFocus();
              },
              u""_s, former}},
            {"no control",
             {[](Form& form) {
                  form.type(u"2.5.26"_s);
                  form.picker.clearFocus();
              },
              u""_s, former}},
            {"another window",
             {[](Form& form) {
                  form.type(u"2.5.26"_s);
                  QLineEdit elsewhere;
                  show(elsewhere);
                  elsewhere.setFocus();
                  QVERIFY(elsewhere.hasFocus());
              },
              u""_s, former}},
            {"hidden",
             {[](Form& form) {
                  form.type(u"2.5.26"_s);
                  form.picker.hide();
                  QCOMPARE(form.edit().text(), u"01.05.2026"_s);
              },
              u""_s, former}},
            {"typed and Escape",
             {[](Form& form) {
                  form.type(u"2.5.26"_s);
                  key(Qt::Key_Escape);
                  QCOMPARE(form.edit().text(), u"01.05.2026"_s);
                  key(Qt::Key_Tab);
              },
              u"lostFocus"_s, former}},
            {"Up", {[](Form&) { key(Qt::Key_Up); }, u"change"_s, typed}},
            {"Down", {[](Form&) { key(Qt::Key_Down); }, u"change"_s, u"30.04.2026"_s}},
            {"typed and Down",
             {[](Form& form) {
                  form.type(u"3.5.26"_s);
                  key(Qt::Key_Down);
              },
              u"change"_s, typed}},
            {"Up at the end of time",
             {[](Form& form) {
                  form.picker.setDate({9999, 12, 31});
                  key(Qt::Key_Up);
              },
              u""_s, u"31.12.9999"_s}},
            {"Down at its start",
             {[](Form& form) {
                  form.picker.setDate({100, 1, 1});
                  key(Qt::Key_Down);
              },
              u""_s, u"01.01.0100"_s}},
            {"set from code",
             {[](Form& form) {
                  form.picker.setDate({2026, 5, 2});
              },
              u""_s, typed}},
            {"set over what is typed",
             {[](Form& form) {
                  form.type(u"9.9.26"_s);
                  form.picker.setDate({2026, 5, 2});
                  key(Qt::Key_Tab);
              },
              u"lostFocus"_s, typed}},
            {"no day set from code", {[](Form& form) { form.picker.setDate({}); }, u""_s, former}},
            {"a day too early set",
             {[](Form& form) {
                  form.picker.setDate({99, 12, 31});
              },
              u""_s, former}},
            {"a day too late set",
             {[](Form& form) {
                  form.picker.setDate({10000, 1, 1});
              },
              u""_s, former}},
            {"dropped", {[](Form& form) { form.drop(); }, u""_s, former, true}},
            {"dropped by F4", {[](Form&) { key(Qt::Key_F4); }, u""_s, former, true}},
            {"dropped by Space", {[](Form&) { key(Qt::Key_Space); }, u""_s, former, true}},
            {"dropped by Alt+Down", {[](Form&) { key(Qt::Key_Down, Qt::AltModifier); }, u""_s, former, true}},
            {"dropped by a press of another's keyboard",
             {[](Form& form) {
                  form.other.setFocus();
                  form.told.clear();
                  form.drop();
              },
              u""_s, former, true}},
            {"dropped by a double tap",
             {[](Form& form) {
                  form.drop();
                  QMouseEvent second(QEvent::MouseButtonDblClick, QPointF(5, 5),
                                     form.button().mapToGlobal(QPointF(5, 5)), Qt::LeftButton, Qt::LeftButton,
                                     {});
                  QCoreApplication::sendEvent(&form.button(), &second);
                  QTest::mouseRelease(&form.button(), Qt::LeftButton);
              },
              u""_s, former, true}},
            {"typed and dropped",
             {[](Form& form) {
                  form.type(u"2.5.26"_s);
                  form.drop();
                  QCOMPARE(form.month().chosen(), QDate(2026, 5, 2));
              },
              u"change"_s, typed, true}},
            {"dropped and set from code",
             {[](Form& form) {
                  form.drop();
                  form.picker.setDate({2027, 2, 2});
                  QCOMPARE(form.month().chosen(), QDate(2027, 2, 2));
                  QCOMPARE(form.calendar()->caption(), u"Şubat 2027"_s);
              },
              u""_s, u"02.02.2027"_s, true}},
            {"dropped and made another one",
             {[](Form& form) {
                  form.drop();
                  form.picker.setFormat(Format::time);
              },
              u""_s, u"07:05:09"_s}},
            {"Escape",
             {[](Form& form) {
                  form.drop();
                  key(Qt::Key_Down);
                  key(Qt::Key_Escape);
                  QVERIFY(form.picker.hasFocus());
              },
              u"closeUp"_s, former}},
            {"F4 again",
             {[](Form&) {
                  key(Qt::Key_F4);
                  key(Qt::Key_F4);
              },
              u"closeUp"_s, former}},
            {"Alt+Up",
             {[](Form& form) {
                  form.drop();
                  key(Qt::Key_Up, Qt::AltModifier);
              },
              u"closeUp"_s, former}},
            {"the button again",
             {[](Form& form) {
                  form.drop();
                  tap(form.button());
              },
              u"closeUp"_s, former}},
            {"a press on another field",
             {[](Form& form) {
                  form.drop();
                  tap(form.other);
                  QVERIFY(form.other.hasFocus());
              },
              u"closeUp lostFocus"_s, former}},
            {"a press on the ground",
             {[](Form& form) {
                  form.drop();
                  QTest::mouseClick(&form.window, Qt::LeftButton, {}, {700, 600});
                  QVERIFY(form.picker.hasFocus());
              },
              u"closeUp"_s, former}},
            {"a press into the text",
             {[](Form& form) {
                  form.drop();
                  tap(form.edit());
                  QVERIFY(form.picker.hasFocus());
              },
              u"closeUp"_s, former}},
            {"a press beside the days",
             {[](Form& form) {
                  form.drop();
                  QTest::mouseClick(form.calendar(), Qt::LeftButton, {}, {4, 200});
              },
              u""_s, former, true}},
            {"the same day",
             {[](Form& form) {
                  form.drop();
                  tap(*form.month().cell(may));
              },
              u"closeUp"_s, former}},
            {"a day",
             {[](Form& form) {
                  form.drop();
                  tap(*form.month().cell({2026, 5, 2}));
                  QVERIFY(form.picker.hasFocus());
              },
              u"change closeUp"_s, typed}},
            {"a day of the month before",
             {[](Form& form) {
                  form.drop();
                  tap(*form.month().cell({2026, 4, 27}));
              },
              u"change closeUp"_s, u"27.04.2026"_s}},
            {"Bugün",
             {[](Form& form) {
                  form.drop();
                  tap(*form.calendar()->controls().today);
              },
              u"change closeUp"_s, u"04.05.2026"_s}},
            {"the month's arrows",
             {[](Form& form) {
                  form.drop();
                  tap(*form.calendar()->controls().next);
                  QCOMPARE(form.calendar()->caption(), u"Haziran 2026"_s);
                  tap(*form.calendar()->controls().former);
                  tap(*form.calendar()->controls().former);
                  QCOMPARE(form.calendar()->caption(), u"Nisan 2026"_s);
              },
              u""_s, former, true}},
            {"the focus goes by code",
             {[](Form& form) {
                  form.drop();
                  form.other.setFocus();
              },
              u"closeUp lostFocus"_s, former}},
            {"another size of the window",
             {[](Form& form) {
                  form.drop();
                  form.window.resize(700, 700);
              },
              u"closeUp"_s, former}},
            {"hidden while open",
             {[](Form& form) {
                  form.drop();
                  form.window.hide();
              },
              u""_s, former}},
            {"put out of use while open",
             {[](Form& form) {
                  form.drop();
                  form.picker.setEnabled(false);
              },
              u""_s, former}},
            {"Tab stays in the calendar",
             {[](Form& form) {
                  form.drop();
                  const QWidget* first = QApplication::focusWidget();
                  key(Qt::Key_Tab);
                  QCOMPARE(QApplication::focusWidget(), form.calendar()->controls().today);
                  key(Qt::Key_Tab);
                  key(Qt::Key_Tab);
                  QCOMPARE(QApplication::focusWidget(), form.calendar()->controls().next);
                  key(Qt::Key_Tab);
                  QCOMPARE(QApplication::focusWidget(), first);
                  key(Qt::Key_Backtab);
                  QCOMPARE(QApplication::focusWidget(), form.calendar()->controls().next);
              },
              u""_s, former, true}},
        });
    }
    void tells() {
        QFETCH(const PathRow, row);
        check(row, Format::date);
    }

    void tellsOfATime_data() {
        const QString former = u"07:05:09"_s;
        const auto hour = [](Form& form, int number) { tap(*form.times()->key(number)); };
        addRows<PathRow>({
            {"typed and left",
             {[](Form& form) {
                  form.type(u"18:3"_s);
                  key(Qt::Key_Tab);
              },
              u"change lostFocus"_s, u"18:03:00"_s}},
            {"refused and left",
             {[](Form& form) {
                  form.type(u"25:99:99"_s);
                  key(Qt::Key_Tab);
                  QCOMPARE(form.edit().text(), u"07:05:09"_s);
              },
              u"lostFocus"_s, former}},
            {"hour and minute",
             {[hour](Form& form) {
                  form.drop();
                  hour(form, 18);
                  QCOMPARE(form.times()->caption(), u"DAKİKA SEİŞİN"_s);
                  QCOMPARE(form.picker.text(), u"18:05:09"_s);
                  hour(form, 59);
              },
              u"change change closeUp"_s, u"18:59:09"_s}},
            {"the same hour and minute",
             {[hour](Form& form) {
                  form.drop();
                  hour(form, 7);
                  hour(form, 5);
              },
              u"closeUp"_s, former}},
            {"KAPAT at once",
             {[](Form& form) {
                  form.drop();
                  tap(*form.times()->closeButton());
              },
              u"closeUp"_s, former}},
            {"an hour and KAPAT",
             {[hour](Form& form) {
                  form.drop();
                  hour(form, 0);
                  tap(*form.times()->closeButton());
              },
              u"change closeUp"_s, u"00:05:09"_s}},
            {"between hour and minute",
             {[hour](Form& form) {
                  form.drop();
                  hour(form, 23);
              },
              u"change"_s, u"23:05:09"_s, true}},
            {"hour and minute by keys",
             {[](Form&) {
                  key(Qt::Key_Space);
                  key(Qt::Key_Right);
                  key(Qt::Key_Down);
                  key(Qt::Key_Return);  // 7 + 1 + 6
                  key(Qt::Key_Down);
                  key(Qt::Key_Left);
                  key(Qt::Key_Space);  // 5 + 10 - 1
              },
              u"change change closeUp"_s, u"14:14:09"_s}},
            {"to KAPAT by keys",
             {[](Form&) {
                  key(Qt::Key_F4);
                  key(Qt::Key_End);
                  key(Qt::Key_Right);  // goes nowhere
                  key(Qt::Key_Down);
                  key(Qt::Key_Return);
              },
              u"closeUp"_s, former}},
            {"back from KAPAT by keys",
             {[](Form& form) {
                  key(Qt::Key_F4);
                  key(Qt::Key_Tab);
                  QVERIFY(form.times()->closeButton()->hasFocus());
                  key(Qt::Key_Up);
                  key(Qt::Key_Home);
                  key(Qt::Key_Left);  // goes nowhere
                  QVERIFY(form.times()->key(0)->hasFocus());
              },
              u""_s, former, true}},
            {"Up on the hour",
             {[](Form& form) {
                  form.edit().setCursorPosition(1);
                  key(Qt::Key_Up);
              },
              u"change"_s, u"08:05:09"_s}},
            {"Down over midnight",
             {[](Form& form) {
                  form.picker.setTime({0, 5, 9});
                  form.edit().setCursorPosition(0);
                  key(Qt::Key_Down);
              },
              u"change"_s, u"23:05:09"_s}},
            {"Up twice on the minute",
             {[](Form& form) {
                  form.edit().setCursorPosition(4);
                  key(Qt::Key_Up);
                  key(Qt::Key_Up);
              },
              u"change change"_s, u"07:07:09"_s}},
            {"Down on the second",
             {[](Form& form) {
                  form.edit().setCursorPosition(8);
                  key(Qt::Key_Down);
              },
              u"change"_s, u"07:05:08"_s}},
            {"set from code",
             {[](Form& form) {
                  form.picker.setTime({1, 2, 3, 4});
              },
              u""_s, u"01:02:03"_s}},
            {"no time set from code", {[](Form& form) { form.picker.setTime({}); }, u""_s, former}},
        });
    }
    void tellsOfATime() {
        QFETCH(const PathRow, row);
        check(row, Format::time);
    }

    /// Whoever hears of it may delete the picker, or go elsewhere.
    void heardAndGone_data() {
        addRows<Act>({{"a day",
                       [](Form& form) {
                           tap(*form.month().cell({2026, 5, 9}));
                       }},
                      {"Escape", [](Form&) { key(Qt::Key_Escape); }},
                      {"a press elsewhere", [](Form& form) { tap(form.other); }}});
    }
    void heardAndGone() {
        QFETCH(const Act, row);
        Form form;
        auto* picker = new DTPicker(&form.window);
        form.picker.setFocus();
        delete picker;
        form.drop();
        int heard = 0;
        const auto goes = [&] {
            ++heard;
            form.picker.hide();
            form.other.setFocus();
        };
        connect(&form.picker, &DTPicker::change, &form.window, goes);
        connect(&form.picker, &DTPicker::closeUp, &form.window, goes);
        row(form);
        QVERIFY(heard > 0);
        QVERIFY(!form.picker.isDropped());
        QVERIFY(!form.calendar());
    }

    void deletedByWhoHears_data() { addRows<Format>({{"a day", Format::date}, {"an hour", Format::time}}); }
    void deletedByWhoHears() {
        QFETCH(const Format, row);
        QWidget window;
        window.resize(600, 600);
        auto* picker = new DTPicker(&window);
        picker->setFormat(row);
        picker->setGeometry(10, 10, 200, 48);
        show(window);
        tap(*picker->findChild<QAbstractButton*>());
        connect(picker, &DTPicker::change, &window, [picker] { delete picker; });
        key(Qt::Key_Right);
        key(Qt::Key_Return);
        QVERIFY(!window.findChild<DTPicker*>());
    }

    void deletedWhileOpen() {
        QWidget window;
        window.resize(600, 600);
        auto picker = std::make_unique<DTPicker>(&window);
        picker->setGeometry(10, 10, 200, 48);
        show(window);
        tap(*picker->findChild<QAbstractButton*>());
        QVERIFY(window.findChild<CalendarPanel*>());
        picker.reset();
        QVERIFY(!window.findChild<CalendarPanel*>());
    }

    /// Tab finds the picker, and no part of it.
    void isOneStop() {
        Form form;
        QWidget::setTabOrder(&form.other, &form.picker);
        form.other.setFocus();
        key(Qt::Key_Tab);
        QVERIFY(form.picker.hasFocus());
        QCOMPARE(form.edit().selectedText(), u"01.05.2026"_s);
        key(Qt::Key_Tab);
        QVERIFY(form.other.hasFocus());
        QVERIFY(!(form.edit().focusPolicy() & Qt::TabFocus));
        QVERIFY(!(form.button().focusPolicy() & Qt::TabFocus));
    }

    void isKnownToAssistiveTools() {
        Form form;
        form.picker.setAccessibleName(u"Başlangıç"_s);
        QAccessibleInterface* known = QAccessible::queryAccessibleInterface(&form.picker);
        QVERIFY(known);
        QCOMPARE(known->text(QAccessible::Name), u"Başlangıç"_s);
        QCOMPARE(known->text(QAccessible::Value), u"01.05.2026"_s);
        QVERIFY(known->state().hasPopup && known->state().collapsed);
        form.drop();
        QVERIFY(known->state().expanded);
        const QAccessibleInterface* day = QAccessible::queryAccessibleInterface(form.month().cell(may));
        QCOMPARE(day->text(QAccessible::Name), u"1 Mayıs 2026 Cuma"_s);
        QCOMPARE(day->role(), QAccessible::Button);
        form.picker.setFormat(Format::time);
        QCOMPARE(known->text(QAccessible::Value), u"07:05:09"_s);
        form.drop();
        QCOMPARE(form.times()->titleNote(), u"başlangıç"_s);
        QCOMPARE(form.times()->key(18)->accessibleName(), u"saat 18"_s);
    }

    void showsFocusAndUse() {
        Form form;
        const auto rim = [&] { return form.picker.grab().toImage().pixelColor(100, 0); };
        const auto ground = [&] { return form.picker.grab().toImage().pixelColor(150, 24); };
        QCOMPARE(rim(), roleColor(ColorRole::focus));
        form.drop();
        QCOMPARE(rim(), roleColor(ColorRole::focus));
        form.other.setFocus();
        QCOMPARE(rim(), roleColor(ColorRole::fieldLine));
        QCOMPARE(ground(), form.picker.palette().color(QPalette::Base));
        form.picker.setEnabled(false);
        QCOMPARE(ground(), roleColor(ColorRole::fieldOff));
        QCOMPARE(form.picker.grab().toImage().pixelColor(210, 4).lightness() > 200, true);
    }

private:
    static void check(const PathRow& row, Format format) {
        Form form(format);
        row.act(form);
        QCOMPARE(form.told.join(u' '), row.told);
        QCOMPARE(form.picker.text(), row.text);
        QCOMPARE(form.picker.isDropped(), row.dropped);
    }
};

QTEST_MAIN(DTPickerTest)
#include "test_dtpicker.moc"
