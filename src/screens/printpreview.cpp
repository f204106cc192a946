#include "screens/printpreview.h"

namespace kovanix {

void printPreview(TDBGrid& /*grid*/, Screen& /*opener*/) {}

}  // namespace kovanix
