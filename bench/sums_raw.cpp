// The sums of the reports through the engine's C interface: what the till's own are measured against. Writes
// the milliseconds of each run and what it came to, a line each.

#include <sqlite3.h>

#include <chrono>
#include <cstdio>
#include <memory>
#include <string>

#include "figures.h"
#include "rawshop.h"
#include "values/numbers.h"

namespace {

using kovanix::bench::giveUp;

template <class Each>
void forEachRow(sqlite3* database, const char* sql, Each each) {
    sqlite3_stmt* row = nullptr;
    if (sqlite3_prepare_v2(database, sql, -1, &row, nullptr) != SQLITE_OK)
        giveUp(sqlite3_errmsg(database));
    int result = sqlite3_step(row);
    for (; result == SQLITE_ROW; result = sqlite3_step(row))
        each(row);
    if (result != SQLITE_DONE)
        giveUp(sqlite3_errmsg(database));
    sqlite3_finalize(row);
}

/// The turnover of all sales, rounded at each row, with the moments of the first and the last.
double turnover(sqlite3* database) {
    double total = 0;
    std::string first;
    std::string last;
    // What the index finds would have to be sorted: the rows themselves are in order of entry.
    forEachRow(database,
               "SELECT tarih, toplam FROM satislar NOT INDEXED "
               "WHERE tarih BETWEEN '2000-01-01 00:00:00' AND '2099-12-31 23:59:59' ORDER BY no",
               [&](sqlite3_stmt* row) {
                   last = static_cast<const char*>(static_cast<const void*>(sqlite3_column_text(row, 0)));
                   if (first.empty())
                       first = last;
                   total = kovanix::roundedToCents(total + sqlite3_column_double(row, 1));
               });
    return total;
}

/// What the stock will bring beyond what it has cost.
double stockProfit(sqlite3* database) {
    double cost = 0;
    double sale = 0;
    forEachRow(database, "SELECT alis, satis, stok FROM urunler", [&](sqlite3_stmt* row) {
        const double stock = sqlite3_column_double(row, 2);
        cost += sqlite3_column_double(row, 0) * stock;
        sale += sqlite3_column_double(row, 1) * stock;
    });
    return sale - cost;
}

}  // namespace

int main(int argc, char** argv) {
    const kovanix::bench::Figures figures(argc, argv);
    const kovanix::bench::RawShop shop = kovanix::bench::openRawShop(figures);
    sqlite3* const database = shop.get();
    const int runs = std::stoi(figures.option("runs"));
    const bool ofSales = figures.option("of") == "sales";
    for (int i = 0; i < runs; ++i) {
        const auto start = std::chrono::steady_clock::now();
        const double sum = ofSales ? turnover(database) : stockProfit(database);
        const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - start;
        std::printf("%.4f %.2f\n", taken.count(), sum);
    }
}
