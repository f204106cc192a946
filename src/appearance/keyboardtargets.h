#pragma once

#include <QString>
#include <QStringView>
#include <span>

#include "appearance/keyboardkeys.h"

class QWidget;

namespace kovanix {

/// Where a keyboard's text goes, by the keyboard's target code.
struct KeyboardTarget {
    KeyboardKind keyboard;
    QStringView code;          ///< as the keyboard's hidden box `nereye` holds it
    QStringView form = {};     ///< the screen's name; empty: nothing is written, the keyboard just goes
    QStringView control = {};  ///< the text box
    QStringView next = {};     ///< what has the focus then, on the same screen; empty: the text box itself
    QStringView label = {};    ///< what is being filled in, for the user
    bool secret = false;       ///< a password
};

/// All targets.
std::span<const KeyboardTarget> keyboardTargets();

/// The target of a code; null where there is none.
const KeyboardTarget* keyboardTarget(KeyboardKind keyboard, QStringView code);

/// Writes a text into a target's box. Its screen is loaded where it isn't, and not shown; what doesn't exist
/// is passed over.
/// @return the control that is to have the focus; null where there is none, or it can't be seen
QWidget* handOver(const KeyboardTarget& target, const QString& text);

/// The box of a target where that can be seen, else null. Loads nothing.
QWidget* visibleBox(const KeyboardTarget& target);

}  // namespace kovanix
