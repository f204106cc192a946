#pragma once

#include <QString>
#include <optional>

namespace kovanix {

/// What a scale prints into one in-store barcode (GS1 restricted circulation numbers 27 to 29): positions 1-2
/// the prefix, 4-7 the item's short code, 8-12 the weight in grams. Position 3 and the check digit aren't
/// looked at.
struct WeighedLabel {
    QString code;        ///< the item's four-character code, leading zeros kept
    double kilograms{};  ///< the weight
};

/// Splits a scale label. Every text that starts with the number 27, 28 or 29 is one, however long.
///
/// @return nothing for any other barcode
/// @throws RuntimeError (typeMismatch) for an empty text, and for a label whose weight is missing or no
/// number;
///         these failures end the program, as required
std::optional<WeighedLabel> splitWeighedLabel(const QString& barcode);

}  // namespace kovanix
