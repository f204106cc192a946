#include "widgets/look.h"

#include <array>

namespace kovanix {

namespace {

struct RoleColors {
    ColorRole role;
    QRgb light;
    QRgb dark;
};

constexpr std::array table{
    RoleColors{ColorRole::ground, 0xEEF2F7, 0x2A2E34},
    RoleColors{ColorRole::card, 0xFFFFFF, 0x343940},
    RoleColors{ColorRole::edge, 0xC3CEDB, 0x5B6470},
    RoleColors{ColorRole::ink, 0x1B2636, 0xF2F5F8},
    RoleColors{ColorRole::mutedInk, 0x5A6879, 0xB4BEC9},
    RoleColors{ColorRole::stripLeft, 0x3E5675, 0x2C405B},
    RoleColors{ColorRole::stripRight, 0x2C405B, 0x1B2A3D},
    RoleColors{ColorRole::stripInk, 0xFFFFFF, 0xFFFFFF},
    RoleColors{ColorRole::stripNote, 0xE4EBF4, 0xE4EBF4},
    RoleColors{ColorRole::stripRange, 0xFFD27A, 0xFFD27A},
    RoleColors{ColorRole::heading, 0x1F2D3D, 0x14181D},
    RoleColors{ColorRole::headingInk, 0xFFFFFF, 0xFFFFFF},
    RoleColors{ColorRole::sortedHeading, 0x33475F, 0x2C3947},
    RoleColors{ColorRole::sortArrow, 0xF2A51F, 0xF2A51F},
    RoleColors{ColorRole::zebra, 0xF5F8FB, 0x3B4149},
    RoleColors{ColorRole::rowLine, 0xE3E8EE, 0x4A515B},
    RoleColors{ColorRole::selection, 0xD3E4FD, 0x1E4A86},
    RoleColors{ColorRole::selectionBar, 0x1F6FEB, 0x5B9DFF},
    RoleColors{ColorRole::editedRow, 0xFBE3B5, 0x5B4413},
    RoleColors{ColorRole::editedBar, 0xF2A51F, 0xF2A51F},
    RoleColors{ColorRole::filterStrip, 0xC62828, 0x8E1F1F},
    RoleColors{ColorRole::filterCell, 0xA31F1F, 0x6E1515},
    RoleColors{ColorRole::filterInForce, 0x7F1212, 0x4F0D0D},
    RoleColors{ColorRole::filterInk, 0xFFFFFF, 0xFFFFFF},
    RoleColors{ColorRole::filterHint, 0xFFDADA, 0xFFDADA},
    RoleColors{ColorRole::refusedInk, 0xFFD98A, 0xFFD98A},
    RoleColors{ColorRole::refusedRim, 0xFFC24B, 0xFFC24B},
    RoleColors{ColorRole::redWords, 0xA31F1F, 0xFF9A9A},
    RoleColors{ColorRole::footer, 0xE4EBF4, 0x22262B},
    RoleColors{ColorRole::footerTotal, 0x14499F, 0x8FBCFF},
    RoleColors{ColorRole::field, 0xFFFFFF, 0x22262B},
    RoleColors{ColorRole::fieldLine, 0x7C8A9B, 0x8994A1},
    RoleColors{ColorRole::fieldOff, 0xE6EBF1, 0x3B4149},
    RoleColors{ColorRole::quietField, 0xF5F8FB, 0x3B4149},
    RoleColors{ColorRole::focus, 0x125FE0, 0x5B9DFF},
    RoleColors{ColorRole::honey, 0xF2A51F, 0xF2A51F},
    RoleColors{ColorRole::success, 0x1B673A, 0x7BD49B},
    RoleColors{ColorRole::danger, 0xA92E2E, 0xFF9A9A},
    RoleColors{ColorRole::windowRim, 0x1F2D3D, 0x5B6470},
    RoleColors{ColorRole::disabledTop, 0xE9EDF2, 0x454B53},
    RoleColors{ColorRole::disabledBottom, 0xDFE4EB, 0x3E444B},
    RoleColors{ColorRole::disabledInk, 0x66727F, 0x66727F},
};

constexpr bool inOrder() {
    for (size_t i = 0; i < table.size(); ++i) {
        if (table[i].role != static_cast<ColorRole>(i))
            return false;
    }
    return true;
}
static_assert(inOrder() && table.size() == static_cast<size_t>(ColorRole::disabledInk) + 1,
              "a row for each role, in the roles' order");

}  // namespace

QColor roleColor(ColorRole role, Tone tone) {
    const RoleColors& row = table[static_cast<size_t>(role)];
    return QColor::fromRgb(tone == Tone::light ? row.light : row.dark);
}

}  // namespace kovanix
