// The till itself, ending as soon as it is ready for a password.

#include "entry.h"
#include "readymark.h"

using namespace Qt::StringLiterals;

int main(int argc, char** argv) {
    kovanix::bench::endWhenReady(u"sifre"_s);
    return kovanix::runTill(argc, argv);
}
