#pragma once

namespace kovanix {

/// The font size of the grand total, in points: as large as the screen's width and the text's length allow.
///
/// @param screenWidth  pixels
/// @param length       characters of the total's text, 1 or more
int totalFontSize(int screenWidth, int length);

}  // namespace kovanix
