#pragma once

#include <Qt>

namespace kovanix {

/// Presses and releases a key, as though it had been typed into whatever has the focus when the running event
/// is over.
void sendKey(Qt::Key key);

}  // namespace kovanix
