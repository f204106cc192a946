#pragma once

#include <QDate>
#include <array>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "grafik/amounts.h"

namespace kovanix {

/// A sold line as it is stored, its texts in UTF-8. A number that is missing adds nothing.
struct SoldLine {
    std::string_view moment;  ///< "2026-05-04 10:24:31"
    std::string_view barcode;
    std::string_view name;
    std::optional<double> quantity;
    std::optional<double> turnover;
    std::optional<double> profit;
};

/// Adds sold lines up by day, by hour of day and by product, all at once. Every line counts in each of the
/// three.
class SalesFigures {
public:
    static constexpr int hours = 24;

    /// What was sold under one barcode; without a barcode, under one name.
    struct Product {
        std::string barcode;  ///< may be empty
        std::string name;     ///< the last one that isn't empty; may be empty
        Amounts amounts;
    };

    SalesFigures() = default;
    /// @param group  of a day: the day under which it is added up. A sum of sums
    /// would not tell what adding line by line comes to.
    explicit SalesFigures(std::function<QDate(QDate day)> group) : m_group(std::move(group)) {}

    void add(const SoldLine& line);

    const Amounts& total() const { return m_total; }
    /// Days with sales, or their groups, in their order.
    const std::map<QDate, Amounts>& days() const { return m_days; }
    const std::array<Amounts, hours>& byHour() const { return m_hours; }
    /// In the order in which they were first sold.
    const std::vector<Product>& products() const { return m_products; }
    /// Whether each line was sold at the moment of the one before, or later.
    bool isInOrder() const { return m_inOrder; }
    /// Lines whose moment is no day, respectively tells no hour.
    const Amounts& withoutDay() const { return m_withoutDay; }
    const Amounts& withoutHour() const { return m_withoutHour; }

private:
    /// Where a product stands, found by the hash of its key.
    struct Place {
        std::size_t hash = 0;
        std::size_t number = 0;  ///< of the product, counted from 1; 0 for a free place
    };

    Amounts& day(std::string_view moment);
    Amounts& hour(std::string_view moment);
    Amounts& product(const SoldLine& line);
    Place& placeOf(std::size_t hash, std::string_view barcode, std::string_view name);
    void makeRoom();

    std::function<QDate(QDate day)> m_group;
    Amounts m_total;
    std::map<QDate, Amounts> m_days;
    std::array<Amounts, hours> m_hours;
    Amounts m_withoutDay;
    Amounts m_withoutHour;
    std::vector<Product> m_products;
    std::vector<std::size_t> m_names;  // the hash of each product's name: that is nearer than its letters
    std::vector<Place> m_places;       // open addressing, at most half full
    bool m_inOrder = true;
    std::string m_lastMoment;
    std::string m_lastDay;             // lines of a day follow one another
    Amounts* m_lastAmounts = nullptr;  // its own
};

}  // namespace kovanix
