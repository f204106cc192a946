// Reading the products through the engine's C interface and writing them as the till's export does, byte for
// byte: what that export is measured against. Takes what stands around the rows from a file of the till's,
// and writes the milliseconds.

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>

#include "figures.h"
#include "rawshop.h"

namespace {

using namespace kovanix::bench;

const std::string beforeRows = "<tbody>\n";
const std::string behindRows = "</tbody>\n";

/// What stands ahead of the rows and behind them.
struct Around {
    std::string head;
    std::string foot;
};

Around aroundTheRows(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::string begin(4096, '\0');
    file.read(begin.data(), static_cast<std::streamsize>(begin.size()));
    begin.resize(static_cast<std::size_t>(file.gcount()));
    file.clear();
    file.seekg(0, std::ios::end);
    const std::streamoff size = file.tellg();
    file.seekg(size > 256 ? size - 256 : 0);
    std::stringstream end;
    end << file.rdbuf();
    const std::size_t rows = begin.find(beforeRows);
    const std::size_t foot = end.str().find(behindRows);
    if (rows == std::string::npos || foot == std::string::npos)
        giveUp("no table in " + path);
    return {begin.substr(0, rows + beforeRows.size()), end.str().substr(foot)};
}

/// What HTML writes for a letter; nothing where that is the letter itself.
const char* entity(char letter) {
    switch (letter) {
        case '&':
            return "&amp;";
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        case '"':
            return "&quot;";
        default:
            return nullptr;
    }
}

void writeText(std::FILE* file, sqlite3_stmt* row, int column) {
    std::fputs("<td class=\"t\" sdnum=\"1055;0;@\">", file);
    const std::string_view text = rawText(row, column);
    const char* begin = text.data();
    const char* const end = begin + text.size();
    for (const char* letter = begin; letter != end; ++letter) {
        if (const char* const written = entity(*letter)) {
            std::fwrite(begin, 1, static_cast<std::size_t>(letter - begin), file);
            std::fputs(written, file);
            begin = letter + 1;
        }
    }
    std::fwrite(begin, 1, static_cast<std::size_t>(end - begin), file);
    std::fputs("</td>", file);
}

void writeNumber(std::FILE* file, sqlite3_stmt* row, int column) {
    char number[32];
    std::snprintf(number, sizeof number, "%.15g", sqlite3_column_double(row, column));
    if (char* const point = std::strchr(number, '.'))
        *point = ',';
    std::fprintf(file, "<td class=\"n\" sdnum=\"1055;\">%s</td>", number);
}

void writeAll(sqlite3* database, const Around& around, const std::string& path) {
    const std::string unfinished = path + ".new";
    std::FILE* const file = std::fopen(unfinished.c_str(), "wb");
    if (!file)
        giveUp("can't begin with " + path);
    std::fputs(around.head.c_str(), file);
    const char* const products = "SELECT no, barkod, urun, alis, satis, stok FROM urunler ORDER BY rowid";
    takeRawRows(database, products, [file](sqlite3_stmt* row) {
        std::fputs("<tr>", file);
        for (int column = 0; column < 3; ++column)
            writeText(file, row, column);
        for (int column = 3; column < 6; ++column)
            writeNumber(file, row, column);
        std::fputs("</tr>\n", file);
    });
    std::fputs(around.foot.c_str(), file);
    // The till's file is whole and safe when its export is over, too.
    if (std::fflush(file) != 0 || fsync(fileno(file)) != 0 || std::fclose(file) != 0 ||
        std::rename(unfinished.c_str(), path.c_str()) != 0)
        giveUp("can't write " + path);
}

}  // namespace

int main(int argc, char** argv) {
    const Figures figures(argc, argv);
    const RawShop shop = openRawShop(figures);
    const Around around = aroundTheRows(figures.option("like"));
    const auto start = std::chrono::steady_clock::now();
    writeAll(shop.get(), around, figures.option("output"));
    const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - start;
    std::printf("%.4f\n", taken.count());
}
