// The statements that a sale of 20 lines takes, through the engine's C interface: what the till's own way is
// measured against. Same connections, same statements, each committed and synced by itself; writes a line for
// each sale: its milliseconds and its disk barriers.

#include <sqlite3.h>

#include <chrono>
#include <cstdio>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "diskbarriers.h"
#include "figures.h"

namespace {

using kovanix::bench::giveUp;

constexpr int lines = 20;
constexpr int warmUps = 3;
constexpr int busyTimeout = 5000;  // milliseconds

using Database = std::unique_ptr<sqlite3, decltype(&sqlite3_close)>;

struct Row {
    std::string barcode;
    std::string name;
    double price = 0;
};

template <class OnRow>
void run(sqlite3* database, const std::string& sql, OnRow&& onRow) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(database, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK)
        giveUp(sqlite3_errmsg(database));
    int result = sqlite3_step(statement);
    for (; result == SQLITE_ROW; result = sqlite3_step(statement))
        onRow(statement);
    if (result != SQLITE_DONE)
        giveUp(sqlite3_errmsg(database));
    sqlite3_finalize(statement);
}

void run(sqlite3* database, const std::string& sql) {
    run(database, sql, [](sqlite3_stmt*) {});
}

std::string text(sqlite3_stmt* statement, int column) {
    const unsigned char* const bytes = sqlite3_column_text(statement, column);
    return bytes ? std::string(reinterpret_cast<const char*>(bytes)) : std::string();
}

/// A statement's text with its values in it, quotes doubled.
template <class... Values>
std::string sql(const char* pattern, Values... values) {
    char* const made = sqlite3_mprintf(pattern, values...);
    std::string result = made;
    sqlite3_free(made);
    return result;
}

Database open(const std::string& file) {
    sqlite3* database = nullptr;
    const std::string uri = "file://" + file + "?mode=rw";
    if (sqlite3_open_v2(uri.c_str(), &database, SQLITE_OPEN_READWRITE | SQLITE_OPEN_URI, nullptr) !=
        SQLITE_OK)
        giveUp("can't open " + file);
    sqlite3_busy_timeout(database, busyTimeout);
    run(database, "PRAGMA journal_mode=WAL");
    run(database, "PRAGMA synchronous=FULL");
    return {database, &sqlite3_close};
}

std::vector<Row> drawTicket(sqlite3* database, std::mt19937& random) {
    int last = 0;
    run(database, "SELECT max(no) FROM urunler",
        [&last](sqlite3_stmt* row) { last = sqlite3_column_int(row, 0); });
    std::uniform_int_distribution<int> anyProduct(1, last);
    std::vector<Row> ticket;
    while (ticket.size() < lines) {
        run(database, sql("SELECT barkod, urun, satis FROM urunler WHERE no=%d", anyProduct(random)),
            [&ticket](sqlite3_stmt* row) {
                ticket.push_back({text(row, 0), text(row, 1), sqlite3_column_double(row, 2)});
            });
    }
    return ticket;
}

void store(sqlite3* products, sqlite3* sales, const std::vector<Row>& ticket) {
    for (const Row& row : ticket) {
        double purchase = 0;
        run(products, sql("SELECT alis FROM urunler WHERE barkod='%q' ORDER BY rowid", row.barcode.c_str()),
            [&purchase](sqlite3_stmt* found) { purchase = sqlite3_column_double(found, 0); });
        bool hasColumn = false;
        run(sales, "PRAGMA table_info(satislar)", [&hasColumn](sqlite3_stmt* column) {
            hasColumn = hasColumn || sqlite3_stricmp(text(column, 1).c_str(), "satis") == 0;
        });
        if (!hasColumn)
            giveUp("the column satis is missing");
        const double profit = row.price - purchase;
        run(sales,
            sql("INSERT INTO satislar (tarih,barkod,urun,adet,fiyat,alis,kar,toplam,satis) VALUES "
                "('2026-05-03 07:05:09','%q','%q',1,%.15g,%.15g,%.15g,%.15g,%.15g)",
                row.barcode.c_str(), row.name.c_str(), row.price, purchase, profit, row.price, profit));
    }
    for (const Row& row : ticket) {
        run(sales,
            sql("UPDATE urunler SET stok = CASE WHEN stok IS NULL THEN 0 ELSE stok END - 1 WHERE barkod='%q'",
                row.barcode.c_str()));
    }
}

}  // namespace

int main(int argc, char** argv) {
    const kovanix::bench::Figures figures(argc, argv);
    const std::string file = figures.option("folder") + "/kovanix.data";
    const Database products = open(file);
    // The till makes these when it opens a file that lacks them.
    run(products.get(), "CREATE INDEX IF NOT EXISTS kovanix_urunler_barkod ON urunler (barkod)");
    run(products.get(), "CREATE INDEX IF NOT EXISTS kovanix_satislar_tarih ON satislar (tarih)");
    const Database sales = open(file);
    kovanix::delayDiskBarriers(std::chrono::milliseconds(std::stoi(figures.option("sync-delay", "0"))));
    std::mt19937 random(1);
    const int wanted = warmUps + std::stoi(figures.option("sales"));
    for (int i = 0; i < wanted; ++i) {
        const std::vector<Row> ticket = drawTicket(products.get(), random);
        const long barriers = kovanix::diskBarriers();
        const auto start = std::chrono::steady_clock::now();
        store(products.get(), sales.get(), ticket);
        const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - start;
        if (i >= warmUps)
            std::printf("%.4f %ld\n", taken.count(), kovanix::diskBarriers() - barriers);
        run(sales.get(), "PRAGMA wal_checkpoint(PASSIVE)");  // where the till does it
    }
}
