#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <array>
#include <functional>
#include <memory>
#include <vector>

#include "programs.h"

namespace kovanix {

/// A line of a sale.
struct Line {
    QString barcode;
    double quantity;
    bool operator==(const Line&) const = default;
};

/// What was pressed on a till as one sale.
struct Sale {
    QList<Line> lines;
    bool isTold = false;  ///< whether the till said that it is stored
};

/// How long each of several tills sells.
struct TradeLength {
    int sales;        ///< at most
    int seconds = 0;  ///< after which none begins any more; 0 for no end by the clock

    /// @param wantedSeconds  0 for an end by the count
    static TradeLength of(int wantedSales, int wantedSeconds) {
        constexpr int noEnd = 1'000'000;
        return {wantedSeconds > 0 ? noEnd : wantedSales, wantedSeconds};
    }
};

/// One of several tills that sell in one shop, with what was pressed on it since the morning, however often
/// it was started.
class SellingTill {
public:
    /// @param tills  how many there are
    SellingTill(const ClosedShop& shop, int number, int tills, TradeLength length);

    void start();
    void kill();
    bool isRunning() const { return m_program->isRunning(); }
    bool isDone() const {
        const bool enough = m_length.seconds > 0 ? !m_pressed.isEmpty() : m_pressed.size() == m_length.sales;
        return !isRunning() && enough && m_pressed.last().isTold;
    }
    Outcome finish();

    /// Takes what the till has said since.
    void read();

    const QList<Sale>& pressed() const { return m_pressed; }
    /// How long each press took to store, in milliseconds.
    const QList<double>& waits() const { return m_waits; }
    /// What it said besides: its message boxes.
    const QStringList& strange() const { return m_strange; }
    /// How many of its ends fell into a sale.
    int cut() const;

private:
    QString m_folder;
    int m_number;
    int m_tills;
    TradeLength m_length;
    std::unique_ptr<Program> m_program;
    qsizetype m_read = 0;
    QList<Sale> m_pressed;
    QList<double> m_waits;
    QStringList m_strange;
};

/// All tills of a shop.
class SellingTills {
public:
    SellingTills(const ClosedShop& shop, int tills, TradeLength length);

    SellingTill& at(int number) { return *m_tills.at(static_cast<std::size_t>(number)); }
    int count() const { return static_cast<int>(m_tills.size()); }
    /// How many sales they have told.
    qsizetype told();
    /// Waits for a condition while the tills get on. @return whether it came
    bool waitFor(const std::function<bool()>& condition);
    /// Starts those again that have ended before they were done.
    void startEnded();
    bool areDone() const;

    /// What the shop's tables hold against what was told, in words; empty when each sale that was told is
    /// there, once, of any other some beginning, and nothing else.
    /// @param stockIsTaken  whether the shop takes what is sold off the stock
    QString difference(const ClosedShop& shop, bool stockIsTaken = true) const;
    /// How many sales were told, how many cut, and how long storing took.
    QString summary() const;

private:
    std::vector<std::unique_ptr<SellingTill>> m_tills;
};

/// Lets events through for that long.
void runFor(int milliseconds);

}  // namespace kovanix
