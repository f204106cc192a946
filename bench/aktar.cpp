// kovanix-aktar takes 100,000 rows into a shop of 100,000 products, half of them new and half with another
// price, from a text file and from a workbook: from the start of the program to its end, and how long a till
// that stores all the while waits for it.

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <vector>

#include "aktar/newfile.h"
#include "aktar/sheetwriter.h"
#include "child.h"
#include "data/baglanmamodulu.h"
#include "database/connection.h"
#include "database/rowwalk.h"
#include "figures.h"

namespace {

using namespace kovanix;
using namespace kovanix::bench;
using namespace Qt::StringLiterals;

constexpr int rows = 100'000;

double milliseconds(const QElapsedTimer& timer) {
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

/// Every other product of the shop with another price, and as many new ones.
void writeRows(const QString& shop, aktar::SheetWriter& writer) {
    Connection connection;
    connection.open(baglantimetniyap(shop));
    int count = 0;
    const auto write = [&](std::string_view barcode, std::string_view name, double price) {
        writer.addRow({{barcode, {}}, {name, {}}, {{}, price - 1}, {{}, price}, {{}, 5.0}});
        ++count;
    };
    RowWalk(connection, u"select barkod, urun, satis from urunler"_s).forEach([&](const RowWalk::Row& row) {
        if (count < rows / 2)
            write(row.text(0), row.text(1), row.number(2).value_or(0) + 1);
    });
    while (count < rows)
        write("29" + std::to_string(10'000'000'000 + count * 7919L), "YENİ ÜRÜN " + std::to_string(count),
              12.75);
    writer.finish();
}

struct Import {
    double taken = 0;
    double longestWait = 0;
};

/// Imports into a copy of the shop, by itself or beside a till.
Import import(const QString& shop, const QString& file, bool besideTill) {
    const QTemporaryDir folder;
    const QString copy = folder.filePath(u"kovanix.data"_s);
    if (!QFile::copy(shop, copy))
        giveUp("the shop can't be copied");
    Import import;
    Connection till;
    if (besideTill)
        till.open(baglantimetniyap(copy));
    QProcess program;
    program.setStandardOutputFile(QProcess::nullDevice());
    QElapsedTimer timer;
    timer.start();
    program.start(QString::fromStdString(neighbour("kovanix-aktar")),
                  {u"--folder"_s, folder.path(), u"--ice"_s, u"urunler"_s, u"--dosya"_s, file});
    constexpr int betweenSales = 10;
    while (besideTill && !program.waitForFinished(betweenSales) && program.state() != QProcess::NotRunning) {
        QElapsedTimer wait;
        wait.start();
        till.execute(u"insert into satislar (barkod, adet) values ('1', 1)"_s);
        import.longestWait = std::max(import.longestWait, milliseconds(wait));
    }
    constexpr int longest = 120'000;
    if (program.state() != QProcess::NotRunning && !program.waitForFinished(longest))
        giveUp("the import doesn't end");
    import.taken = milliseconds(timer);
    if (program.exitCode() != 0)
        giveUp("the import fails: " + program.readAllStandardError().toStdString());
    return import;
}

void measure(Figures& figures, const QString& shop, const QString& file, const std::string& from) {
    std::vector<double> taken;
    double longestWait = 0;
    const int rounds = figures.quick() ? 1 : 5;
    for (int round = 0; round < rounds; ++round) {
        taken.push_back(import(shop, file, false).taken);
        longestWait = std::max(longestWait, import(shop, file, true).longestWait);
    }
    constexpr double limit = 5000;
    constexpr double patience = 4000;
    figures.atMost(limit, "Import of 100,000 rows from " + from + " into 100,000 products",
                   percentile(taken, 0.5), "ms");
    figures.atMost(patience, "Import from " + from + ": longest wait of a till that stores", longestWait,
                   "ms");
}

}  // namespace

int main(int argc, char** argv) {
    Figures figures(argc, argv);
    const QCoreApplication application(argc, argv);
    const QString shop = QString::fromStdString(figures.option("products")) + u"/kovanix.data"_s;
    const QTemporaryDir folder;
    const QString text = folder.filePath(u"urunler.csv"_s);
    const QString workbook = folder.filePath(u"urunler.xlsx"_s);
    const std::vector<aktar::Field>& fields = aktar::fieldsOf(aktar::Kind::products);
    {
        aktar::NewFile file(text, false);
        writeRows(shop, *aktar::makeCsvWriter(file, fields, false));
        file.commit();
    }
    {
        aktar::NewFile file(workbook, false);
        writeRows(shop, *aktar::makeXlsxWriter(file, fields, u"A"_s));
        file.commit();
    }
    measure(figures, shop, text, "a text file");
    measure(figures, shop, workbook, "a workbook");
    return figures.status();
}
