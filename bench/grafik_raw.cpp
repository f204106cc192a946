// Reads what the charts are made of through the engine's C interface and does nothing with it: what the
// charts are measured against. Built once for plain files and once for those with a password. Writes the
// milliseconds from the opening to the last line, and how many there were.

#include <sqlite3.h>

#include <chrono>
#include <cstdio>
#include <string>

#include "figures.h"
#include "rawshop.h"

int main(int argc, char** argv) {
    using namespace kovanix::bench;
    const Figures figures(argc, argv);
    const std::string password = figures.option("password", "");
    const auto start = std::chrono::steady_clock::now();
    const RawShop shop = openRawShop(figures);
#ifdef SQLITE_HAS_CODEC
    if (sqlite3_key(shop.get(), password.data(), static_cast<int>(password.size())) != SQLITE_OK)
        giveUp("no key");
#endif
    long lines = 0;
    double sum = 0;
    std::size_t letters = 0;
    takeRawRows(shop.get(), "SELECT tarih, barkod, urun, adet + 0, toplam + 0, kar + 0 FROM satislar",
                [&](sqlite3_stmt* row) {
                    for (int column = 0; column < 3; ++column) {
                        letters += rawText(row, column).size();
                        sum += sqlite3_column_double(row, column + 3);
                    }
                    ++lines;
                });
    const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - start;
    if (sum == 0 || letters == 0)
        giveUp("nothing was sold");
    std::printf("%.3f %ld\n", taken.count(), lines);
}
