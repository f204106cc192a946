#pragma once

#include <sqlite3.h>

#include <memory>
#include <string>
#include <string_view>

#include "figures.h"

namespace kovanix::bench {

/// A shop's file, opened through the engine's own interface.
using RawShop = std::unique_ptr<sqlite3, decltype(&sqlite3_close)>;

/// Opens the file in the folder that the program was given, or gives up.
inline RawShop openRawShop(const Figures& figures) {
    sqlite3* database = nullptr;
    const std::string file = "file://" + figures.option("folder") + "/kovanix.data?mode=rw";
    const int result =
        sqlite3_open_v2(file.c_str(), &database, SQLITE_OPEN_READWRITE | SQLITE_OPEN_URI, nullptr);
    RawShop shop(database, &sqlite3_close);
    if (result != SQLITE_OK)
        giveUp("can't open " + file);
    return shop;
}

/// A text of the current row; its bytes are gone with the next row.
inline std::string_view rawText(sqlite3_stmt* row, int column) {
    const void* const bytes = sqlite3_column_text(row, column);
    return {static_cast<const char*>(bytes), static_cast<std::size_t>(sqlite3_column_bytes(row, column))};
}

/// Takes every row of a select, or gives up.
template <class Take>
void takeRawRows(sqlite3* database, const char* sql, Take&& take) {
    sqlite3_stmt* row = nullptr;
    if (sqlite3_prepare_v2(database, sql, -1, &row, nullptr) != SQLITE_OK)
        giveUp(sqlite3_errmsg(database));
    int result = sqlite3_step(row);
    for (; result == SQLITE_ROW; result = sqlite3_step(row))
        take(row);
    if (result != SQLITE_DONE)
        giveUp(sqlite3_errmsg(database));
    sqlite3_finalize(row);
}

}  // namespace kovanix::bench
