#pragma once

#include <QStringView>
#include <optional>

namespace kovanix {

/// The stored form of a catalogue text: Turkish letters stand as punctuation symbols (see harfcevir).
///
/// @param key  an upper-case key
/// @return nothing for a key that the catalogue lacks
std::optional<QStringView> storedText(QStringView key);

}  // namespace kovanix
