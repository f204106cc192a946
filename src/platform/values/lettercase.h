#pragma once

#include <QChar>
#include <QString>
#include <QStringView>

namespace kovanix {

// All of them map one character to one character, so a text keeps its length (ß stays ß).

/// Ordinary letter case, without regard to any language: headings, and the form of a catalogue key. i and ı
/// both become I; İ becomes i.
QString upperOrdinary(QStringView text);
QString lowerOrdinary(QStringView text);

/// Turkish letter case, one character at a time: i/İ and ı/I are pairs. Names as typed, and searching in
/// lists.
QString upperTurkish(QStringView text);
QString lowerTurkish(QStringView text);
char32_t lowerTurkish(char32_t character);

/// Folds İ, I and ı to i and lowers the rest: for comparing role texts.
QString foldTurkishI(QStringView text);

}  // namespace kovanix
