#include <QAccessible>
#include <QLineEdit>
#include <QPushButton>
#include <functional>
#include <memory>

#include "desktop/tapguard.h"
#include "rows.h"
#include "runtime/clock.h"
#include "widgets/activeresize.h"
#include "widgets/calendarpanel.h"
#include "widgets/drawnbutton.h"
#include "widgets/dtpicker.h"
#include "widgets/look.h"
#include "widgets/monthview.h"
#include "widgets/timepanel.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

using Format = DTPicker::Format;

const QDateTime now(QDate(2026, 5, 4), QTime(10, 24, 31, 500));
const QDate may(2026, 5, 1);
const QTime morning(7, 5, 9);

void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
}

void tap(QWidget& control) {
    QTest::mouseClick(&control, Qt::LeftButton);
}

void show(QWidget& window) {
    window.show();
    window.activateWindow();
    if (!QTest::qWaitForWindowActive(&window))
        qFatal("no window gets the keyboard");
}

/// A window with a picker at its upper left, and something beside it that takes the keyboard.
struct Form {
    QWidget window;
    DTPicker picker{&window};
    QLineEdit other{&window};
    QStringList told;

    explicit Form(Format format = Format::date, QSize size = {760, 700}) {
        picker.setFormat(format);
        picker.setDate(may);
        picker.setTime(morning);
        picker.setGeometry(16, 60, 220, 48);
        other.setGeometry(500, 60, 200, 48);
        window.resize(size);
        show(window);
        picker.setFocus();
        QObject::connect(&picker, &DTPicker::change, &window, [this] { told << u"change"_s; });
        QObject::connect(&picker, &DTPicker::closeUp, &window, [this] { told << u"closeUp"_s; });
        QObject::connect(&picker, &DTPicker::lostFocus, &window, [this] { told << u"lostFocus"_s; });
    }

    QAbstractButton& button() { return *picker.findChild<QAbstractButton*>(); }
    QLineEdit& edit() { return *picker.findChild<QLineEdit*>(); }
    CalendarPanel* calendar() { return open<CalendarPanel>(); }
    TimePanel* times() { return open<TimePanel>(); }
    MonthView& month() { return calendar()->month(); }
    void drop() { tap(button()); }
    void type(const QString& text) {
        edit().selectAll();
        QTest::keyClicks(&picker, text);
    }

private:
    // One that was closed lives until the event loop turns.
    template <class Panel>
    Panel* open() {
        for (auto* panel : window.findChildren<Panel*>()) {
            if (panel->isVisible())
                return panel;
        }
        return nullptr;
    }
};

using Act = std::function<void(Form&)>;

struct PathRow {
    Act act;
    QString told;
    QString text;
    bool dropped = false;
    Format format = Format::date;
};

struct KeysRow {
    QDate start;
    QList<Qt::Key> keys;
    QDate reached;
};

struct MonthRow {
    QDate day;
    QDate first;  ///< of the days that can be seen
    QString caption;
};

struct PlaceRow {
    QSize panel;
    QRect field;
    QPoint corner;
    bool inside = true;
    QRect window{100, 100, 720, 552};
};

}  // namespace

Q_DECLARE_METATYPE(PathRow)
Q_DECLARE_METATYPE(KeysRow)
Q_DECLARE_METATYPE(MonthRow)
Q_DECLARE_METATYPE(PlaceRow)

class DTPickerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        Clock::setSource([] { return now; });
    }
    void cleanup() {
        Clock::setSource({});
        QLocale::setDefault(QLocale::c());
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
        check(row);
    }

    void tellsOfATime_data() {
        const QString former = u"07:05:09"_s;
        const auto hour = [](Form& form, int number) { tap(*form.times()->key(number)); };
        const auto time = [](Act act, const QString& told, const QString& text, bool dropped = false) {
            return PathRow{std::move(act), told, text, dropped, Format::time};
        };
        addRows<PathRow>({
            {"typed and left", time(
                                   [](Form& form) {
                                       form.type(u"18:3"_s);
                                       key(Qt::Key_Tab);
                                   },
                                   u"change lostFocus"_s, u"18:03:00"_s)},
            {"refused and left", time(
                                     [](Form& form) {
                                         form.type(u"25:99:99"_s);
                                         key(Qt::Key_Tab);
                                         QCOMPARE(form.edit().text(), u"07:05:09"_s);
                                     },
                                     u"lostFocus"_s, former)},
            {"hour and minute", time(
                                    [hour](Form& form) {
                                        form.drop();
                                        hour(form, 18);
                                        QCOMPARE(form.times()->caption(), u"DAKİKA SEÇİN"_s);
                                        QCOMPARE(form.picker.text(), u"18:05:09"_s);
                                        hour(form, 59);
                                    },
                                    u"change change closeUp"_s, u"18:59:09"_s)},
            {"the same hour and minute", time(
                                             [hour](Form& form) {
                                                 form.drop();
                                                 hour(form, 7);
                                                 hour(form, 5);
                                             },
                                             u"closeUp"_s, former)},
            {"KAPAT at once", time(
                                  [](Form& form) {
                                      form.drop();
                                      tap(*form.times()->closeButton());
                                  },
                                  u"closeUp"_s, former)},
            {"an hour and KAPAT", time(
                                      [hour](Form& form) {
                                          form.drop();
                                          hour(form, 0);
                                          tap(*form.times()->closeButton());
                                      },
                                      u"change closeUp"_s, u"00:05:09"_s)},
            {"between hour and minute", time(
                                            [hour](Form& form) {
                                                form.drop();
                                                hour(form, 23);
                                            },
                                            u"change"_s, u"23:05:09"_s, true)},
            {"hour and minute by keys", time(
                                            [](Form&) {
                                                key(Qt::Key_Space);
                                                key(Qt::Key_Right);
                                                key(Qt::Key_Down);
                                                key(Qt::Key_Return);  // 7 + 1 + 6
                                                key(Qt::Key_Down);
                                                key(Qt::Key_Left);
                                                key(Qt::Key_Space);  // 5 + 10 - 1
                                            },
                                            u"change change closeUp"_s, u"14:14:09"_s)},
            {"to KAPAT by keys", time(
                                     [](Form&) {
                                         key(Qt::Key_F4);
                                         key(Qt::Key_End);
                                         key(Qt::Key_Right);  // goes nowhere
                                         key(Qt::Key_Down);
                                         key(Qt::Key_Return);
                                     },
                                     u"closeUp"_s, former)},
            {"back from KAPAT by keys", time(
                                            [](Form& form) {
                                                key(Qt::Key_F4);
                                                key(Qt::Key_Tab);
                                                QVERIFY(form.times()->closeButton()->hasFocus());
                                                key(Qt::Key_Up);
                                                key(Qt::Key_Home);
                                                key(Qt::Key_Left);  // goes nowhere
                                                QVERIFY(form.times()->key(0)->hasFocus());
                                            },
                                            u""_s, former, true)},
            {"Up on the hour", time(
                                   [](Form& form) {
                                       form.edit().setCursorPosition(1);
                                       key(Qt::Key_Up);
                                   },
                                   u"change"_s, u"08:05:09"_s)},
            {"Down over midnight", time(
                                       [](Form& form) {
                                           form.picker.setTime({0, 5, 9});
                                           form.edit().setCursorPosition(0);
                                           key(Qt::Key_Down);
                                       },
                                       u"change"_s, u"23:05:09"_s)},
            {"Up twice on the minute", time(
                                           [](Form& form) {
                                               form.edit().setCursorPosition(4);
                                               key(Qt::Key_Up);
                                               key(Qt::Key_Up);
                                           },
                                           u"change change"_s, u"07:07:09"_s)},
            {"Down on the second", time(
                                       [](Form& form) {
                                           form.edit().setCursorPosition(8);
                                           key(Qt::Key_Down);
                                       },
                                       u"change"_s, u"07:05:08"_s)},
            {"set from code", time(
                                  [](Form& form) {
                                      form.picker.setTime({1, 2, 3, 4});
                                  },
                                  u""_s, u"01:02:03"_s)},
            {"no time set from code", time([](Form& form) { form.picker.setTime({}); }, u""_s, former)},
        });
    }
    void tellsOfATime() {
        QFETCH(const PathRow, row);
        check(row);
    }

    /// The keyboard's walk through the days.
    void walks_data() {
        const QDate day(2026, 5, 13);
        addRows<KeysRow>({{"left", {day, {Qt::Key_Left}, {2026, 5, 12}}},
                          {"right", {day, {Qt::Key_Right}, {2026, 5, 14}}},
                          {"up", {day, {Qt::Key_Up}, {2026, 5, 6}}},
                          {"down", {day, {Qt::Key_Down}, {2026, 5, 20}}},
                          {"month before", {day, {Qt::Key_PageUp}, {2026, 4, 13}}},
                          {"month behind", {day, {Qt::Key_PageDown}, {2026, 6, 13}}},
                          {"first", {day, {Qt::Key_Home}, {2026, 5, 1}}},
                          {"last", {day, {Qt::Key_End}, {2026, 5, 31}}},
                          {"over the year's end", {{2025, 12, 31}, {Qt::Key_Right}, {2026, 1, 1}}},
                          {"over its start", {{2026, 1, 5}, {Qt::Key_Up}, {2025, 12, 29}}},
                          {"into a short month", {{2026, 1, 31}, {Qt::Key_PageDown}, {2026, 2, 28}}},
                          {"into a leap month", {{2028, 1, 31}, {Qt::Key_PageDown}, {2028, 2, 29}}},
                          {"onto the leap day", {{2028, 2, 1}, {Qt::Key_End}, {2028, 2, 29}}},
                          {"over the end of time", {{9999, 12, 31}, {Qt::Key_Right}, {9999, 12, 31}}},
                          {"a month over it", {{9999, 12, 1}, {Qt::Key_PageDown}, {9999, 12, 1}}},
                          {"over its start, by a week", {{100, 1, 7}, {Qt::Key_Up}, {100, 1, 7}}},
                          {"far",
                           {day,
                            {Qt::Key_PageDown, Qt::Key_PageDown, Qt::Key_End, Qt::Key_Down, Qt::Key_Left},
                            {2026, 8, 6}}}});
    }
    void walks() {
        QFETCH(const KeysRow, row);
        Form form;
        form.picker.setDate(row.start);
        key(Qt::Key_F4);
        for (const Qt::Key each : row.keys)
            key(each);
        QCOMPARE(form.month().current(), row.reached);
        QCOMPARE(QApplication::focusWidget(), form.month().cell(row.reached));
        QCOMPARE(form.picker.date(), row.start);
        key(Qt::Key_Return);
        QCOMPARE(form.picker.date(), row.reached);
        QVERIFY(form.picker.hasFocus());
    }

    void months_data() {
        addRows<MonthRow>({{"from a Friday", {{2026, 5, 4}, {2026, 4, 27}, u"Mayıs 2026"_s}},
                           {"from a Monday", {{2026, 6, 30}, {2026, 6, 1}, u"Haziran 2026"_s}},
                           {"from a Sunday", {{2026, 2, 28}, {2026, 1, 26}, u"Şubat 2026"_s}},
                           {"leap February", {{2028, 2, 29}, {2028, 1, 31}, u"Şubat 2028"_s}},
                           {"February of four weeks", {{2027, 2, 1}, {2027, 2, 1}, u"Şubat 2027"_s}},
                           {"first of a year", {{2026, 1, 1}, {2025, 12, 29}, u"Ocak 2026"_s}},
                           {"last of a year", {{2025, 12, 31}, {2025, 12, 1}, u"Aralık 2025"_s}},
                           {"first month of all", {{100, 1, 1}, {99, 12, 28}, u"Ocak 0100"_s}},
                           {"last month of all", {{9999, 12, 31}, {9999, 11, 29}, u"Aralık 9999"_s}}});
    }
    void months() {
        QFETCH(const MonthRow, row);
        Form form;
        form.picker.setDate(row.day);
        form.drop();
        QCOMPARE(form.calendar()->caption(), row.caption);
        const MonthView& month = form.month();
        QVERIFY(!month.cell(row.first.addDays(-1)));
        QVERIFY(!month.cell(row.first.addDays(42)));
        const int step = month.width() / 7;
        const QPoint corner = month.cell(row.first)->pos();
        for (int i = 0; i < 42; ++i) {
            const QDate day = row.first.addDays(i);
            const QWidget* cell = month.cell(day);
            QVERIFY(cell);
            QCOMPARE(cell->x() / step + 1, day.dayOfWeek());
            QCOMPARE(cell->y(), corner.y() + i / 7 * (month.cell(row.first.addDays(7))->y() - corner.y()));
            QCOMPARE(cell->isEnabled(), day.year() >= 100 && day.year() <= 9999);
        }
        const auto& controls = form.calendar()->controls();
        QCOMPARE(controls.former->isEnabled(), row.day.year() > 100);
        QCOMPARE(controls.next->isEnabled(), row.day.year() < 9999);
    }

    /// The machine's language is no matter.
    void speaksTurkish_data() {
        addRows<QLocale>({{"C", QLocale::c()},
                          {"German", QLocale(QLocale::German)},
                          {"Arabic", QLocale(QLocale::Arabic, QLocale::Egypt)}});
    }
    void speaksTurkish() {
        QFETCH(const QLocale, row);
        QLocale::setDefault(row);
        Form form;
        QCOMPARE(form.edit().text(), u"01.05.2026"_s);
        form.drop();
        QCOMPARE(form.calendar()->caption(), u"Mayıs 2026"_s);
        QCOMPARE(form.month().cell(may)->accessibleName(), u"1 Mayıs 2026 Cuma"_s);
    }

    void todayIsTheClocks() {
        Form form;
        Clock::setSource([] { return QDateTime(QDate(2026, 5, 20), QTime(0, 0)); });
        form.drop();
        QCOMPARE(form.month().today(), QDate(2026, 5, 20));
        QCOMPARE(form.month().cell({2026, 5, 20})->accessibleDescription(), u"Bugün"_s);
        QVERIFY(form.month().cell({2026, 5, 4})->accessibleDescription().isEmpty());
        const QColor accent = roleColor(ColorRole::selectionBar);
        const auto colors = [&](QDate day, QPoint place) {
            return form.month().cell(day)->grab().toImage().pixelColor(place);
        };
        // Outlined, filled, and neither.
        const QPoint middleOfTop(27, 1);
        const QPoint inside(27, 6);
        QCOMPARE(colors({2026, 5, 20}, middleOfTop), accent);
        QVERIFY(colors({2026, 5, 20}, inside) != accent);
        QCOMPARE(colors(may, inside), accent);
        QVERIFY(colors({2026, 5, 21}, middleOfTop) != accent);
    }

    /// Every target of the panels at the sizes of a display, and where they stand.
    void sizes_data() {
        addRows<QSize>({{"800x600", {800, 600}}, {"1024x768", {1024, 768}}, {"1920x1080", {1920, 1080}}});
    }
    void sizes() {
        QFETCH(const QSize, row);
        ActiveResize window;
        DTPicker picker(&window);
        picker.setMinimumHeight(48);
        picker.setMaximumHeight(48);
        window.resize(row);
        show(window);
        const double scale = window.scale();
        picker.setGeometry(QRect(QPoint(16, 8), picker.minimumSizeHint()));
        const int least = std::max(40, static_cast<int>(44 * scale));
        QVERIFY(picker.minimumHeight() >= least);
        QVERIFY(picker.findChild<QAbstractButton*>()->width() >= least);
        QVERIFY(picker.minimumSizeHint().height() >= least);

        const auto checkPanel = [&](int width) {
            const auto panel = window.findChildren<DropPanel*>().last();
            QVERIFY(panel->isVisible());
            QVERIFY(std::abs(panel->width() - width * scale) < 8);
            const auto targets = panel->findChildren<QAbstractButton*>();
            QVERIFY(!targets.isEmpty());
            for (const QAbstractButton* target : targets) {
                QVERIFY2(target->width() >= 40 && target->height() >= least,
                         qPrintable(target->accessibleName()));
                const QRect place(target->mapTo(panel, QPoint(0, 0)), target->size());
                QVERIFY(panel->rect().contains(place));
            }
        };
        tap(*picker.findChild<QAbstractButton*>());
        checkPanel(400);
        picker.setFormat(Format::time);
        tap(*picker.findChild<QAbstractButton*>());
        checkPanel(378);
        tap(*window.findChildren<TimePanel*>().last()->key(3));
        checkPanel(616);
    }

    void places_data() {
        const QSize calendar(400, 450);
        addRows<PlaceRow>({
            {"below", {{400, 300}, {120, 150, 200, 48}, {120, 206}}},
            {"above", {{400, 300}, {120, 550, 200, 48}, {120, 242}}},
            {"at the window's right edge", {{400, 300}, {600, 150, 200, 48}, {420, 206}}},
            {"below its window", {calendar, {120, 150, 200, 48}, {120, 206}, false}},
            {"above its window", {calendar, {120, 550, 200, 48}, {120, 92}, false}},
            {"just inside", {{400, 300}, {120, 296, 200, 48}, {120, 352}}},
            {"a pixel too low", {{400, 301}, {120, 296, 200, 48}, {120, 352}, false}},
            {"over its field", {{400, 500}, {120, 300, 200, 48}, {120, 152}}},
            {"over its field, beside the window", {{400, 600}, {120, 300, 200, 48}, {120, 168}, false}},
            {"window partly off the display",
             {{400, 300}, {700, 150, 200, 48}, {624, 206}, true, {500, 100, 720, 552}}},
            {"larger than the display", {{1100, 800}, {120, 300, 200, 48}, {0, 0}, false}},
        });
    }
    void places() {
        QFETCH(const PlaceRow, row);
        const DropPlace place = dropPlace(row.panel, row.field, row.window, {0, 0, 1024, 768}, 8);
        QCOMPARE(place.corner, row.corner);
        QCOMPARE(place.inside, row.inside);
    }

    /// A calendar without room in its window is a window of its own, and goes the same ways.
    void outsideOfASmallWindow() {
        Form form(Format::date, {720, 300});
        form.drop();
        QVERIFY(form.calendar()->isWindow());
        QCOMPARE(QApplication::activePopupWidget(), form.calendar());
        QVERIFY(form.told.isEmpty());
        tap(*form.month().cell({2026, 5, 2}));
        QCOMPARE(form.told, (QStringList{u"change"_s, u"closeUp"_s}));
        QVERIFY(!QApplication::activePopupWidget());
        QVERIFY(form.picker.hasFocus());

        form.told.clear();
        form.drop();
        CalendarPanel* calendar = form.calendar();
        const QPoint beside = calendar->mapFromGlobal(form.button().mapToGlobal(QPoint(5, 5)));
        QTest::mousePress(calendar, Qt::LeftButton, {}, beside);
        QVERIFY(!form.picker.isDropped());
        QVERIFY(calendar->testAttribute(Qt::WA_NoMouseReplay));  // else the button would drop it again
        QCOMPARE(form.told, QStringList{u"closeUp"_s});

        form.drop();
        key(Qt::Key_Escape);
        QVERIFY(!form.picker.isDropped());
        QVERIFY(form.picker.hasFocus());
    }

    /// An impatient thumb chooses an hour, and not the minute that comes to stand there.
    void secondTapIsDropped() {
        Form form(Format::time);
        const TapGuard guard;
        form.drop();
        const QPoint place = form.times()->key(8)->mapTo(&form.window, QPoint(20, 20));
        for (int i = 0; i < 2; ++i) {
            QWidget* hit = form.window.childAt(place);
            QTest::mouseClick(hit, Qt::LeftButton, {}, hit->mapFrom(&form.window, place));
        }
        QCOMPARE(form.picker.text(), u"08:05:09"_s);
        QCOMPARE(form.told, QStringList{u"change"_s});
        QVERIFY(form.times());
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

    void deletedByWhoHears() {
        QWidget window;
        window.resize(600, 600);
        auto* picker = new DTPicker(&window);
        picker->setDate(may);
        picker->setGeometry(10, 10, 200, 48);
        show(window);
        tap(*picker->findChild<QAbstractButton*>());
        connect(picker, &DTPicker::change, &window, [picker] { delete picker; });
        QWidget* cell = window.findChild<MonthView*>()->cell({2026, 5, 9});
        tap(*cell);
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
        QCOMPARE(QAccessible::queryAccessibleInterface(form.month().cell(may))->text(QAccessible::Name),
                 u"1 Mayıs 2026 Cuma"_s);
        form.picker.setFormat(Format::time);
        QCOMPARE(known->text(QAccessible::Value), u"07:05:09"_s);
        form.drop();
        QCOMPARE(form.times()->titleNote(), u"Başlangıç"_s);
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
    static void check(const PathRow& row) {
        Form form(row.format);
        row.act(form);
        QCOMPARE(form.told.join(u' '), row.told);
        QCOMPARE(form.picker.text(), row.text);
        QCOMPARE(form.picker.isDropped(), row.dropped);
    }
};

QTEST_MAIN(DTPickerTest)
#include "test_dtpicker.moc"
