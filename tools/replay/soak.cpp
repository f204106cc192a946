#include "soak.h"

#include <malloc.h>
#include <unistd.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTimer>
#include <algorithm>
#include <cmath>
#include <utility>

#include "boxanswers.h"
#include "data/baglanmamodulu.h"
#include "database/connection.h"
#include "desktop/focus.h"
#include "exactamounts.h"
#include "runtime/screen.h"
#include "runtime/screenregistry.h"
#include "sales/satisekrani.h"
#include "values/numbers.h"

namespace kovanix {

namespace {

constexpr std::size_t remembered = 20;  // actions
constexpr int longestSettling = 2000;   // milliseconds
constexpr double allowedGrowth = 0.05;

/// What of the process lies in memory, in bytes. The heap gives back first what it only keeps in reserve: how
/// much that is depends on the moment.
qint64 residentMemory() {
    malloc_trim(0);
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE);
}

QString mebibytes(qint64 bytes) {
    return QString::number(double(bytes) / (1024 * 1024), 'f', 1) + u" MiB";
}

}  // namespace

Soak::Soak(SoakPlan plan, BoxAnswers& boxes, QObject* parent)
    : QObject(parent), m_plan(std::move(plan)), m_boxes(boxes) {
    // At once: the box of an uncaught failure is the last thing that its process shows.
    connect(&m_boxes, &BoxAnswers::opened, this, [this] {
        if (m_cashier && !m_boxes.failures().isEmpty())
            breakOff(m_boxes.failures().constLast());
    });
}

void Soak::start() {
    m_clock.start();
    m_boxesBefore = m_boxes.answered();
    const ConnectionString shop = ConnectionString::parse(baglantiyazisi());
    m_ledger = std::make_unique<ShopLedger>(shop.dataSource, shop.password);
    if (!m_ledger->trouble().isEmpty() || !m_boxes.failures().isEmpty()) {
        // Not at once: the event loop, which finished ends, may not run yet.
        QTimer::singleShot(0, this, [this] {
            const QStringList& boxes = m_boxes.failures();
            breakOff(boxes.isEmpty() ? u"the shop's file can't be read: " + m_ledger->trouble()
                                     : boxes.constFirst());
        });
        return;
    }
    m_cashier = std::make_unique<Cashier>(m_plan.seed, *m_ledger, m_boxes, [this](const QString& what) {
        m_last.push_back(QString::number(m_number) + u' ' + what);
        if (m_last.size() > remembered)
            m_last.pop_front();
        Q_EMIT acting(m_number, what);
    });
    turnSoon();
}

void Soak::turnSoon(int milliseconds) {
    QTimer::singleShot(milliseconds, this, &Soak::turn);
}

/// Judges the last action and makes the next one.
void Soak::turn() {
    if (m_ended)
        return;
    if (isSettling()) {
        turnSoon(1);
        return;
    }
    if (m_deed && m_fault.isEmpty())
        breakOff(fault());
    if (m_ended)
        return;
    if (m_number == m_plan.actions) {
        breakOff(m_ledger->checkAll());
        breakOff(memoryFault());
        end();
        return;
    }
    ++m_number;
    m_deed = &m_cashier->act();
    turnSoon();
}

/// Whether the screens aren't ready for the next action yet. Without a window manager none is active by
/// itself when a box or another screen has gone, and a minimised one is fetched back by nobody.
bool Soak::isSettling() {
    if (QApplication::activeModalWidget())
        return true;  // a box that is still to be answered
    auto& till = screen<satisekrani>();
    if (till.isMinimized())
        restore(till);
    const QWidget* active = QApplication::activeWindow();
    const bool arrived = !m_deed || !m_deed->until || m_deed->until();
    if (arrived && active && (active != &till || QApplication::focusWidget())) {
        m_settleDeadline = QDeadlineTimer(QDeadlineTimer::Forever);
        return false;
    }
    if (m_settleDeadline.isForever())
        m_settleDeadline = QDeadlineTimer(longestSettling);
    if (!active)
        till.activateWindow();
    if (!m_settleDeadline.hasExpired())
        return true;
    breakOff(arrived ? QStringLiteral("nothing has the focus")
                     : QStringLiteral("the other screen doesn't come to the front, or doesn't go"));
    return false;
}

QString Soak::fault() {
    const TillView after = viewOf(screen<satisekrani>());
    if (m_boxes.waiting() > 0)
        return QStringLiteral("the message box that belongs to it didn't come");
    for (const QString& found :
         {formFault(after), lineFault(after), totalFault(after),
          changeFault(m_deed->before, after, m_deed->belowNothing), screenFault(after)}) {
        if (!found.isEmpty())
            return found;
    }
    const QString inFile = fileFault();
    if (!inFile.isEmpty())
        return inFile;
    if (m_number == settled)
        m_settledMemory = residentMemory();
    return {};
}

/// What the action should have made of the screen and didn't.
QString Soak::screenFault(const TillView& after) const {
    if (textOf(after.lines) != textOf(m_deed->lines))
        return u"the ticket holds " + textOf(after.lines) + u", not " + textOf(m_deed->lines);
    const auto rounded = [](double amount) { return format(amount, u"##0.00"); };
    if (rounded(valueOf(after.cash)) != rounded(m_deed->cash))
        return u"the cash is " + after.cash + u", not " + rounded(m_deed->cash);
    if (after.quantity != m_deed->quantity)
        return u"the quantity holds \"" + after.quantity + u"\", not \"" + m_deed->quantity + u'"';
    if (after.barcode != m_deed->barcode)
        return u"the barcode holds \"" + after.barcode + u"\", not \"" + m_deed->barcode + u'"';
    if (m_deed->barcodeFocused && !screen<satisekrani>().ui.barkod->hasFocus())
        return u"the barcode hasn't got the focus back; it is in " +
               (QApplication::focusWidget() ? QApplication::focusWidget()->objectName() : QString());
    return m_deed->also ? m_deed->also() : QString();
}

QString Soak::fileFault() {
    if (m_deed->made) {
        const QString found =
            m_ledger->checkMade(m_deed->made->barcode, m_deed->made->name, m_deed->made->price);
        if (!found.isEmpty())
            return found;
    }
    if (m_deed->stores) {
        const QString found = m_ledger->checkSale(m_deed->before.lines);
        if (!found.isEmpty())
            return found;
    }
    const QString foreign = m_ledger->checkUntouched();
    return foreign.isEmpty() ? receiptFault() : foreign;
}

/// One receipt for each sale that is printed, none for any other action.
QString Soak::receiptFault() {
    QDir folder(m_plan.receipts);
    const QFileInfoList printed = folder.entryInfoList({QStringLiteral("*.pdf")}, QDir::Files);
    if (printed.size() != (m_deed->prints ? 1 : 0))
        return QString::number(printed.size()) + u" receipts were printed";
    if (!m_deed->prints)
        return {};
    ++m_receipts;
    const QString text = screen<satisekrani>().ui.Text33->text();
    if (printed.constFirst().size() == 0 || !text.contains(u"TOPLAM TUTAR  :\t" + m_deed->before.total))
        return QStringLiteral("the receipt lacks the total");
    folder.remove(printed.constFirst().fileName());
    return {};
}

/// Memory that grows with the actions would end the day before the cashier does.
QString Soak::memoryFault() {
    if (m_number <= settled)
        return {};
    m_endMemory = residentMemory();
    if (std::fabs(memoryGrowth()) <= allowedGrowth)
        return {};
    return u"memory isn't what it was: " + memoryText();
}

double Soak::memoryGrowth() const {
    return double(m_endMemory - m_settledMemory) / double(m_settledMemory);
}

QString Soak::memoryText() const {
    if (m_endMemory == 0)
        return QStringLiteral("compared only beyond %1 actions").arg(settled);
    const QString sign = m_endMemory < m_settledMemory ? QString() : QStringLiteral("+");
    return mebibytes(m_settledMemory) + QStringLiteral(" resident after %1 actions, ").arg(settled) +
           mebibytes(m_endMemory) + u" at the end (" + sign + QString::number(100 * memoryGrowth(), 'f', 2) +
           u" %), unused heap given back before each measurement";
}

void Soak::breakOff(const QString& fault) {
    if (fault.isEmpty() || m_ended)
        return;
    m_fault = QString(fault).replace(u'\n', QStringLiteral("\\n"));
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
        QStringList lines{QStringLiteral("soak: broken at action %1 of %2, seed %3: ")
                              .arg(m_number)
                              .arg(m_plan.actions)
                              .arg(m_plan.seed) +
                          m_fault};
        for (const QString& action : m_last)
            lines.append(u"  " + action);
        return lines;
    }
    const QStringList never = m_cashier->neverMade();
    QStringList lines{
        QStringLiteral("soak: %1 actions of %2 kinds, seed %3, %4 s: everything held")
            .arg(m_number)
            .arg(Cashier::kinds() - never.size())
            .arg(m_plan.seed)
            .arg(m_seconds, 0, 'f', 1),
        QStringLiteral("  %1 sales of %2 lines, %3 receipts, %4 products made, %5 boxes answered")
            .arg(m_ledger->sales())
            .arg(m_ledger->linesStored())
            .arg(m_receipts)
            .arg(m_ledger->productsMade())
            .arg(m_boxes.answered() - m_boxesBefore),
        u"  memory " + memoryText()};
    if (!never.isEmpty())
        lines.append(u"  never made: " + never.join(QStringLiteral(", ")));
    return lines;
}

}  // namespace kovanix
