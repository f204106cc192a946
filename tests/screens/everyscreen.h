#pragma once

#include <QList>

#include "screencontract.h"

namespace kovanix {

/// A row for every screen that there is.
QList<ScreenRow> screens();

}  // namespace kovanix
