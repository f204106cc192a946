#pragma once

#include <QColor>
#include <QStringView>

class QWidget;

namespace kovanix {

/// What a colour is for. Screens, grids and drawn controls ask for a role and never name a colour of their
/// own; the sales screen's palettes are another matter.
enum class ColorRole {
    ground,  ///< a window's ground
    card,
    edge,  ///< the rim of a card, 1 px
    ink,
    mutedInk,    ///< painted hints, columns of row numbers
    stripLeft,   ///< the title strip runs from left …
    stripRight,  ///< … to right
    stripInk,
    stripNote,   ///< the count at the strip's right end
    stripRange,  ///< a range in words
    heading,     ///< a list's heading
    headingInk,
    sortedHeading,
    sortArrow,
    zebra,  ///< every second row
    rowLine,
    selection,
    selectionBar,  ///< at the left of the current row
    editedRow,     ///< the row that an open entry frame edits
    editedBar,
    addStripLeft,   ///< the strip of an entry frame in which a record is added, from left …
    addStripRight,  ///< … to right
    addRim,
    editStripLeft,  ///< the same where one is changed
    editStripRight,
    editStripInk,
    editRim,
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
    owed,    ///< rim and mark of an amount that is still owed, white ink
    windowRim,
    disabledTop,
    disabledBottom,
    disabledInk,
    previewGround,   ///< around the page of a print preview
    backdropTop,     ///< the dark ground behind the login, from top …
    backdropBottom,  ///< … to bottom
};

enum class Tone { light, dark };

/// The colour of a role.
QColor roleColor(ColorRole role, Tone tone = Tone::light);

/// What a button does, as its face tells it.
enum class FaceRole {
    none,    ///< the button's own colours
    navy,    ///< an ordinary command
    accent,  ///< the one that goes on
    store,   ///< keeps what was entered (green)
    danger,  ///< takes away
    slate,   ///< leaves
    light,   ///< a key, another answer
    key2,    ///< the key that takes a character back
    toggle,  ///< a switch: slate while off, accent while on
};

/// A face's colours, from top to bottom; white or dark ink stands out on all of it, pressed or not.
struct FaceColors {
    QColor top;
    QColor bottom;
    QColor pressedTop;
    QColor pressedBottom;
    QColor rim;
    QColor ink;
};

/// The colours of a face; FaceRole::none has none. On a dark page the rims are lighter and the light face is
/// dark; all other faces stay.
FaceColors faceColors(FaceRole role, Tone tone = Tone::light);

/// What a frame is for.
enum class FrameRole {
    none,      ///< the frame's own colours
    card,      ///< a card on the window's ground, its title in a strip
    alert,     ///< a card that tells of something gone wrong
    page,      ///< the window's ground, to its edges, with a title strip as high as a touch
    backdrop,  ///< a dark ground that fills its place to the edges
    adds,      ///< a card in which a record is added
    edits,     ///< a card in which a record is changed
    ring,      ///< the rim of what it holds: its own rim has its ground's colour
    window,    ///< a small window, to its edges: a card with a title strip as high as a touch
};

/// Gives every control below a screen the font size, the weight and the text margins of the role that its
/// dynamic property "textRole" names. Called once, behind setupUi: sizes are for the design size, and a
/// resizing container takes them over when it first meets the control.
///
/// The roles are the names in the table of look.cpp; any other one ends the program, as a slip in a form.
void applyTextRoles(QWidget& screen);

}  // namespace kovanix
