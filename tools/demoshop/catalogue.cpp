#include "catalogue.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "barcode.h"
#include "goods.h"

namespace kovanix::demoshop {

using namespace Qt::StringLiterals;

namespace {

constexpr quint64 serialCount = 1'000'000'000;
// Shares no factor with serialCount, so that the serial numbers of a thousand million products are all
// different.
constexpr quint64 serialStep = 618'033'989;

double toKurus(double lira) {
    return std::round(lira * 100) / 100;
}

/// A price as it stands on a shelf: whole or half lira, or ten kuruş below the next lira.
double shelfPrice(double lira, Random& random) {
    constexpr std::array<double, 4> endings{0.90, 0.90, 0.50, 0.00};
    const double ending =
        lira < 20 ? (random.chance(0.5) ? 0.50 : 0.00) : endings[random.below(endings.size())];
    return std::max(1.0, std::floor(lira)) + ending;
}

qsizetype stapleCount() {
    return qsizetype(staples().size());
}

}  // namespace

Catalogue::Catalogue(qsizetype count, Random& random) : firstSerial(random.below(serialCount)) {
    const auto& allKinds = kinds();
    for (int kind = 0; kind < int(allKinds.size()); ++kind)
        for (int variety = 0; variety < int(allKinds[size_t(kind)].varieties.size()); ++variety)
            for (int size = 0; size < int(allKinds[size_t(kind)].sizes.size()); ++size)
                packed.push_back({kind, variety, size});
    for (size_t place = packed.size(); place > 1; --place)
        std::swap(packed[place - 1], packed[random.below(place)]);

    figures.reserve(size_t(count));
    for (qsizetype number = 0; number < count; ++number) {
        const double sale = priceOf(number, random);
        const double haggled = marginOf(number) * (0.8 + 0.4 * random.unit());
        const double purchase = std::min(toKurus(sale / (1 + haggled)), toKurus(sale - 0.01));
        figures.push_back({purchase, sale, random.chance(0.03) ? 0 : random.between(4, 180)});
    }
}

qsizetype Catalogue::varietyCount() {
    qsizetype count = stapleCount();
    for (const Kind& kind : kinds())
        count += kind.varieties.size() * qsizetype(kind.sizes.size());
    return count;
}

Product Catalogue::at(qsizetype number) const {
    const Figures& figure = figures[size_t(number)];
    const bool weighed = number < stapleCount() && staples()[size_t(number)].weighed;
    return {barcodeOf(number), nameOf(number), figure.purchase, figure.sale, double(figure.stock), weighed};
}

double Catalogue::popularity(qsizetype number) const {
    // Packed goods sell by rank: a few every hour, most of them once a week.
    return number < stapleCount() ? staples()[size_t(number)].popularity
                                  : 3000.0 / (40.0 + double(number - stapleCount()));
}

std::vector<QuickKey> Catalogue::quickKeys() const {
    std::vector<QuickKey> keys;
    for (qsizetype number = 0; number < std::min(size(), stapleCount()); ++number) {
        const Staple& staple = staples()[size_t(number)];
        if (staple.page > 0)
            keys.push_back({staple.page, staple.slot, staple.caption.toString(), barcodeOf(number)});
    }
    return keys;
}

QString Catalogue::nameOf(qsizetype number) const {
    if (number < stapleCount())
        return staples()[size_t(number)].name.toString();
    const size_t rank = size_t(number - stapleCount());
    const Packed& goods = packed[rank % packed.size()];
    const Kind& kind = kinds()[size_t(goods.kind)];
    const QString name =
        kind.varieties[goods.variety] + u' ' + kind.name + u' ' + kind.sizes[size_t(goods.size)].name;
    const size_t round = rank / packed.size();
    return round == 0 ? name : name + u" No "_s + QString::number(round + 1);
}

QString Catalogue::barcodeOf(qsizetype number) const {
    if (number < stapleCount() && staples()[size_t(number)].weighed) {
        const auto weighedBefore = std::count_if(staples().begin(), staples().begin() + number,
                                                 [](const Staple& staple) { return staple.weighed; });
        return QString::number(weighedBefore + 1).rightJustified(4, u'0');
    }
    return ean13((firstSerial + quint64(number) % serialCount * serialStep) % serialCount);
}

double Catalogue::priceOf(qsizetype number, Random& random) const {
    if (number < stapleCount())
        return staples()[size_t(number)].price;
    const Packed& goods = packed[size_t(number - stapleCount()) % packed.size()];
    const Kind& kind = kinds()[size_t(goods.kind)];
    return shelfPrice(kind.price * kind.sizes[size_t(goods.size)].factor * (0.9 + 0.25 * random.unit()),
                      random);
}

double Catalogue::marginOf(qsizetype number) const {
    if (number < stapleCount())
        return staples()[size_t(number)].margin;
    return kinds()[size_t(packed[size_t(number - stapleCount()) % packed.size()].kind)].margin;
}

}  // namespace kovanix::demoshop
