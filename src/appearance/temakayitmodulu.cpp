#include "appearance/temakayitmodulu.h"

#include "app/ayarmodul.h"
#include "app/modTurkce.h"
#include "appearance/modTema.h"
#include "appearance/toplamtema.h"
#include "appearance/totalcolors.h"
#include "runtime/attempt.h"
#include "runtime/screenregistry.h"
#include "sales/satisekrani.h"
#include "widgets/controlcolor.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

void apply(TotalSet set) {
    for (const TotalColor color : totalColors) {
        attempt([&] { setBackColor(screen<toplamtema>().swatch(color), storedTotalColor(set, color)); });
        attempt([&] { setTotalColor(*screen<toplamtema>().ui.toplam, color, storedTotalColor(set, color)); });
        attempt(
            [&] { setTotalColor(*screen<satisekrani>().ui.toplam, color, storedTotalColor(set, color)); });
    }
}

void setKeepState(const QString& caption, const QString& tip, bool on) {
    vkToggleButton& toggle = *screen<toplamtema>().ui.temakaydetme;
    toggle.setCaption(harfcevir(caption));
    toggle.setToolTip(harfcevir(tip));
    toplamtemadegisken = on ? 0 : 1;  // "keeping" is 0: the two words stand the way round that the keys show
    temakaydetme1 = on ? u"True"_s : u"False"_s;
    ayarla(u"temakaydetme1"_s, temakaydetme1);
    ayarla(u"toplamtemadegisken"_s, QString::number(toplamtemadegisken));
    toplamtemadegisken = temasayisi(u"toplamtemadegisken"_s);
}

}  // namespace

void kayit1uygula() {
    apply(TotalSet::saved1);
}

void kayit2uygula() {
    apply(TotalSet::saved2);
}

void temakaydediyor() {
    setKeepState(u"KAYDED!YOR"_s, u"KAYDED!YORSA TIKLAYIN"_s, true);
}

void temakaydetmiyor() {
    setKeepState(u"KAYDETM!YOR"_s, u"KAYDETM!YORSA TIKLAYIN"_s, false);
}

}  // namespace kovanix
