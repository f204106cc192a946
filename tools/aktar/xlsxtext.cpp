#include "aktar/xlsxtext.h"

#include <QChar>
#include <algorithm>
#include <charconv>
#include <optional>

namespace kovanix::aktar {

namespace {

constexpr size_t markSize = 7;  // of "_x000D_"

/// The number in the mark that stands at a place; nothing where there is none.
std::optional<char16_t> markAt(std::string_view text, size_t place) {
    const std::string_view mark = text.substr(std::min(place, text.size()), markSize);
    if (mark.size() < markSize || !mark.starts_with("_x") || !mark.ends_with('_'))
        return std::nullopt;
    const std::string_view digits = mark.substr(2, 4);
    unsigned number = 0;
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), number, 16);
    if (read.ec != std::errc() || read.ptr != digits.data() + digits.size())
        return std::nullopt;
    return static_cast<char16_t>(number);
}

void append(std::string& text, char32_t letter) {
    const auto piece = [&](char32_t lead, int shift) {
        text += static_cast<char>(lead | ((letter >> shift) & (lead == 0x80 ? 0x3FU : 0xFFU)));
    };
    if (letter < 0x80) {
        piece(0, 0);
    } else if (letter < 0x800) {
        piece(0xC0, 6);
        piece(0x80, 0);
    } else if (letter < 0x10000) {
        piece(0xE0, 12);
        piece(0x80, 6);
        piece(0x80, 0);
    } else {
        piece(0xF0, 18);
        piece(0x80, 12);
        piece(0x80, 6);
        piece(0x80, 0);
    }
}

}  // namespace

std::string withLetters(std::string_view text) {
    std::string letters;
    size_t place = 0;
    for (size_t next = text.find("_x"); next != std::string_view::npos; next = text.find("_x", next)) {
        const std::optional<char16_t> unit = markAt(text, next);
        if (!unit) {
            ++next;
            continue;
        }
        letters += text.substr(place, next - place);
        next += markSize;
        char32_t letter = *unit;
        if (QChar::isSurrogate(letter)) {
            const std::optional<char16_t> low = markAt(text, next);
            const bool pair = QChar::isHighSurrogate(letter) && low && QChar::isLowSurrogate(*low);
            letter = pair ? QChar::surrogateToUcs4(*unit, *low) : char32_t(QChar::ReplacementCharacter);
            next += pair ? markSize : 0;
        }
        append(letters, letter);
        place = next;
    }
    letters += text.substr(place);
    return letters;
}

std::string withNumbers(std::string_view text) {
    std::string numbers;
    size_t place = 0;
    for (size_t next = text.find("_x"); next != std::string_view::npos; next = text.find("_x", next + 1)) {
        if (!markAt(text, next))
            continue;
        numbers += text.substr(place, next - place);
        numbers += "_x005F_";
        place = next + 1;
    }
    numbers += text.substr(place);
    return numbers;
}

}  // namespace kovanix::aktar
