#pragma once

namespace kovanix {

/// Makes pickers known to assistive tools: a field with a value that drops a panel. Once is enough; more does
/// no harm.
void installPickerAccessibility();

}  // namespace kovanix
