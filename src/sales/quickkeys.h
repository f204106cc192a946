#pragma once

#include <QString>
#include <QStringView>
#include <optional>

namespace kovanix {

// The quick-sale keys: four pages of eight, one page shown at a time. What stands on them is in the settings
// and nowhere else: a name for each page, a name and a barcode for each key.

inline constexpr int quickPages = 4;
inline constexpr int quickKeysOnPage = 8;

/// The page that a setting's text names, by its number: 1 to 4; any other text, a missing one too, names page
/// 1.
int quickPage(QStringView text);

// The names of the settings.

/// Which page was used last.
inline const QString lastQuickPageKey = QStringLiteral("ensonkikisayol");
/// A page's name. @param page  1 to 4
QString quickPageKey(int page);
/// A key's name, which is its caption. @param index  0 to 7
QString quickNameKey(int page, int index);
/// A key's barcode.
QString quickBarcodeKey(int page, int index);

// What the panel edits stands in a text, and is told by the text and not by its number: "0" to "7" a key of
// the page that was used last, "11" to "44" the name of page 1 to 4.

/// The key; nothing for any other text.
std::optional<int> quickSlot(QStringView edited);
/// The page whose name is edited; nothing for any other text.
std::optional<int> quickCategory(QStringView edited);
/// The text for a page's name.
QString editedCategory(int page);

/// What is edited, in words: "Fırın sayfası, 7. tuş", "Fırın sayfasının adı"; where the page has no name, by
/// its number. Empty for a text that means neither.
/// @param page  the one whose key or name is edited
QString quickKeyWords(QStringView edited, int page, const QString& pageName);

}  // namespace kovanix
