#pragma once

#include <QStringView>
#include <span>

namespace kovanix {

/// The on-screen keyboards by what stands on them: letters and digits, or digits alone.
enum class KeyboardKind { full, pad };

/// What a key does with the text that has been typed.
enum class KeyWork { type, blank, erase, clear, enter };

/// A key as it is stored.
struct KeyboardKey {
    int index;            ///< in the array vkCommand1
    QStringView caption;  ///< before the letter transcription
    int row;              ///< from the top, 0 is the first
    int share = 1;        ///< of the row's width, beside the row's other keys
};

/// The keys of a keyboard, row by row from left to right.
std::span<const KeyboardKey> keyboardKeys(KeyboardKind kind);

/// The heights of a keyboard's rows, beside one another.
std::span<const int> keyboardRows(KeyboardKind kind);

/// What the key with that index does.
KeyWork keyWork(KeyboardKind kind, int index);

}  // namespace kovanix
