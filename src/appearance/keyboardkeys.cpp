#include "appearance/keyboardkeys.h"

#include <array>

namespace kovanix {

namespace {

// The captions keep their letters as symbols: @ # ! % * } ~ become Ş ş İ Ğ Ö Ç Ü. That two keys of the
// letters say Ş and two Ö is as required.
constexpr std::array fullKeys{
    KeyboardKey{8, u"1", 0},           KeyboardKey{10, u"2", 0},          KeyboardKey{13, u"3", 0},
    KeyboardKey{2, u"4", 0},           KeyboardKey{7, u"5", 0},           KeyboardKey{12, u"6", 0},
    KeyboardKey{1, u"7", 0},           KeyboardKey{3, u"8", 0},           KeyboardKey{4, u"9", 0},
    KeyboardKey{11, u"0", 0},          KeyboardKey{14, u",", 0},          KeyboardKey{62, u".", 0},
    KeyboardKey{73, u"Q", 1},          KeyboardKey{72, u"W", 1},          KeyboardKey{71, u"E", 1},
    KeyboardKey{70, u"R", 1},          KeyboardKey{69, u"T", 1},          KeyboardKey{68, u"Y", 1},
    KeyboardKey{67, u"U", 1},          KeyboardKey{66, u"I", 1},          KeyboardKey{65, u"O", 1},
    KeyboardKey{64, u"P", 1},          KeyboardKey{43, u"%", 1},          KeyboardKey{5, u"/", 1},
    KeyboardKey{0, u"@", 2},           KeyboardKey{63, u"A", 2},          KeyboardKey{45, u"S", 2},
    KeyboardKey{46, u"D", 2},          KeyboardKey{47, u"F", 2},          KeyboardKey{48, u"G", 2},
    KeyboardKey{49, u"H", 2},          KeyboardKey{50, u"J", 2},          KeyboardKey{60, u"L", 2},
    KeyboardKey{59, u"K", 2},          KeyboardKey{42, u"@", 2},          KeyboardKey{41, u"!", 2},
    KeyboardKey{103, u"S!L", 3},       KeyboardKey{51, u"Z", 3},          KeyboardKey{52, u"X", 3},
    KeyboardKey{53, u"C", 3},          KeyboardKey{54, u"V", 3},          KeyboardKey{55, u"B", 3},
    KeyboardKey{56, u"N", 3},          KeyboardKey{57, u"M", 3},          KeyboardKey{58, u"*", 3},
    KeyboardKey{61, u"}", 3},          KeyboardKey{40, u"~", 3},          KeyboardKey{6, u"*", 3},
    KeyboardKey{102, u"<-----", 4, 2}, KeyboardKey{101, u"BO#LUK", 4, 3}, KeyboardKey{100, u"ENTER", 4, 2},
};
constexpr std::array fullRows{77, 100, 100, 100, 100};

constexpr std::array padKeys{
    KeyboardKey{8, u"1", 0},    KeyboardKey{10, u"2", 0},     KeyboardKey{13, u"3", 0},
    KeyboardKey{2, u"4", 1},    KeyboardKey{7, u"5", 1},      KeyboardKey{12, u"6", 1},
    KeyboardKey{1, u"7", 2},    KeyboardKey{3, u"8", 2},      KeyboardKey{4, u"9", 2},
    KeyboardKey{18, u"S!L", 3}, KeyboardKey{11, u"0", 3},     KeyboardKey{14, u",", 3},
    KeyboardKey{0, u"00", 4},   KeyboardKey{39, u"ENTER", 4}, KeyboardKey{19, u"<-----", 4},
};
constexpr std::array padRows{1, 1, 1, 1, 1};

}  // namespace

std::span<const KeyboardKey> keyboardKeys(KeyboardKind kind) {
    if (kind == KeyboardKind::full)
        return fullKeys;
    return padKeys;
}

std::span<const int> keyboardRows(KeyboardKind kind) {
    if (kind == KeyboardKind::full)
        return fullRows;
    return padRows;
}

KeyWork keyWork(KeyboardKind kind, int index) {
    if (kind == KeyboardKind::full) {
        switch (index) {
            case 100:
                return KeyWork::enter;
            case 101:
                return KeyWork::blank;
            case 102:
                return KeyWork::erase;
            case 103:
                return KeyWork::clear;
            default:
                return KeyWork::type;
        }
    }
    switch (index) {
        case 18:
            return KeyWork::clear;
        case 19:
            return KeyWork::erase;
        case 39:
            return KeyWork::enter;
        case 44:
            return KeyWork::blank;  // the pad has no such key
        default:
            return KeyWork::type;
    }
}

}  // namespace kovanix
