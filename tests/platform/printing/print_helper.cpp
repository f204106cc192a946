// Prints the UTF-8 text of its standard input as one job; with the argument "pages" each line as a row of a
// printed grid. Status 3 and the error's words when that fails.

#include <QApplication>
#include <QFile>
#include <cstdio>

#include "printing/gridpages.h"
#include "printing/printer.h"
#include "printing/printjob.h"
#include "runtime/runtimeerror.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

void printAsRows(const QStringList& lines) {
    PrintTable table;
    table.columns = {{.heading = u"KALEM"_s, .width = 1, .number = false, .code = false}};
    table.rowCount = lines.size();
    table.text = [&lines](qsizetype row, std::size_t) { return lines[row]; };
    PrintInfo info;
    info.pageFooter = u"\\t\\tPage \\p of \\P"_s;
    info.repeatColumnHeaders = true;
    info.margins = {720, 720, 720, 720};
    printPages(GridPages(table, info, PrintJob::paper().size(QPageSize::Point)));
}

}  // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QApplication::setApplicationName(u"Kovanix"_s);
    QFile input;
    if (!input.open(stdin, QIODevice::ReadOnly))
        return 2;
    const QString text = QString::fromUtf8(input.readAll());
    Printer printer;
    printer.print(text);
    try {
        if (QApplication::arguments().contains(u"pages"_s))
            printAsRows(text.split(u'\n'));
        else
            printer.endDocument();
    } catch (const RuntimeError& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 3;
    }
    return 0;
}
