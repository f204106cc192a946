// The till itself, ending as soon as it is ready for a password.

#include "entry.h"
#include "readymark.h"

int main(int argc, char** argv) {
    kovanix::bench::endWhenReady(QStringLiteral("sifre"));
    return kovanix::runTill(argc, argv);
}
