#include "app/ayarmodul.h"

#include "profile/profilefile.h"

namespace kovanix {

QString ayaroku(const QString& section, const QString& key, const QString& file) {
    return ProfileFile::value(file, section, key);
}

void ayaryaz(const QString& section, const QString& key, const QString& value, const QString& file) {
    ProfileFile::setValue(file, section, key, value);  // a read-only file keeps the old value, silently
}

}  // namespace kovanix
