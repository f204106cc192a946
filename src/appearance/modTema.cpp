#include "appearance/modTema.h"

#include <cmath>
#include <limits>

#include "app/ayarmodul.h"
#include "appearance/tema.h"
#include "appearance/totalcolors.h"
#include "runtime/screenregistry.h"
#include "sales/satisekrani.h"
#include "values/numbers.h"

namespace kovanix {

using namespace Qt::StringLiterals;

int temasayisi(const QString& key) {
    const double value = std::nearbyint(numericPrefix(ayar(key)));
    // A selector beyond an integer selects nothing; the file can be edited by hand.
    return std::abs(value) <= std::numeric_limits<int>::max() ? static_cast<int>(value) : 0;
}

QString temadosyayolu() {
    return ayardosyasi();
}

void temadegiskenlerioku() {
    sonrenk = temasayisi(u"sonrenk"_s);
    kayitgetir1 = temasayisi(u"kayitgetir1"_s);
    toplamtemadegisken = temasayisi(u"toplamtemadegisken"_s);
    temakaydetme1 = ayar(u"temakaydetme1"_s);
}

void toplamtemauygula() {
    vkToggleButton& total = *screen<satisekrani>().ui.toplam;
    if (toplamtemadegisken == 1)
        applyTotalColors(total, TotalSet::live);
    else if (kayitgetir1 == 1 || sonrenk == 1)
        applyTotalColors(total, TotalSet::saved1);
    else if (kayitgetir1 == 2 || sonrenk == 2)
        applyTotalColors(total, TotalSet::saved2);
}

void temabaslangicuygula() {
    temadegiskenlerioku();
    tema& themes = screen<tema>();  // loaded, not shown
    themes.TemaKayitliUygula();
    toplamtemauygula();
}

}  // namespace kovanix
