#include "history.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace kovanix::demoshop {

namespace {

constexpr int linesPerDay = 120;
constexpr int openingHour = 8;
constexpr int firstHoursToday = 2;
constexpr double dearPerKilogram = 150;  // cheese, olives and nuts go by the half kilogram

/// Customers by hour, from the opening hour on.
constexpr std::array<int, 14> hourWeights{9, 8, 6, 6, 9, 8, 5, 5, 7, 11, 13, 11, 7, 4};
/// Customers by weekday, Monday first.
constexpr std::array<double, 7> weekdayWeights{0.92, 0.90, 0.94, 0.98, 1.12, 1.28, 1.08};

double dayWeight(QDate day, bool last, Random& random) {
    const double weight = weekdayWeights[size_t(day.dayOfWeek() - 1)] * (0.88 + 0.24 * random.unit());
    return last ? weight * 0.12 : weight;
}

/// Picks products by their popularity.
class Shelf {
public:
    explicit Shelf(const Catalogue& catalogue) {
        sums.reserve(size_t(catalogue.size()));
        double sum = 0;
        for (qsizetype number = 0; number < catalogue.size(); ++number)
            sums.push_back(sum += catalogue.popularity(number));
    }
    qsizetype pick(Random& random) const {
        const double point = random.unit() * sums.back();
        const auto found = std::upper_bound(sums.begin(), sums.end(), point);
        return std::min(qsizetype(found - sums.begin()), qsizetype(sums.size()) - 1);
    }

private:
    std::vector<double> sums;
};

/// A moment of the day in seconds; on the last day only the first hours count.
int momentOfDay(bool last, Random& random) {
    const size_t hours = last ? size_t(firstHoursToday) : hourWeights.size();
    int sum = 0;
    for (size_t hour = 0; hour < hours; ++hour)
        sum += hourWeights[hour];
    int point = random.between(0, sum - 1);
    size_t hour = 0;
    while (point >= hourWeights[hour])
        point -= hourWeights[hour++];
    return (openingHour + int(hour)) * 3600 + random.between(0, 3599);
}

int basketSize(Random& random) {
    int size = 1;
    while (size < 18 && random.chance(0.66))
        ++size;
    return size;
}

double quantityOf(const Product& product, Random& random) {
    if (product.weighed)
        return random.between(20, product.sale < dearPerKilogram ? 500 : 140) * 5 / 1000.0;
    return random.chance(0.82) ? 1 : random.between(2, 5);
}

/// Prices of days gone by: a tenth lower half a year ago, a fifth lower a year ago, in steps of half a lira.
double pastPrice(double price, int daysAgo) {
    const int months = daysAgo / 30;
    return price < 5 || months == 0 ? price : std::round(price * (1 - months / 60.0) * 2) / 2;
}

/// The starts of a day's baskets, in order, and how many lines each has.
struct Basket {
    int second;
    int lines;
};

std::vector<Basket> basketsOf(qsizetype lines, bool last, Random& random) {
    std::vector<Basket> baskets;
    while (lines > 0) {
        const int size = int(std::min<qsizetype>(basketSize(random), lines));
        baskets.push_back({momentOfDay(last, random), size});
        lines -= size;
    }
    std::stable_sort(baskets.begin(), baskets.end(),
                     [](const Basket& one, const Basket& other) { return one.second < other.second; });
    return baskets;
}

}  // namespace

int historyDays(qsizetype lines) {
    return int(std::clamp<qsizetype>(lines / linesPerDay, 1, 365));
}

void tellHistory(const Catalogue& catalogue, QDate today, qsizetype lines, Random& random,
                 const std::function<void(const SoldLine&)>& tell) {
    if (catalogue.size() == 0)
        return;
    const Shelf shelf(catalogue);
    const int days = historyDays(lines);

    std::vector<double> weightUpTo;
    double weight = 0;
    for (int day = 0; day < days; ++day)
        weightUpTo.push_back(weight += dayWeight(today.addDays(day + 1 - days), day + 1 == days, random));

    qsizetype told = 0;
    for (int day = 0; day < days; ++day) {
        const int daysAgo = days - 1 - day;
        const auto upToNow =
            daysAgo == 0 ? lines : qsizetype(double(lines) * weightUpTo[size_t(day)] / weight);
        const QDate date = today.addDays(-daysAgo);
        for (const Basket& basket : basketsOf(upToNow - told, daysAgo == 0, random)) {
            const QTime time = QTime(0, 0).addSecs(basket.second);
            for (int line = 0; line < basket.lines; ++line) {
                const qsizetype number = shelf.pick(random);
                const Product product = catalogue.at(number);
                const double price = pastPrice(product.sale, daysAgo);
                const double purchase = std::round(product.purchase * price / product.sale * 100) / 100;
                tell({date, time, number, quantityOf(product, random), price, purchase});
            }
        }
        told = upToNow;
    }
}

}  // namespace kovanix::demoshop
