#pragma once

#include <QtGlobal>

namespace kovanix {

/// A sum of money that doesn't lose what many additions round off.
class Sum {
public:
    void add(double value);
    Sum& operator+=(const Sum& other);

    double value() const { return m_settled ? m_report : m_sum + m_lost; }

    /// Whether whoever adds the same values up gets the same kuruş, however plainly: else two readers of the
    /// same rows can differ by one.
    /// @param inOrder  whether everybody comes across the values in the order in which they were added here;
    /// else in whichever order
    bool isCertain(bool inOrder) const;
    /// Takes the sum that the sales report shows, so that both show the same kuruş. One that is further off
    /// than additions can be is that of other rows (somebody sells meanwhile) and is left.
    void settle(double report);

private:
    double doubt() const;

    double m_sum = 0;
    double m_plain = 0;       // added without care
    bool m_isInOrder = true;  // value by value, not from sums
    double m_lost = 0;        // what the additions to m_sum have rounded off
    double m_absolute = 0;    // the sum without signs
    qint64 m_count = 0;
    double m_report = 0;
    bool m_settled = false;
};

/// What was sold, summed over some lines.
struct Amounts {
    Sum quantity;
    Sum turnover;
    Sum profit;
    qint64 lines = 0;

    Amounts& operator+=(const Amounts& other);
    bool isCertain(bool inOrder) const { return turnover.isCertain(inOrder) && profit.isCertain(inOrder); }
};

}  // namespace kovanix
