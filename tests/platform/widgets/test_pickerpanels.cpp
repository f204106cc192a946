#include <QAbstractButton>
#include <algorithm>

#include "desktop/tapguard.h"
#include "pickerform.h"
#include "rows.h"
#include "widgets/activeresize.h"
#include "widgets/drawnbutton.h"
#include "widgets/look.h"

using namespace kovanix;

namespace {

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

Q_DECLARE_METATYPE(KeysRow)
Q_DECLARE_METATYPE(MonthRow)
Q_DECLARE_METATYPE(PlaceRow)

/// The calendar and the panels that drop from a picker.
class PickerPanelsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        Clock::setSource([] { return now; });
    }
    void cleanup() {
        Clock::setSource({});
        QLocale::setDefault(QLocale::c());
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
            {"below, with room above", {{400, 100}, {120, 350, 200, 48}, {120, 406}}},
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

    /// Cut out where the display does that, else transparent behind them, as here.
    void roundAsAWindow() {
        Form form(Format::date, {720, 300});
        form.drop();
        CalendarPanel& panel = *form.calendar();
        QVERIFY(panel.isWindow());
        const QImage shown = panel.grab().toImage();
        for (const QPoint corner : {QPoint(0, 0), QPoint(2, 0), QPoint(shown.width() - 1, 0),
                                    QPoint(0, shown.height() - 1), shown.rect().bottomRight()})
            QCOMPARE(shown.pixelColor(corner).alpha(), 0);
        QCOMPARE(shown.pixelColor(shown.width() / 2, 0).alpha(), 255);
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
};

QTEST_MAIN(PickerPanelsTest)
#include "test_pickerpanels.moc"
