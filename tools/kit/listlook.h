#pragma once

class QFont;
class QHeaderView;
class QModelIndex;
class QPainter;
class QStyleOptionViewItem;

namespace kovanix {

/// What a row leaves free at both sides of a cell's text, at the design size.
inline constexpr int cellPadding = 8;

/// Paints the ground of a cell as the till's lists have it: every second row on another one, a line below,
/// and in the chosen row its colour, with a bar at the left of the first column.
void paintCellGround(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index);

/// What a heading is written in, in the list's family.
QFont headingFont(const QFont& list, double scale);

/// Gives a heading of the toolkit's the till's colours and letters. @param height  in pixels
void dressHeading(QHeaderView& heading, double scale, int height);

}  // namespace kovanix
