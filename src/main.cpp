#include "entry.h"
#include "runtime/process.h"

int main(int argc, char** argv) {
    kovanix::forbidCoreDumps();
    return kovanix::runTill(argc, argv);
}
