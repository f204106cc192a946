// Prints the UTF-8 text of its standard input as one job. Status 3 and the error's words when that fails.

#include <QApplication>
#include <QFile>
#include <cstdio>

#include "printing/printer.h"
#include "runtime/runtimeerror.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QApplication::setApplicationName(u"Kovanix"_s);
    QFile input;
    if (!input.open(stdin, QIODevice::ReadOnly))
        return 2;
    Printer printer;
    printer.print(QString::fromUtf8(input.readAll()));
    try {
        printer.endDocument();
    } catch (const RuntimeError& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 3;
    }
    return 0;
}
