#pragma once

class QLineEdit;

namespace kovanix {

/// For fields that show a number or a name: where the text is wider than the field its letters get smaller,
/// so that nothing of it is out of sight, down to the smallest that can be read at arm's length. A font that
/// the field is given later is the one that they are taken from.
void keepWhole(QLineEdit& field);

}  // namespace kovanix
