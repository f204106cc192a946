#pragma once

#include <cstdint>
#include <vector>

#include "database/rowbits.h"
#include "database/rowtable.h"

namespace kovanix {

/// The rows of a table in the ascending order of one column: what has no value first, then numbers, then
/// texts in Turkish alphabetical order with letter case ignored; equals in order of entry.
class RowOrder {
public:
    explicit RowOrder(const RowColumn& column);

    /// The rows in that order or, equals still in order of entry, in the descending one.
    std::vector<std::uint32_t> rows(bool descending) const;

private:
    RowBits m_groupStarts;  // the places whose row differs from the one ahead
    std::vector<std::uint32_t> m_rows;
};

}  // namespace kovanix
