#pragma once

#include <QStringView>
#include <string>
#include <string_view>

namespace kovanix {

// Keys by which texts stand in Turkish alphabetical order: keys compared byte by byte, a key ahead of what it
// begins, stand as their texts do.
//
// Blanks, then signs, then digits, then letters: a b c ç d e f g ğ h ı i j k l m n o ö p q r s ş t u ü v w x
// y z, then letters of other scripts. Letter case is ignored; other Latin letters count as the ones that they
// are made of (â as a, é as e, ß as ss). No key has a zero byte.

/// Appends the sort key of a text in UTF-8.
void appendSortKey(std::string& key, std::string_view text);

/// The sort key of a text.
std::string sortKey(QStringView text);

}  // namespace kovanix
