#pragma once

#include <QString>

class QLineEdit;

namespace kovanix {

// What a text field makes of what its user has just edited, before anyone is told of the change. Texts that
// the program sets stand as they are.

/// Line ends and tabs that are pasted become a blank each, and none at the ends of the text. A blank that is
/// typed there stays.
void keepOnOneLine(QLineEdit& field);

/// For fields that hold a number: where typing, deleting or cutting leaves the dots of "1.200,00" out of
/// threes, those that group nothing any more go, so that the number that is shown is the one that is read. A
/// pasted text stays as it is, and there is no way back by undoing.
void keepGroups(QLineEdit& field);

/// The text of a number field behind which a key writes its caption, groups kept as above.
QString withKey(const QString& text, const QString& caption);

}  // namespace kovanix
