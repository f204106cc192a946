#include "sales/receipt.h"

#include "app/modTurkce.h"
#include "data/baglanmamodulu.h"
#include "values/dates.h"
#include "values/numbers.h"

namespace kovanix {

using namespace Qt::StringLiterals;

QString receiptText(const std::vector<ReceiptRow>& rows, const QString& total, const QDateTime& now) {
    const QString newLine = u"\r\n"_s;
    const auto lira = [](const QString& cell) { return format(sayicevir(cell), u"###,###,##0.00 T.L."); };

    QString text;
    text += newLine + metin(u"FIS_TARIH"_s) + dateText(now.date());
    text += newLine + metin(u"FIS_SAAT"_s) + timeText(now.time());
    text += newLine + metin(u"FIS_MUSTERI"_s) + metin(u"PESIN_MUSTERI"_s);
    text += newLine + newLine;
    for (const ReceiptRow& row : rows) {
        text += row.name + newLine;
        text += numberText(sayicevir(row.quantity)) + u" X " + lira(row.price) + u" = " + lira(row.total) +
                newLine;
    }
    text += newLine + u"\tTOPLAM TUTAR  :\t" + total;
    text += newLine;
    text += newLine + u'\t' + metin(u"FIS_TESEKKUR"_s);
    return text;
}

}  // namespace kovanix
