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
    m_lastAmounts = date.isValid() ? &m_days[m_group ? m_group(date) : date] : &m_withoutDay;
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
    const std::hash<std::string_view> hashOf;
    const std::size_t nameHash = hashOf(name);
    const std::size_t hash = barcode.empty() ? nameHash : hashOf(barcode);
    if (m_products.size() * 2 >= m_places.size())
        makeRoom();
    Place& place = placeOf(hash, barcode, name);
    if (place.number == 0) {
        m_products.push_back({std::string(barcode), std::string(name), {}});
        m_names.push_back(nameHash);
        place = {hash, m_products.size()};
    }
    Product& product = m_products[place.number - 1];
    if (std::size_t& known = m_names[place.number - 1]; known != nameHash && !name.empty()) {
        product.name = name;
        known = nameHash;
    }
    return product.amounts;
}

/// The place of a product, or the free one where it belongs. Without a barcode its name is what it is known
/// by.
SalesFigures::Place& SalesFigures::placeOf(std::size_t hash, std::string_view barcode,
                                           std::string_view name) {
    const std::size_t mask = m_places.size() - 1;
    for (std::size_t i = hash & mask;; i = (i + 1) & mask) {
        Place& place = m_places[i];
        if (place.number == 0)
            return place;
        if (place.hash != hash)
            continue;
        const Product& product = m_products[place.number - 1];
        if (product.barcode == barcode && (!barcode.empty() || product.name == name))
            return place;
    }
}

void SalesFigures::makeRoom() {
    constexpr std::size_t fewest = 1024;
    const std::vector<Place> before = std::move(m_places);
    m_places.assign(std::max(fewest, before.size() * 2), {});
    const std::size_t mask = m_places.size() - 1;
    for (const Place& place : before) {
        std::size_t i = place.hash & mask;
        while (m_places[i].number != 0)
            i = (i + 1) & mask;
        if (place.number != 0)
            m_places[i] = place;
    }
}

}  // namespace kovanix
