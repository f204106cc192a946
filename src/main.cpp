#include "entry.h"

int main(int argc, char** argv) {
    return kovanix::runTill(argc, argv);
}
