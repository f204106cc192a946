#pragma once

namespace kovanix {

/// Makes list grids known to assistive tools: a table of headings that can be pressed, cells, the filter
/// cells and the footers. Once is enough; more does no harm.
void installGridAccessibility();

}  // namespace kovanix
