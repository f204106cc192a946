#pragma once

#include <QString>

namespace kovanix {

/// 1 for a manager, 0 for every other role; set at login for the whole session.
inline int girisyetki = 0;

}  // namespace kovanix
