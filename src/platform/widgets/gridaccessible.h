#pragma once

namespace kovanix {

/// Makes list grids and the ticket known to assistive tools: a table of headings and cells, in a list with
/// headings that can be pressed, filter cells and footers. Once is enough; more does no harm.
void installGridAccessibility();

}  // namespace kovanix
