#include "values/utf8.h"

#include <array>

namespace kovanix::utf8 {

namespace {

// The smallest character of each length: what is written longer than it needs is no character.
constexpr std::array<char32_t, 5> smallest{0, 0, 0x80, 0x800, 0x10000};

std::size_t lengthBy(unsigned char lead) {
    return lead < 0xC0 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF8 ? 4 : 0;
}

}  // namespace

char32_t next(std::string_view text, std::size_t& place) {
    const auto lead = static_cast<unsigned char>(text[place]);
    if (lead < 0x80) {
        ++place;
        return lead;
    }
    const std::size_t length = lengthBy(lead);
    char32_t character = lead & (0x7FU >> length);
    bool whole = length > 0 && text.size() - place >= length;
    for (std::size_t i = 1; whole && i < length; ++i) {
        const auto byte = static_cast<unsigned char>(text[place + i]);
        whole = (byte & 0xC0U) == 0x80U;
        character = character << 6U | (byte & 0x3FU);
    }
    const bool surrogate = character >= 0xD800 && character < 0xE000;
    if (!whole || character < smallest[length] || character >= strayBytes || surrogate) {
        ++place;
        return strayBytes + (lead - 0x80U);
    }
    place += length;
    return character;
}

void append(std::string& text, char32_t character) {
    const auto tail = [character](unsigned shift) {
        return static_cast<char>(0x80U | ((character >> shift) & 0x3FU));
    };
    if (character < 0x80) {
        text += static_cast<char>(character);
    } else if (character < 0x800) {
        text += {static_cast<char>(0xC0U | character >> 6U), tail(0)};
    } else if (character < 0x10000) {
        text += {static_cast<char>(0xE0U | character >> 12U), tail(6), tail(0)};
    } else if (character < strayBytes) {
        text += {static_cast<char>(0xF0U | character >> 18U), tail(12), tail(6), tail(0)};
    } else {
        text += static_cast<char>(character - strayBytes + 0x80U);
    }
}

}  // namespace kovanix::utf8
