#pragma once

#include "values/fieldtext.h"
#include "widgets/keyfilter.h"

namespace kovanix {

/// A key-press stage that types capitals, i as İ and ı as I, and takes no line ends.
KeyFilter::KeyPress capitals();

}  // namespace kovanix
