#include "grafik/amounts.h"

#include <cmath>
#include <limits>

#include "values/numbers.h"

namespace kovanix {

void Sum::add(double value) {
    const double sum = m_sum + value;
    m_lost += std::abs(m_sum) >= std::abs(value) ? (m_sum - sum) + value : (value - sum) + m_sum;
    m_sum = sum;
    m_plain += value;
    m_settled = false;
    m_absolute += std::abs(value);
    ++m_count;
}

Sum& Sum::operator+=(const Sum& other) {
    if (other.m_count == 0)
        return *this;
    if (m_count == 0)
        return *this = other;
    const double absolute = m_absolute + other.m_absolute;
    const qint64 count = m_count + other.m_count;
    add(other.m_sum);
    add(other.m_lost);
    m_absolute = absolute;
    m_count = count;
    m_isInOrder = false;
    return *this;
}

/// Each of n plain additions is off by half a unit in the last place of what was added so far, at most.
double Sum::doubt() const {
    return static_cast<double>(m_count) * std::numeric_limits<double>::epsilon() * m_absolute;
}

bool Sum::isCertain(bool inOrder) const {
    if (m_settled)
        return true;
    // A reader that adds with care gets the one, any other the other.
    if (inOrder && m_isInOrder)
        return roundedToCents(value()) == roundedToCents(m_plain);
    return roundedToCents(value() - doubt()) == roundedToCents(value() + doubt());
}

void Sum::settle(double report) {
    if (std::abs(report - value()) > doubt())
        return;
    m_report = report;
    m_settled = true;
}

Amounts& Amounts::operator+=(const Amounts& other) {
    quantity += other.quantity;
    turnover += other.turnover;
    profit += other.profit;
    lines += other.lines;
    return *this;
}

}  // namespace kovanix
