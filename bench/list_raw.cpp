// Reading the product list through the engine's C interface into plain structs: what the till's own reading
// is measured against. Writes the milliseconds of each read, a line each.

#include <sqlite3.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "figures.h"

namespace {

using kovanix::bench::giveUp;

struct Product {
    std::int64_t number = 0;
    std::string barcode;
    std::string name;
    double purchase = 0;
    double price = 0;
    double stock = 0;
};

std::string text(sqlite3_stmt* row, int column) {
    const void* const bytes = sqlite3_column_text(row, column);
    return {static_cast<const char*>(bytes), static_cast<std::size_t>(sqlite3_column_bytes(row, column))};
}

std::vector<Product> readAll(sqlite3* database) {
    sqlite3_stmt* row = nullptr;
    if (sqlite3_prepare_v2(database, "SELECT * FROM urunler ORDER BY rowid", -1, &row, nullptr) != SQLITE_OK)
        giveUp(sqlite3_errmsg(database));
    std::vector<Product> products;
    int result = sqlite3_step(row);
    for (; result == SQLITE_ROW; result = sqlite3_step(row)) {
        products.push_back({sqlite3_column_int64(row, 0), text(row, 1), text(row, 2),
                            sqlite3_column_double(row, 3), sqlite3_column_double(row, 4),
                            sqlite3_column_double(row, 5)});
    }
    if (result != SQLITE_DONE)
        giveUp(sqlite3_errmsg(database));
    sqlite3_finalize(row);
    return products;
}

}  // namespace

int main(int argc, char** argv) {
    const kovanix::bench::Figures figures(argc, argv);
    sqlite3* database = nullptr;
    const std::string file = "file://" + figures.option("folder") + "/kovanix.data?mode=rw";
    if (sqlite3_open_v2(file.c_str(), &database, SQLITE_OPEN_READWRITE | SQLITE_OPEN_URI, nullptr) !=
        SQLITE_OK)
        giveUp("can't open " + file);
    const std::unique_ptr<sqlite3, decltype(&sqlite3_close)> closing(database, &sqlite3_close);
    const int runs = std::stoi(figures.option("runs"));
    for (int i = 0; i < runs; ++i) {
        const auto start = std::chrono::steady_clock::now();
        const std::vector<Product> products = readAll(database);
        const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - start;
        if (products.empty())
            giveUp("no products in " + file);
        std::printf("%.4f\n", taken.count());
    }
}
