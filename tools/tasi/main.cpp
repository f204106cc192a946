// Moves a shop's database file to a PostgreSQL server and back.

#include <QCoreApplication>
#include <QTextStream>

#include "commandline.h"
#include "runtime/process.h"
#include "stop.h"

int main(int argc, char* argv[]) {
    kovanix::hashInNarrowRegisters();  // binding a row's values hashes a name for each of them
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("kovanix-tasi"));
    kovanix::forbidCoreDumps();  // passwords lie in this process's memory
    kovanix::tasi::heedRequestsToStop();
    QTextStream out(stdout);
    QTextStream errors(stderr);
    return static_cast<int>(kovanix::tasi::runCommandLine(QCoreApplication::arguments(), out, errors));
}
