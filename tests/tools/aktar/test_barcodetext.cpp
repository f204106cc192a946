#include <QtTest>

#include "aktar/barcodetext.h"
#include "rows.h"

namespace kovanix::aktar {

using namespace Qt::StringLiterals;

namespace {

struct CellRow {
    QString cell;
    QString barcode;
    bool settled = false;
    bool several = false;
};

}  // namespace

class BarcodeTextTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void reads_data() {
        addRows<CellRow>({
            {"digits", {u"8690000000147"_s, u"8690000000147"_s}},
            {"blanks around", {u" \u00a08690000000147\n"_s, u"8690000000147"_s}},
            {"nothing", {u" "_s, u""_s}},
            {"letters", {u"abc 1.0"_s, u"abc 1.0"_s}},
            {"an apostrophe ahead", {u"'8690000000147"_s, u"8690000000147"_s, true}},
            {"apostrophes and blanks ahead", {u"' '8690000000147"_s, u"8690000000147"_s, true}},
            {"an apostrophe ahead of letters", {u"'ABC-1"_s, u"ABC-1"_s, true}},
            {"an apostrophe within", {u"AB'1"_s, u"AB'1"_s}},
            {"an apostrophe alone", {u"'"_s, u"'"_s}},
            {"a number's decimal", {u"8690000000116.0"_s, u"8690000000116"_s, true}},
            {"a Turkish number's decimal", {u"8690000000116,0"_s, u"8690000000116"_s, true}},
            {"two decimals", {u"8690000000116,00"_s, u"8690000000116"_s, true}},
            {"three decimals may be a group", {u"8690.000"_s, u"8690.000"_s}},
            {"decimals that are none of a whole number", {u"12.50"_s, u"12.50"_s}},
            {"zero", {u"0.0"_s, u"0"_s, true}},
            {"decimals alone", {u".0"_s, u".0"_s}},
            {"a decimal behind letters", {u"A12.0"_s, u"A12.0"_s}},
            {"an exponent", {u"8,69E+12"_s, u"8,69E+12"_s}},
            {"an exponent behind an apostrophe", {u"'8,69E+12"_s, u"8,69E+12"_s, true}},
            {"blanks within", {u"8 690000 000130"_s, u"8690000000130"_s, true}},
            {"blanks that can't be broken", {u"8\u00a0690000\u202f000130"_s, u"8690000000130"_s, true}},
            {"blanks among letters", {u"AB 12"_s, u"AB 12"_s}},
            {"all at once", {u"' 8 690000 000130,0"_s, u"8690000000130"_s, true}},
            {"fourteen digits in groups", {u"1 86 90000 00013 7"_s, u"18690000000137"_s, true}},
            {"two barcodes", {u"8690000000130 8690000000147"_s, u"86900000001308690000000147"_s, true, true}},
            {"two barcodes, a line each", {u"86900001\n869002"_s, u"86900001869002"_s, true, true}},
            {"many digits", {u"012345678901234567890"_s, u"012345678901234567890"_s}},
            {"digits of another script", {u"'١٢ ٣"_s, u"١٢ ٣"_s, true}},
        });
    }
    void reads() {
        QFETCH(const CellRow, row);
        const BarcodeReading reading = readBarcode(row.cell);
        QCOMPARE(reading.barcode, row.barcode);
        QCOMPARE(reading.settled, row.settled);
        QCOMPARE(reading.several, row.several);
    }
};

}  // namespace kovanix::aktar

Q_DECLARE_METATYPE(kovanix::aktar::CellRow)

QTEST_GUILESS_MAIN(kovanix::aktar::BarcodeTextTest)
#include "test_barcodetext.moc"
