#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kovanix::utf8 {

// Texts come from database files that anyone may have written. A byte that is part of no character is taken
// for one of its own, which is written back as that byte.

/// What the byte 0x80 of no character is read as; the others follow.
inline constexpr char32_t strayBytes = 0x110000;

/// The first character that takes more than two bytes.
inline constexpr char32_t behindTwoBytes = 0x800;

/// Reads the character at a place, if it takes one or two bytes, and goes behind it. For the loops that run
/// over a million texts, nearly all of which hold no other.
inline std::optional<char32_t> nextShort(std::string_view text, std::size_t& place) {
    const auto lead = static_cast<unsigned char>(text[place]);
    if (lead < 0x80) {
        ++place;
        return lead;
    }
    if (lead < 0xC2 || lead >= 0xE0 || text.size() - place < 2)
        return std::nullopt;
    const auto tail = static_cast<unsigned char>(text[place + 1]);
    if ((tail & 0xC0U) != 0x80U)
        return std::nullopt;
    place += 2;
    return (lead & 0x1FU) << 6U | (tail & 0x3FU);
}

/// Reads the character at a place and goes behind it. The place isn't behind the end.
char32_t next(std::string_view text, std::size_t& place);

/// Writes a character behind a text.
void append(std::string& text, char32_t character);

}  // namespace kovanix::utf8
