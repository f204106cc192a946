#pragma once

#include <string>
#include <string_view>

namespace kovanix::utf8 {

// Texts come from database files that anyone may have written. A byte that is part of no character is taken
// for one of its own, which is written back as that byte.

/// What the byte 0x80 of no character is read as; the others follow.
inline constexpr char32_t strayBytes = 0x110000;

/// Reads the character at a place and goes behind it. The place isn't behind the end.
char32_t next(std::string_view text, std::size_t& place);

/// Writes a character behind a text.
void append(std::string& text, char32_t character);

}  // namespace kovanix::utf8
