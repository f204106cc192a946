#include "sales/totalfont.h"

#include <array>
#include <cstddef>
#include <span>

namespace kovanix {

namespace {

constexpr int sizeOnOtherScreens = 24;
constexpr std::array breakpoints{8, 9, 10, 11, 12, 14, 17, 20, 25};

// Slot 0, the size of a short total, is smaller than the ones behind it, as required.
constexpr std::array from1500{68, 120, 110, 100, 90, 80, 70, 60, 50};
constexpr std::array from1280{64, 100, 90, 80, 70, 60, 50, 40};
constexpr std::array from800{60, 80, 70, 60, 50, 40, 32, 22};
constexpr std::array at640{56, 80, 70, 60, 50, 40, 30, 20};

/// The size for a length: slot 0 up to the first breakpoint, then the first slot whose breakpoint isn't below
/// it. What lies past the end of a list takes its last slot.
int boyutsec(int length, std::span<const int> sizes) {
    if (length <= breakpoints.front())
        return sizes.front();
    for (std::size_t slot = 1; slot < sizes.size(); ++slot) {
        if (breakpoints.at(slot) >= length)
            return sizes[slot];
    }
    return sizes.back();
}

}  // namespace

int totalFontSize(int screenWidth, int length) {
    if (screenWidth >= 1500)
        return boyutsec(length, from1500);
    if (screenWidth >= 1280)
        return boyutsec(length, from1280);
    if (screenWidth >= 800)
        return boyutsec(length, from800);
    if (screenWidth == 640)
        return boyutsec(length, at640);
    return sizeOnOtherScreens;
}

}  // namespace kovanix
