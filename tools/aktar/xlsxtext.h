#pragma once

#include <string>
#include <string_view>

namespace kovanix::aktar {

// A workbook writes letters that it couldn't hold otherwise by their number: "_x000D_" is the end of a line.
// Where a text has just these letters, the line ahead of them is written so: "_x005F_x000D_".

/// A text of a workbook with the letters that are meant; half a letter becomes U+FFFD. UTF-8.
std::string withLetters(std::string_view text);

/// The same text for a workbook: withLetters gives it back.
std::string withNumbers(std::string_view text);

}  // namespace kovanix::aktar
