#include "appearance/modTema.h"

#include <cmath>
#include <limits>

#include "app/ayarmodul.h"
#include "data/baglanmamodulu.h"
#include "values/numbers.h"

namespace kovanix {

namespace {

QString setting(const QString& key) {
    return ayaroku(QStringLiteral("ayar"), key, temadosyayolu());
}

int numberSetting(const QString& key) {
    const double value = std::nearbyint(numericPrefix(setting(key)));
    // A selector beyond an integer selects nothing; the file can be edited by hand.
    return std::abs(value) <= std::numeric_limits<int>::max() ? static_cast<int>(value) : 0;
}

}  // namespace

QString temadosyayolu() {
    return ayardosyasi();
}

void temadegiskenlerioku() {
    sonrenk = numberSetting(QStringLiteral("sonrenk"));
    kayitgetir1 = numberSetting(QStringLiteral("kayitgetir1"));
    toplamtemadegisken = numberSetting(QStringLiteral("toplamtemadegisken"));
    temakaydetme1 = setting(QStringLiteral("temakaydetme1"));
}

}  // namespace kovanix
