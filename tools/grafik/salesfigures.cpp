#include "grafik/salesfigures.h"

#include <algorithm>

namespace kovanix {

namespace {

constexpr std::size_t dayLength = 10;  // "2026-05-04"

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// The number that digits write from a place on; -1 where other characters stand.
int digits(std::string_view text, std::size_t place, std::size_t count) {
    if (text.size() < place + count)
        return -1;
    int number = 0;
    for (const char digit : text.substr(place, count)) {
        if (digit < '0' || digit > '9')
            return -1;
        number = number * 10 + (digit - '0');
    }
    return number;
}

QDate dayOf(std::string_view moment) {
    if (moment.size() < dayLength || moment[4] != '-' || moment[7] != '-')
        return {};
    const int year = digits(moment, 0, 4);
    const int month = digits(moment, 5, 2);
    const int day = digits(moment, 8, 2);
    return year > 0 && month > 0 && day > 0 ? QDate(year, month, day) : QDate();
}

void addTo(Amounts& amounts, const SoldLine& line) {
    if (line.quantity)
        amounts.quantity.add(*line.quantity);
    if (line.turnover)
        amounts.turnover.add(*line.turnover);
    if (line.profit)
        amounts.profit.add(*line.profit);
    ++amounts.lines;
}

}  // namespace

void SalesFigures::add(const SoldLine& line) {
    if (line.moment != m_lastMoment) {
        m_inOrder = m_inOrder && line.moment > m_lastMoment;
        m_lastMoment = line.moment;
    }
    addTo(m_total, line);
    addTo(day(line.moment), line);
    addTo(hour(line.moment), line);
    addTo(product(line), line);
}

Amounts& SalesFigures::day(std::string_view moment) {
    const std::string_view text = moment.substr(0, dayLength);
    if (m_lastAmounts && text == m_lastDay)
        return *m_lastAmounts;
    const QDate date = dayOf(moment);
    m_lastDay = text;
    m_lastAmounts = date.isValid() ? &m_days[date] : &m_withoutDay;
    return *m_lastAmounts;
}

Amounts& SalesFigures::hour(std::string_view moment) {
    const int number = moment.size() > dayLength + 1 ? digits(moment, dayLength + 1, 2) : -1;
    if (number < 0 || number >= hours)
        return m_withoutHour;
    return m_hours[static_cast<std::size_t>(number)];
}

Amounts& SalesFigures::product(const SoldLine& line) {
    const std::string_view barcode = trimmed(line.barcode);
    const std::string_view name = trimmed(line.name);
    std::string ofName;  // no barcode begins with a line end
    if (barcode.empty())
        ofName = '\n' + std::string(name);
    const std::string_view key = barcode.empty() ? std::string_view(ofName) : barcode;
    auto place = m_places.find(key);
    if (place == m_places.end()) {
        place = m_places.emplace(key, m_products.size()).first;
        m_products.push_back({std::string(barcode), std::string(name), {}});
    }
    Product& product = m_products[place->second];
    if (!name.empty() && name != product.name)
        product.name = name;
    return product.amounts;
}

}  // namespace kovanix
