#pragma once

#include <QString>
#include <QStringView>
#include <optional>

namespace kovanix {

// Numbers as the shop's regional setting writes and reads them: comma for decimals, dot for groups, whatever
// the machine's locale says.

/// Formats a number by a display pattern: "0" a digit that always stands, "#" one that stands when needed,
/// "," in the whole part grouping by threes, "." the decimal sign, and a literal tail such as " T.L." copied
/// as it stands.
///
/// Rounds half away from zero on the decimal text of the double at 15 significant digits (1.005 gives 1,01),
/// so never on its binary value. Negative zero, and what rounds to zero, prints without a sign.
/// "###,###,##0.00" of 1234.5 gives "1.234,50"; "##0.00" gives "1234,50". A value beyond 15 digits goes on in
/// zeros; what is no finite number prints as zero; an empty pattern gives the plain number text.
QString format(double value, QStringView pattern);

/// The number that comes back when a text with two decimals ("#,##0.00") of a number is read again, digit for
/// digit, at a fraction of the price: what a sum becomes that is kept in a text. What is no finite number
/// gives 0.
double roundedToCents(double value);

/// A number as plain text: at most 15 significant digits, comma, no grouping, no trailing zeros. In exponent
/// form from 1E+15 upward ("1,5E+20") and where more than 15 decimals would be needed ("2E-16",
/// "6,66666666666667E-02"; but "0,0000002"), with at least two digits of exponent. What is no finite number
/// gives "0".
QString numberText(double value);

/// The regional numeric test: surrounding blanks, one leading or trailing sign, comma decimals ("12," is
/// numeric, "," is not), dot groups only where they stand in threes (1.234 is numeric, 12.5 is not), an
/// exponent. No currency signs, no hexadecimal forms. The empty text isn't numeric, nor is what lies beyond
/// the range of a double.
///
/// Blanks are the ASCII ones (tab and line ends included, the no-break space not); they may stand between
/// sign and number too. A group is one to three digits, then three behind each dot, whatever the digits are:
/// 0.123 is 123.
bool isNumeric(QStringView text);

/// Converts a text that passes the regional test; nothing for any other.
std::optional<double> toNumber(QStringView text);

/// A number's text after an edit: where the dots before it all grouped threes and now don't, those that no
/// longer do go. "1.200,00" shortened to "1.20" gives "120", "1.234.567" without its 4 gives "123.567". Any
/// other text, and dots that never grouped anything, stay.
/// @param caret  a place in the text; stays at its letter
QString keptGroups(QStringView before, const QString& after, qsizetype* caret = nullptr);

/// Converts a text that uses the dot as its decimal sign and no groups; nothing for any other. Blanks, sign
/// and exponent as in the regional test.
std::optional<double> toNumberWithDot(QStringView text);

/// The number at the start of a text, with the dot as its decimal sign, as a lenient reader finds it: leading
/// blanks are skipped, reading stops at the first character that can't continue a number, and 0 comes back
/// where there is none. "12:30" gives 12, "7,5" gives 7. What lies beyond a double's range gives the largest
/// finite number.
double numericPrefix(QStringView text);

}  // namespace kovanix
