#include "reports/zparogu.h"

#include <QCoreApplication>
#include <QScopeGuard>
#include <QScopedValueRollback>

#include "app/modTurkce.h"
#include "data/baglanmamodulu.h"
#include "database/rowwalk.h"
#include "desktop/waitcursor.h"
#include "printing/printer.h"
#include "reports/rangewords.h"
#include "reports/rule.h"
#include "reports/zpage.h"
#include "runtime/attempt.h"
#include "runtime/clock.h"
#include "runtime/screenregistry.h"
#include "screens/clicks.h"
#include "screens/listrules.h"
#include "values/dates.h"
#include "values/numbers.h"
#include "widgets/look.h"
#include "widgets/paintedhint.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

QString momentText(std::string_view stored) {
    const QString text = QString::fromUtf8(stored.data(), static_cast<qsizetype>(stored.size()));
    return shownMoment(text).value_or(text);
}

}  // namespace

zparogu::zparogu() {
    ui.setupUi(this);
    for (auto [layout, text] :
         {std::pair(ui.baslangicLayout, u"Başlangıç"_s), {ui.bitisLayout, u"Bitiş"_s}}) {
        constexpr int width = 78;
        auto* hint = new PaintedHint({}, text, Qt::AlignRight);
        hint->setFixedWidth(width);
        layout->addWidget(hint);
    }
    ui.cizgiLayout->addWidget(new Rule);
    applyTextRoles(*this);
    ui.vkFrame1->setTitleNoteRange(true);
    ui.toplam->setInk(ColorRole::footerTotal);
    for (auto [control, name] :
         std::initializer_list<std::pair<QWidget*, QString>>{{ui.tarih1, u"Başlangıç tarihi"_s},
                                                             {ui.saat1, u"Başlangıç saati"_s},
                                                             {ui.Tarih2, u"Bitiş tarihi"_s},
                                                             {ui.saat2, u"Bitiş saati"_s},
                                                             {ui.Image1, u"Bir gün ileri"_s},
                                                             {ui.Image2, u"Bir gün geri"_s}})
        control->setAccessibleName(name);
    clicks(this, {{ui.Command3, &zparogu::Command3_click},
                  {ui.Command1, &zparogu::Command1_click},
                  {ui.Image1, &zparogu::Image1_click},
                  {ui.Image2, &zparogu::Image2_click},
                  {ui.cmdClose, &zparogu::cmdClose_click}});
    for (const DTPicker* day : {ui.tarih1, ui.Tarih2})
        connect(day, &DTPicker::change, this, &zparogu::Command3_click);
    for (const DTPicker* time : {ui.saat1, ui.saat2}) {
        connect(time, &DTPicker::lostFocus, this, &zparogu::saat_lostfocus);
        connect(time, &DTPicker::closeUp, this, &zparogu::Command3_click);
    }
    standInFrame(*ui.vkFrame1);
    setCloseButton(*ui.cmdClose);
}

zparogu::~zparogu() = default;

void zparogu::form_load() {
    ekrandonat(*this);
    ui.saat1->setTime({0, 0, 0});
    ui.saat2->setTime({23, 59, 59});
    const QDate today = Clock::now().date();
    ui.tarih1->setDate(today);
    ui.Tarih2->setDate(today);
}

void zparogu::form_activate() {
    Command3_click();
}

void zparogu::Command3_click() {
    if (m_busy)
        return;
    const QScopedValueRollback busy(m_busy, true);
    ui.toplam->setText(u"0"_s);
    ui.ilk->setText({});
    ui.son->setText({});
    tellRange();
    const QString range = sqltarihbetween(ui.tarih1->date(), timeText(ui.saat1->time()), ui.Tarih2->date(),
                                          timeText(ui.saat2->time()));
    bool any = false;
    std::string last;
    double total = 0;
    // Where a file breaks off, what has been added so far is shown.
    const ReadEnd end = readReport([&] {
        const WaitCursor waiting;  // years take a moment
        const auto restore = qScopeGuard([this] { ui.vkFrame1->setProgress({}); });
        any = false;
        total = 0;
        ui.Adodc1->setConnectionString(baglantiyazisi());
        ui.Adodc1->setCommandType(Adodc::CommandType::table);
        ui.Adodc1->setRecordSource(u"satislar where tarih between " + range);
        QElapsedTimer reading;
        reading.start();
        // Added up without keeping any of the rows.
        RowWalk sales(baglanti(), u"select tarih, toplam from " + ui.Adodc1->recordSource());
        sales.forEach(
            [&](const RowWalk::Row& sale) {
                last = sale.text(0);
                if (!std::exchange(any, true))
                    ui.ilk->setText(momentText(last));
                // Rounded at each row: required.
                total = roundedToCents(total + sayicevir(sale, 1));
            },
            [&](qsizetype rows, qsizetype count) {
                ui.vkFrame1->setProgress(
                    progressShown(rows, count, std::chrono::milliseconds(reading.elapsed())));
            });
    });
    if (end == ReadEnd::nothing) {
        // Neither a part of the figures nor those of another range, and not the sum of no sales either.
        ui.ilk->setText({});
        ui.toplam->setText({});
        return;
    }
    if (!any)
        return;
    ui.toplam->setText(format(total, u"#,##0.00 "));  // the blank behind it belongs to the figure
    ui.son->setText(momentText(last));
}

void zparogu::tellRange() {
    ui.vkFrame1->setTitleNote(dayRangeWords(ui.tarih1->date(), ui.Tarih2->date()));
}

void zparogu::Command1_click() {
    constexpr int onePress = 1000;  // milliseconds: nothing shows that a job is on its way
    if (m_busy || (m_sinceJob.isValid() && !m_sinceJob.hasExpired(onePress)))
        return;
    if (ui.toplam->text().isEmpty())
        Command3_click();  // the figures couldn't be read before
    const auto closeNext = qScopeGuard([this] {
        ui.cmdClose->setFocus();  // the Enter of a scan must not print once more
    });
    if (ui.toplam->text().isEmpty())
        return;
    const QScopedValueRollback busy(m_busy, true);
    // A hidden line edit keeps CR LF as they are, which the toolkit's multi-line editors don't.
    ui.Text33->setText(
        zPageText({ui.tarih1->date(), ui.Tarih2->date(), ui.ilk->text(), ui.son->text(), ui.toplam->text()}));
    const auto showPressed = [] { QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents); };
    showPressed();
    // A printer that fails says nothing here; the figures stay.
    Printer printer;
    const bool printed = !attempt([&] { printer.print(ui.Text33->text()); });
    showPressed();
    if (!attempt([&] { printer.endDocument(); }) && printed)
        m_sinceJob.start();
}

/// Moves both, or at the calendar's ends none; what is being typed counts.
void zparogu::moveDays(int days) {
    if (m_busy)
        return;
    {
        const QScopedValueRollback once(m_busy, true);  // the range is read below
        for (DTPicker* picker : {ui.tarih1, ui.saat1, ui.Tarih2, ui.saat2})
            picker->takeTyped();
    }
    const QDate before = ui.tarih1->date();
    const QDate first = before.addDays(days);
    const QDate last = ui.Tarih2->date().addDays(days);
    ui.tarih1->setDate(first);
    if (ui.tarih1->date() == first)
        ui.Tarih2->setDate(last);
    if (ui.Tarih2->date() != last)
        ui.tarih1->setDate(before);
    Command3_click();
}

void zparogu::Image1_click() {
    moveDays(1);
}

void zparogu::Image2_click() {
    moveDays(-1);
}

/// A picker that goes with its screen has been left, too.
void zparogu::saat_lostfocus() {
    if (loaded<zparogu>())
        Command3_click();
}

void zparogu::cmdClose_click() {
    leave();
}

}  // namespace kovanix
