#pragma once

#include <QColor>

namespace kovanix {

/// What a colour is for. Screens, grids and drawn controls ask for a role and never name a colour of their own;
/// the sales screen's palettes are another matter.
enum class ColorRole {
    ground,  ///< a window's ground
    card,
    edge,  ///< the rim of a card, 1 px
    ink,
    mutedInk,      ///< painted hints, columns of row numbers
    stripLeft,     ///< the title strip runs from left …
    stripRight,    ///< … to right
    stripInk,
    stripNote,     ///< the count at the strip's right end
    stripRange,    ///< a range in words
    heading,       ///< a list's heading
    headingInk,
    sortedHeading,
    sortArrow,
    zebra,  ///< every second row
    rowLine,
    selection,
    selectionBar,  ///< at the left of the current row
    editedRow,     ///< the row that an open entry frame edits
    editedBar,
    filterStrip,
    filterCell,
    filterInForce,  ///< a cell that holds a text
    filterInk,
    filterHint,
    refusedInk,  ///< a filter text that could not be taken
    refusedRim,
    redWords,
    footer,
    footerTotal,
    field,
    fieldLine,
    fieldOff,    ///< a field that can't be used
    quietField,  ///< figures that can't be typed
    focus,
    honey,  ///< brand, edit mode, progress
    success,
    danger,  ///< words of danger
    windowRim,
    disabledTop,
    disabledBottom,
    disabledInk,
};

enum class Tone { light, dark };

/// The colour of a role.
QColor roleColor(ColorRole role, Tone tone = Tone::light);

}  // namespace kovanix
