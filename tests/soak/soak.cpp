#include "soak.h"

#include <malloc.h>
#include <unistd.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFont>
#include <QPixmapCache>
#include <QTimer>
#include <algorithm>
#include <iterator>
#include <utility>

#include "appearance/tema.h"
#include "boxanswers.h"
#include "data/baglanmamodulu.h"
#include "database/connection.h"
#include "desktop/focus.h"
#include "invariants.h"
#include "runtime/screen.h"
#include "runtime/screenregistry.h"
#include "sales/satisekrani.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t remembered = 20;   // actions
constexpr int longestSettling = 2000;    // milliseconds
constexpr int betweenWholeChecks = 100;  // actions
constexpr double allowedGrowth = 0.05;
// The heap is a fifth of what is resident: two kilobytes that a keyboard loses each time show here first.
// Some growth is none of the till's: the toolkit keeps a name for the icon of each message box and letters in
// more sizes, and the ledger the products that were made.
constexpr double allowedHeapGrowth = 0.07;
constexpr std::size_t mostAtEachEnd = 10;  // measurements of memory

/// Without a window manager none is active by itself when a box or another screen has gone: the one on top.
void activateTopmost(Screen& till) {
    Screen* topmost = &till;
    for (Screen* screen : ScreenRegistry::all()) {
        if (screen->isVisible())
            topmost = screen;
    }
    topmost->activateWindow();
}

}  // namespace

Soak::Soak(SoakPlan plan, BoxAnswers& boxes, QObject* parent)
    : QObject(parent), m_plan(std::move(plan)), m_boxes(boxes) {
    m_boxes.askFor([this](const QMessageBox& box) {
        return m_cashier && !m_ended ? m_cashier->answer(box) : std::nullopt;
    });
    // At once: the box of an uncaught failure is the last thing that its process shows.
    connect(&m_boxes, &BoxAnswers::opened, this, [this] {
        if (m_cashier && !m_boxes.failures().isEmpty())
            breakOff(m_boxes.failures().constLast());
    });
    for (const WindowRow& row : m_plan.windows)
        m_names.append(row.name);
    m_names.append(u"satisekrani"_s);
    setThemeBeep([] {});
}

Soak::~Soak() {
    m_boxes.askFor({});
    setThemeBeep({});
}

void Soak::start() {
    m_clock.start();
    m_boxesBefore = m_boxes.answered();
    const ConnectionString shop = ConnectionString::parse(baglantiyazisi());
    m_ledger = std::make_unique<ShopLedger>(shop.dataSource, shop.password);
    // Not at once: the event loop, which finished ends, may not run yet.
    const QStringList faults = m_boxes.failures() + QStringList{m_ledger->trouble()};
    QTimer::singleShot(0, this, [this, fault = faults.constFirst()] {
        if (!fault.isEmpty()) {
            breakOff(fault);
            return;
        }
        m_cashier =
            std::make_unique<Cashier>(m_plan.seed, *m_ledger, m_plan.windows, [this](const QString& what) {
                m_last.push_back(QString::number(m_number) + u' ' + what);
                if (m_last.size() > remembered)
                    m_last.pop_front();
                Q_EMIT acting(m_number, what);
            });
        turn();
    });
}

/// Judges the last action and makes the next one.
void Soak::turn() {
    if (m_ended)
        return;
    const bool settling = isSettling();
    if (!settling && m_deed)
        breakOff(fault());
    if (!settling && !m_ended && m_number == m_plan.actions) {
        breakOff(endFault());
        end();
    }
    if (m_ended)
        return;
    if (!settling) {
        ++m_number;
        m_deed = &m_cashier->act();
    }
    QTimer::singleShot(settling ? 1 : 0, this, &Soak::turn);
}

/// Whether the screens aren't ready for the next action yet: a box is to be answered, or the window system
/// has still to bring another window to the front. A minimised till is fetched back by nobody.
bool Soak::isSettling() {
    auto& till = screen<satisekrani>();
    if (till.isMinimized())
        restore(till);
    const QWidget* active = QApplication::activeWindow();
    const bool arrived = !m_deed || !m_deed->until || m_deed->until();
    if (!QApplication::activeModalWidget() && arrived && active &&
        (active != &till || QApplication::focusWidget())) {
        m_settleDeadline = QDeadlineTimer(QDeadlineTimer::Forever);
        return false;
    }
    if (m_settleDeadline.isForever())
        m_settleDeadline = QDeadlineTimer(longestSettling);
    if (!active)
        activateTopmost(till);
    if (m_settleDeadline.hasExpired())
        breakOff(!arrived ? u"the other screen doesn't come to the front, or doesn't go"_s
                 : QApplication::activeModalWidget() ? u"a box or dialog stays open"_s
                                                     : u"nothing has the focus"_s);
    return true;
}

QString Soak::fault() {
    const auto& till = screen<satisekrani>();
    if (!m_deed->box.isEmpty() && m_deed->shownBox != m_deed->box)
        return u"the message box " + m_deed->box + u" didn't come";
    const TillView after = viewOf(till);
    for (const auto& found : {moneyFault(*m_deed, after), ticketFault(*m_deed, after),
                              focusFault(*m_deed, till), windowFault(m_names), valueFault(till)}) {
        if (!found.isEmpty())
            return found;
    }
    if (const QString inFile = m_ledger->fault(*m_deed); !inFile.isEmpty())
        return inFile;
    const QString receipt = receiptFault();
    if (!receipt.isEmpty() || m_number % betweenWholeChecks != 0)
        return receipt;
    measureMemory();
    return m_ledger->wholeFault();
}

/// One receipt for each sale that is printed, none for any other action.
QString Soak::receiptFault() {
    QDir folder(m_plan.receipts);
    const QFileInfoList printed = folder.entryInfoList({u"*.pdf"_s}, QDir::Files);
    if (printed.size() != (m_deed->prints ? 1 : 0))
        return QString::number(printed.size()) + u" receipts were printed";
    if (!m_deed->prints)
        return {};
    ++m_receipts;
    const QString text = screen<satisekrani>().ui.Text33->text();
    if (printed.constFirst().size() == 0 || !text.contains(u"TOPLAM TUTAR  :\t" + m_deed->before.total))
        return u"the receipt lacks the total"_s;
    folder.remove(printed.constFirst().fileName());
    return {};
}

/// The whole file once more, and the memory: what grows with the actions would end the day before the cashier
/// does.
QString Soak::endFault() {
    if (m_measured.empty() && m_number > 2 * m_plan.settled)
        return u"these windows were never opened, so that memory can't be compared: "_s +
               m_cashier->neverOpened().join(u", "_s);
    const QString inFile = m_ledger->wholeFault();
    const bool grown = growth(&Memory::resident) > allowedGrowth || growth(&Memory::heap) > allowedHeapGrowth;
    return inFile.isEmpty() && grown ? u"memory isn't what it was: " + memoryText() : inFile;
}

/// What of the process lies in memory and of its heap is in use, without what is only kept in reserve: the
/// toolkit's drawn icons, of which it keeps ten megabytes at most, the letters that it has drawn in every
/// size so far, the engine's copy of the shop's file, two megabytes at most, which grows as that file does,
/// and the heap's free pieces.
Soak::Memory Soak::memory() {
    dropCachedPages();
    QPixmapCache::clear();
    QFont::cleanup();
    malloc_trim(0);
    const struct mallinfo2 heap = mallinfo2();
    QFile file(u"/proc/self/statm"_s);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return {file.readAll().split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE),
            qint64(heap.uordblks + heap.hblkhd)};
}

/// Where only the till is open, so that the same stands in memory each time, and not before each window has
/// been opened once: whatever is loaded for that is loaded for good. Done all along, since reserves that fill
/// up for thousands of actions leave the heap in holes, which look as if they were in use.
void Soak::measureMemory() {
    const auto visible = [](const Screen* screen) { return screen->isVisible(); };
    if (std::ranges::count_if(ScreenRegistry::all(), visible) > 1)
        return;
    const Memory now = memory();
    if (m_number < m_plan.settled || !m_cashier->neverOpened().isEmpty())
        return;
    if (m_measured.empty())
        m_settledNumber = m_number;
    m_measured.push_back(now);
}

/// The medians of the first and of the last measurements: what happens to be on the ticket makes single ones
/// differ by more than a leak would.
std::pair<qint64, qint64> Soak::settledAndEnd(qint64 Memory::*part) const {
    std::vector<qint64> sizes;
    std::ranges::transform(m_measured, std::back_inserter(sizes), part);
    const std::size_t each = std::clamp<std::size_t>(sizes.size() / 3, 1, mostAtEachEnd);
    const auto median = [](std::vector<qint64> some) {
        std::ranges::sort(some);
        return some[some.size() / 2];
    };
    return {median({sizes.begin(), sizes.begin() + qsizetype(each)}),
            median({sizes.end() - qsizetype(each), sizes.end()})};
}

double Soak::growth(qint64 Memory::*part) const {
    if (m_measured.empty())
        return 0;
    const auto [settled, end] = settledAndEnd(part);
    return settled > 0 ? double(end - settled) / double(settled) : 0;
}

QString Soak::memoryText() const {
    if (m_measured.empty())
        return u"compared only beyond %1 actions, once each window has been opened"_s.arg(m_plan.settled);
    const auto text = [this](const char* what, qint64 Memory::*part) {
        constexpr double mebibyte = 1024 * 1024;
        const auto [settled, end] = settledAndEnd(part);
        return QString::asprintf("%s %.2f MiB, then %.2f MiB (%+.2f %%)", what, double(settled) / mebibyte,
                                 double(end) / mebibyte, 100 * growth(part));
    };
    return u"measured %1 times since action %2: "_s.arg(m_measured.size()).arg(m_settledNumber) +
           text("resident", &Memory::resident) + text(", heap", &Memory::heap);
}

void Soak::breakOff(const QString& fault) {
    if (fault.isEmpty() || m_ended)
        return;
    m_fault = QString(fault).replace(u'\n', u"\\n"_s);
    end();
}

void Soak::end() {
    if (std::exchange(m_ended, true))
        return;
    m_seconds = double(m_clock.elapsed()) / 1000;
    Q_EMIT finished();
}

QStringList Soak::report() const {
    if (!held()) {
        QStringList lines{QString::asprintf("soak: broken at action %d of %d, seed %llu: ", m_number,
                                            m_plan.actions, m_plan.seed) +
                          m_fault};
        for (const QString& action : m_last)
            lines.append(u"  " + action);
        return lines;
    }
    const QStringList never = m_cashier->neverMade();
    const auto kinds = m_cashier->kinds() - never.size();
    return {QString::asprintf("soak: %d actions of %lld kinds, seed %llu, %.1f s: everything held", m_number,
                              kinds, m_plan.seed, m_seconds),
            QString::asprintf("  %d sales of %d lines, %d receipts, %d products made, %d boxes answered",
                              m_ledger->sales(), m_ledger->linesStored(), m_receipts,
                              m_ledger->productsMade(), m_boxes.answered() - m_boxesBefore),
            u"  memory " + memoryText(),
            u"  never made: " + (never.isEmpty() ? u"none"_s : never.join(u", "_s))};
}

}  // namespace kovanix
