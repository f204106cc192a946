#pragma once

#include <QRect>
#include <algorithm>
#include <cmath>
#include <vector>

#include "widgets/look.h"

namespace kovanix {

/// Where the columns of a list grid stand, how large its parts are and which colours they take: what the rows
/// and the bands above and below them share.
struct GridLayout {
    static constexpr int smallestText = 11;
    static constexpr int smallestTarget = 40;

    double scale = 1.0;
    Tone tone = Tone::light;  ///< of the page that the grid stands on
    /// The columns' left edges in the rows, and the right edge of the last.
    std::vector<int> edges{0};

    QColor color(ColorRole role) const { return roleColor(role, tone); }

    int columns() const { return static_cast<int>(edges.size()) - 1; }

    /// A length at design size, scaled.
    int scaled(int length) const { return static_cast<int>(std::lround(length * scale)); }
    int text(int pixels) const { return std::max(smallestText, scaled(pixels)); }

    /// What a finger has to hit: the height of heading and filter bar, and the least of a row.
    int target() const { return std::max(smallestTarget, scaled(44)); }
    int footer() const { return scaled(68) + 2; }

    // More columns are shown in smaller letters.
    bool isDense() const { return columns() >= 8; }
    int rowText() const { return text(columns() <= 5 ? 18 : isDense() ? 15 : 16); }
    int headingText() const { return text(isDense() ? 13 : 14); }
    int filterText() const { return text(16); }

    QRect cell(int column, int top, int height) const {
        const int left = edges[static_cast<size_t>(column)];
        return {left, top, edges[static_cast<size_t>(column) + 1] - left, height};
    }
    /// The room of a cell's text.
    QRect textRoom(int column, const QRect& cell) const {
        const int padding = scaled(isDense() ? 6 : 8);
        return cell.adjusted(column == 0 ? scaled(10) : padding, 0, -padding, 0);
    }
    /// The same for what stands at the left: the next column's own padding keeps them apart.
    QRect leftTextRoom(int column, const QRect& cell) const {
        return textRoom(column, cell).adjusted(0, 0, scaled(isDense() ? 4 : 6), 0);
    }
    /// The column at a place of the rows; -1 outside of all.
    int columnAt(int x) const {
        const auto next = std::upper_bound(edges.begin(), edges.end(), x);
        return next == edges.begin() || next == edges.end() ? -1 : static_cast<int>(next - edges.begin()) - 1;
    }
};

}  // namespace kovanix
