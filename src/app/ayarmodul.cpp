#include "app/ayarmodul.h"

#include "desktop/folders.h"
#include "profile/profilefile.h"

namespace kovanix {

using namespace Qt::StringLiterals;

QString ayardosyasi() {
    return joinStored(applicationFolder(), u"\\Kovanix.config"_s);
}

QString ayar(const QString& key) {
    return ayaroku(u"ayar"_s, key, ayardosyasi());
}

void ayarla(const QString& key, const QString& value) {
    ayaryaz(u"ayar"_s, key, value, ayardosyasi());
}

QString ayaroku(const QString& section, const QString& key, const QString& file) {
    return ProfileFile::value(file, section, key);
}

void ayaryaz(const QString& section, const QString& key, const QString& value, const QString& file) {
    ProfileFile::setValue(file, section, key, value);  // a read-only file keeps the old value, silently
}

}  // namespace kovanix
