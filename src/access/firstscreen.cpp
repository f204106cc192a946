#include "access/firstscreen.h"

#include "runtime/screenregistry.h"
#include "sales/satisekrani.h"

namespace kovanix {

void showFirstScreen() {
    screen<satisekrani>().showMaximized();
}

}  // namespace kovanix
