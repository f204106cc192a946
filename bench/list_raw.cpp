// Reading the product list through the engine's C interface into plain structs: what the till's own reading
// is measured against. Writes the milliseconds of each read, a line each.

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "figures.h"
#include "rawshop.h"

namespace {

using namespace kovanix::bench;

struct Product {
    std::int64_t number = 0;
    std::string barcode;
    std::string name;
    double purchase = 0;
    double price = 0;
    double stock = 0;
};

std::vector<Product> readAll(sqlite3* database) {
    std::vector<Product> products;
    takeRawRows(database, "SELECT * FROM urunler ORDER BY rowid", [&products](sqlite3_stmt* row) {
        products.push_back({sqlite3_column_int64(row, 0), std::string(rawText(row, 1)),
                            std::string(rawText(row, 2)), sqlite3_column_double(row, 3),
                            sqlite3_column_double(row, 4), sqlite3_column_double(row, 5)});
    });
    return products;
}

}  // namespace

int main(int argc, char** argv) {
    const Figures figures(argc, argv);
    const RawShop shop = openRawShop(figures);
    const int runs = std::stoi(figures.option("runs"));
    for (int i = 0; i < runs; ++i) {
        const auto start = std::chrono::steady_clock::now();
        const std::vector<Product> products = readAll(shop.get());
        const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - start;
        if (products.empty())
            giveUp("no products");
        std::printf("%.4f\n", taken.count());
    }
}
