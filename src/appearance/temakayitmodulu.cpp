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
    temakaydetme1 = on ? QStringLiteral("True") : QStringLiteral("False");
    ayarla(QStringLiteral("temakaydetme1"), temakaydetme1);
    ayarla(QStringLiteral("toplamtemadegisken"), QString::number(toplamtemadegisken));
    toplamtemadegisken = temasayisi(QStringLiteral("toplamtemadegisken"));
}

}  // namespace

void kayit1uygula() {
    apply(TotalSet::saved1);
}

void kayit2uygula() {
    apply(TotalSet::saved2);
}

void temakaydediyor() {
    setKeepState(QStringLiteral("KAYDED!YOR"), QStringLiteral("KAYDED!YORSA TIKLAYIN"), true);
}

void temakaydetmiyor() {
    setKeepState(QStringLiteral("KAYDETM!YOR"), QStringLiteral("KAYDETM!YORSA TIKLAYIN"), false);
}

}  // namespace kovanix
