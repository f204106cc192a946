#pragma once

#include <QString>

namespace kovanix {

// The settings of the shop: one text file in the application folder, read and written key by key at the
// moment of use. No key has a default here; every caller gives an empty value its own meaning.

/// Full path of the configuration file.
QString ayardosyasi();

/// Reads one key of the section that holds all settings, "ayar".
/// @return the value, at most 254 characters; empty when it is absent
QString ayar(const QString& key);

/// Writes one key of that section at once.
void ayarla(const QString& key, const QString& value);

/// Reads one key.
/// @param file  full path of the configuration file
/// @return the value, at most 254 characters; empty when the file, the section or the key is absent
QString ayaroku(const QString& section, const QString& key, const QString& file);

/// Writes one key at once; the file comes into being with the first one. A write that fails is lost without a
/// word.
void ayaryaz(const QString& section, const QString& key, const QString& value, const QString& file);

}  // namespace kovanix
