// Reading and adding up the sold lines of a range of time through the engine's C interface: what the till's
// own reading is measured against. Writes the milliseconds of each run, a line each: those of reading the
// lines, by the index on their moments or through the whole table, whichever was faster; then those of adding
// them up, several times over.

#include <sqlite3.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "figures.h"
#include "rawshop.h"

namespace {

using kovanix::bench::giveUp;

struct Line {
    std::int64_t number = 0;
    std::string moment;
    std::string barcode;
    std::string name;
    double quantity = 0;
    double price = 0;
    double purchase = 0;
    double profit = 0;
    double total = 0;
    double sale = 0;
};

struct Sums {
    double quantity = 0;
    double total = 0;
    double profit = 0;
};

std::string text(sqlite3_stmt* row, int column) {
    const void* const bytes = sqlite3_column_text(row, column);
    return {static_cast<const char*>(bytes), static_cast<std::size_t>(sqlite3_column_bytes(row, column))};
}

template <class Row>
std::vector<Row> readAll(sqlite3* database, const std::string& sql, Row (*take)(sqlite3_stmt*)) {
    sqlite3_stmt* row = nullptr;
    if (sqlite3_prepare_v2(database, sql.c_str(), -1, &row, nullptr) != SQLITE_OK)
        giveUp(sqlite3_errmsg(database));
    std::vector<Row> rows;
    int result = sqlite3_step(row);
    for (; result == SQLITE_ROW; result = sqlite3_step(row))
        rows.push_back(take(row));
    if (result != SQLITE_DONE)
        giveUp(sqlite3_errmsg(database));
    sqlite3_finalize(row);
    return rows;
}

Line takeLine(sqlite3_stmt* row) {
    return {sqlite3_column_int64(row, 0),
            text(row, 1),
            text(row, 2),
            text(row, 3),
            sqlite3_column_double(row, 4),
            sqlite3_column_double(row, 5),
            sqlite3_column_double(row, 6),
            sqlite3_column_double(row, 7),
            sqlite3_column_double(row, 8),
            sqlite3_column_double(row, 9)};
}

Sums takeSums(sqlite3_stmt* row) {
    return {sqlite3_column_double(row, 0), sqlite3_column_double(row, 1), sqlite3_column_double(row, 2)};
}

template <class Row>
double milliseconds(sqlite3* database, const std::string& columns, const std::string& condition,
                    Row (*take)(sqlite3_stmt*)) {
    const std::string sql = "SELECT " + columns + " FROM satislar WHERE " + condition;
    const auto start = std::chrono::steady_clock::now();
    const std::vector<Row> rows = readAll(database, sql, take);
    const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - start;
    if (rows.empty())
        giveUp("no rows: " + sql);
    return taken.count();
}

}  // namespace

int main(int argc, char** argv) {
    const kovanix::bench::Figures figures(argc, argv);
    const kovanix::bench::RawShop shop = kovanix::bench::openRawShop(figures);
    sqlite3* const database = shop.get();
    const std::string range = " BETWEEN '" + figures.option("from") + "' AND '" + figures.option("to") + "'";
    const int runs = std::stoi(figures.option("runs"));
    for (int i = 0; i < runs; ++i) {
        std::printf("%.4f", std::min(milliseconds(database, "*", "+tarih" + range, takeLine),
                                     milliseconds(database, "*", "tarih" + range, takeLine)));
        for (int times = kovanix::bench::timesAddedUp; times > 0; --times) {
            // The very statement that the till runs.
            const std::string sums = "sum(adet) as adet, sum(toplam) as toplam, sum(kar) as kar";
            std::printf(" %.4f", milliseconds(database, sums, "tarih" + range, takeSums));
        }
        std::printf("\n");
    }
}
