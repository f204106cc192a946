// The product list to a file, against a loop in C that reads the products and writes the same bytes.

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <sstream>

#include "child.h"
#include "data/baglanmamodulu.h"
#include "figures.h"
#include "runtime/process.h"
#include "runtime/runtimeerror.h"
#include "widgets/adodc.h"
#include "widgets/tdbgrid.h"

namespace {

using namespace kovanix;
using namespace kovanix::bench;
using namespace Qt::StringLiterals;

double milliseconds(const QElapsedTimer& timer) {
    constexpr double nanosecondsAMillisecond = 1e6;
    return static_cast<double>(timer.nsecsElapsed()) / nanosecondsAMillisecond;
}

bool sameBytes(const QString& one, const QString& other) {
    QFile first(one);
    QFile second(other);
    if (!first.open(QIODevice::ReadOnly) || !second.open(QIODevice::ReadOnly) ||
        first.size() != second.size())
        return false;
    constexpr qint64 chunk = 1 << 20;
    while (!first.atEnd()) {
        if (first.read(chunk) != second.read(chunk))
            return false;
    }
    return true;
}

/// The milliseconds of the loop in C; it takes what stands around the rows from the till's file.
double rawExport(const std::string& folder, const QString& till, const QString& written) {
    const std::string output = outputOf({neighbour("bench_export_raw"), "--folder", folder, "--like",
                                         till.toStdString(), "--output", written.toStdString()});
    double taken = 0;
    if (!(std::istringstream(output) >> taken))
        giveUp("the loop in C tells no time");
    return taken;
}

void measure(Figures& figures, const std::string& folder) {
    Adodc source;
    source.setConnectionString(baglantimetniyap(QString::fromStdString(folder + "/kovanix.data")));
    source.setCommandType(Adodc::CommandType::table);
    source.setRecordSource(u"urunler"_s);
    TDBGrid grid;
    for (const QString& field : {u"no"_s, u"barkod"_s, u"urun"_s, u"alis"_s, u"satis"_s, u"stok"_s})
        grid.addColumn(field, field);
    grid.setDataSource(source);
    source.refresh();

    const QTemporaryDir target(QString::fromStdString(folder) + u"/export-XXXXXX"_s);
    const QString till = target.filePath(u"till.xls"_s);
    const QString raw = target.filePath(u"raw.xls"_s);
    std::vector<double> exports;
    std::vector<double> loops;
    std::vector<double> ratios;
    const int rounds = figures.quick() ? 3 : 7;
    for (int i = 0; i < rounds; ++i) {
        QElapsedTimer timer;
        timer.start();
        grid.exportToFile(till, false);
        exports.push_back(milliseconds(timer));
        loops.push_back(rawExport(folder, till, raw));
        ratios.push_back(exports.back() / loops.back());
        if (!sameBytes(till, raw))
            giveUp("the two exports differ");
    }
    const std::string name = QString(u", %L1 products"_s).arg(source.recordset().totalCount()).toStdString();
    figures.tell("Exporting the product list" + name, percentile(exports, 0.5), "ms");
    figures.tell("A loop in C that reads it and writes the same bytes" + name, percentile(loops, 0.5), "ms");
    figures.atMost(3, "Exporting, till against C interface" + name, percentile(ratios, 0.5), "×");
}

}  // namespace

int main(int argc, char** argv) {
    Figures figures(argc, argv);
    hashInNarrowRegisters();
    int none = 1;
    const QApplication application(none, argv);
    try {
        for (const char* shop : {"medium", "large"})
            measure(figures, figures.option(shop));
    } catch (const RuntimeError& error) {
        giveUp(error.what());
    }
    return figures.status();
}
