#pragma once

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QStringList>
#include <deque>
#include <memory>
#include <utility>
#include <vector>

#include "cashier.h"
#include "shopledger.h"
#include "windows.h"

namespace kovanix {

class BoxAnswers;

/// What a soak is told.
struct SoakPlan {
    int actions = 10'000;
    quint64 seed = 1;  ///< equal seeds make equal actions on equal shops
    QString receipts =
        {};  ///< the folder that KOVANIX_PRINTER has the receipts go to; each is deleted once seen
    /// How many actions bring the process to its working size, once each window has been opened.
    int settled = 1000;
    std::vector<WindowRow> windows = knownWindows();
};

/// A long day at the counter: actions by chance, one per turn of the event loop, and after each one what must
/// hold whatever a cashier does:
/// - money adds up: each line, the total, the change;
/// - a stored sale is in the file line by line, stock fell by it, and nothing else in the file has changed;
/// - what the action isn't free to change on ticket and cash is as it was;
/// - no message box came that the action can't bring, and the one came that it must;
/// - the focus is where keys do something, no window is left over, the process-wide values are in range;
/// - at the end the process takes at most 5 % more memory than once it had settled, and 7 % more of its heap.
/// Ends at the first thing that doesn't hold.
class Soak : public QObject {
    Q_OBJECT

public:
    Soak(SoakPlan plan, BoxAnswers& boxes, QObject* parent = nullptr);
    ~Soak() override;

    /// Starts on the open sales screen of a manager's session, on a file that nobody else writes into
    /// meanwhile; finished is emitted at the end.
    void start();

    bool held() const { return m_fault.isEmpty(); }
    /// A summary of what was done, or what broke, where, and the last 20 actions before it.
    QStringList report() const;

Q_SIGNALS:
    /// An action is about to be made.
    void acting(int number, const QString& what);
    void finished();

private:
    /// What the process takes, in bytes.
    struct Memory {
        qint64 resident = 0;
        qint64 heap = 0;
    };

    void turn();
    bool isSettling();
    QString fault();
    QString receiptFault();
    QString endFault();
    static Memory memory();
    std::pair<qint64, qint64> settledAndEnd(qint64 Memory::*part) const;
    void measureMemory();
    double growth(qint64 Memory::*part) const;
    QString memoryText() const;
    void breakOff(const QString& fault);
    void end();

    SoakPlan m_plan;
    BoxAnswers& m_boxes;
    std::unique_ptr<ShopLedger> m_ledger;
    std::unique_ptr<Cashier> m_cashier;
    QElapsedTimer m_clock;
    QDeadlineTimer m_settleDeadline{QDeadlineTimer::Forever};
    const Deed* m_deed = nullptr;
    std::deque<QString> m_last;
    QStringList m_names;
    QString m_fault;
    int m_number = 0;
    int m_receipts = 0;
    int m_boxesBefore = 0;
    int m_settledNumber = 0;  ///< the action after which the memory was measured first
    std::vector<Memory> m_measured;
    double m_seconds = 0;
    bool m_ended = false;
};

}  // namespace kovanix
