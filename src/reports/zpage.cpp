#include "reports/zpage.h"

#include <QStringList>

#include "app/modTurkce.h"
#include "data/baglanmamodulu.h"
#include "values/dates.h"
#include "values/numbers.h"

namespace kovanix {

using namespace Qt::StringLiterals;

QString zPageText(const ZFigures& figures) {
    const QString empty;
    const QStringList lines{
        empty,
        dateText(figures.from) + u" ile  " + dateText(figures.to) + metin(u"Z_TARIH_ARASINDA"_s),
        u" GENEL RAPOR"_s,
        empty,
        empty,
        empty,
        empty,
        metin(u"Z_OZET"_s),
        metin(u"Z_ILK_FIS"_s) + figures.first,
        metin(u"Z_SON_FIS"_s) + figures.last,
        empty,
        empty,
        metin(u"Z_KASA_BILGI"_s),
        metin(u"Z_TOPLAM_SATIS"_s) + format(sayicevir(figures.total), u"#,##0.00") + u" TL.",
        empty,
        empty,
        empty,
    };
    return lines.join(u"\r\n"_s);
}

}  // namespace kovanix
