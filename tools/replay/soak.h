#pragma once

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QStringList>
#include <deque>
#include <memory>

#include "cashier.h"
#include "shopledger.h"

namespace kovanix {

class BoxAnswers;

/// What a soak is told.
struct SoakPlan {
    int actions = 10'000;
    quint64 seed = 1;  ///< equal seeds make equal actions on equal shops
    QString receipts;  ///< the folder that KOVANIX_PRINTER has the receipts go to; each is deleted once seen
};

/// A long day at the counter: actions by chance on the sales screen, one per turn of the event loop, and
/// after each one what must hold whatever a cashier does:
/// - the total is the sum of the lines as rounded, and each line its quantity times its price;
/// - the change is the cash less the total, unless the cash was just clamped to nothing;
/// - the rows stored are the lines committed, and stock is what it was less what was sold;
/// - the ticket, the cash and the fields are what the action makes of them;
/// - at the end the process takes at most 5 % more or less memory than after the first thousand actions.
/// Ends at the first thing that doesn't hold.
class Soak : public QObject {
    Q_OBJECT

public:
    /// How many actions bring the process to its working size.
    static constexpr int settled = 1000;

    Soak(SoakPlan plan, BoxAnswers& boxes, QObject* parent = nullptr);

    /// Starts on the open sales screen, on a file that nobody else writes into meanwhile; finished is emitted
    /// at the end.
    void start();

    bool held() const { return m_fault.isEmpty(); }
    /// A summary of what was done, or what broke, where, and the last actions before it.
    QStringList report() const;

Q_SIGNALS:
    /// An action is about to be made.
    void acting(int number, const QString& what);
    void finished();

private:
    void turn();
    void turnSoon(int milliseconds = 0);
    bool isSettling();
    QString fault();
    QString screenFault(const TillView& after) const;
    QString fileFault();
    QString receiptFault();
    QString memoryFault();
    double memoryGrowth() const;
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
    QString m_fault;
    int m_number = 0;
    int m_receipts = 0;
    int m_boxesBefore = 0;
    qint64 m_settledMemory = 0;
    qint64 m_endMemory = 0;
    double m_seconds = 0;
    bool m_ended = false;
};

}  // namespace kovanix
