#include "resetprocess.h"

#include "app/session.h"
#include "appearance/mdlMonitors.h"
#include "appearance/modTema.h"
#include "data/baglanmamodulu.h"
#include "desktop/screensize.h"
#include "runtime/clock.h"
#include "runtime/process.h"
#include "runtime/screenregistry.h"

namespace kovanix {

void resetProcess() {
    ScreenRegistry::clear();  // first: screens use the rest
    kayitkapat();
    baglantikapatsessiz();
    for (int* value : {&baglantidurumu, &girisyetki, &sonrenk, &kayitgetir1, &kaydedilenigetir,
                       &toplamtemadegisken, &twipsPerPixelX, &twipsPerPixelY})
        *value = 0;
    for (QString* value :
         {&baglantimetni, &girissifre, &ekledznlsil, &sifresor2, &ensonkikisayol, &temakaydetme1})
        value->clear();
    semahazir = temasessiz = false;
    Monitors.clear();
    setProcessEnd({});
    Clock::setSource({});
    setScreenMetricsSource({});
}

}  // namespace kovanix
