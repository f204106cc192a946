#include <QtTest>

#include "aktar/failure.h"
#include "aktar/importplan.h"
#include "rows.h"

namespace kovanix::aktar {

using namespace Qt::StringLiterals;

namespace {

/// A file with a heading row, cell by cell, and what becomes of its rows in a shop that has
/// 100/SÜT/10/12,5/5, ABC/UN/1/2/null, 'd1/TAŞ/1/2/0 and a customer "Ali"/"0500"/"Yol 1".
struct PlanRow {
    Kind kind = Kind::products;
    QList<QStringList> cells;
    QStringList added;
    QStringList changed;
    qsizetype unchanged = 0;
    QStringList refused;  // "line: words"
    QStringList cut = {};
    QList<CellKind> kinds = {};  // of the cells below the heading; texts where it ends
    bool padded = false;
    QStringList settled = {};
};

struct HeadingRow {
    Kind kind = Kind::products;
    QList<QStringList> cells;
    bool stock = false;
    QList<int> fields;
    qsizetype headingRow = 0;
};

CellTable tableOfCells(const QList<QStringList>& cells, bool padded = false,
                       const QList<CellKind>& kinds = {}) {
    CellTable table(padded);
    for (qsizetype row = 0; row < cells.size(); ++row) {
        for (qsizetype column = 0; column < cells[row].size(); ++column)
            table.addCell(cells[row][column],
                          row == 0 ? CellKind::text : kinds.value(column, CellKind::text));
        table.endRow(row + 1);
    }
    return table;
}

StoredRows shopOf(Kind kind) {
    if (kind == Kind::customers)
        return {{u"ali"_s, {{7, {u"Ali"_s, u"0500"_s, u"Yol 1"_s}}}},
                {u"can"_s, {{8, {u"Can"_s, u"1"_s, u""_s}}, {9, {u"Can"_s, u"2"_s, u""_s}}}}};
    return {{u"100"_s, {{1, {u"100"_s, u"SÜT"_s, 10.0, 12.5, 5.0}}}},
            {u"abc"_s, {{2, {u"ABC"_s, u"UN "_s, 1.0, 0.1 + 0.2, QVariant()}}}},
            {u"'d1"_s, {{3, {u"'d1"_s, u"TAŞ"_s, 1.0, 2.0, 0.0}}}}};
}

QStringList shown(const std::vector<PlannedRow>& rows) {
    QStringList lines;
    for (const PlannedRow& row : rows) {
        QStringList values;
        for (const QVariant& value : row.values)
            values << (value.isValid() ? value.toString() : u"."_s);
        lines << (row.identity == 0 ? QString() : QString::number(row.identity) + u'#' + row.key + u' ') +
                     values.join(u'|');
    }
    return lines;
}

QStringList shown(const std::vector<LineNote>& notes) {
    QStringList lines;
    for (const LineNote& note : notes)
        lines << u"%1: %2"_s.arg(note.line).arg(note.words);
    return lines;
}

const QStringList wholeHeading{u"Barkod"_s, u"Ürün adı"_s, u"Alış"_s, u"Satış"_s, u"Stok"_s};
const QStringList priceHeading{u"Barkod"_s, u"Fiyat"_s};
const QStringList nameHeading{u"Barkod"_s, u"Ürün adı"_s, u"Fiyat"_s};
const QStringList customerHeading{u"Müşteri adı"_s, u"Telefon"_s, u"Adres"_s};

}  // namespace

class ImportPlanTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void plans_data() {
        const auto products = Kind::products;
        const auto customers = Kind::customers;
        const QString fifty(50, u'A');
        addRows<PlanRow>({
            {"a new one",
             {products,
              {wholeHeading, {u"7"_s, u"TUZ"_s, u"1"_s, u"2,5"_s, u"-3"_s}},
              {u"7|TUZ|1|2.5|-3"_s},
              {},
              0,
              {}}},
            {"a new one's empty numbers are zero",
             {products,
              {wholeHeading, {u"7"_s, u"TUZ"_s, {}, u"2,5"_s, {}}},
              {u"7|TUZ|0|2.5|0"_s},
              {},
              0,
              {}}},
            {"the same",
             {products, {wholeHeading, {u"100"_s, u"SÜT"_s, u"10"_s, u"12,50"_s, u"5"_s}}, {}, {}, 1, {}}},
            {"only what differs is written",
             {products,
              {wholeHeading, {u"100"_s, u"SÜT"_s, u"10"_s, u"13"_s, u"5"_s}},
              {},
              {u"1#100 .|.|.|13|."_s},
              0,
              {}}},
            {"empty cells change nothing",
             {products, {wholeHeading, {u"100"_s, u"SÜT"_s, {}, {}, {}}}, {}, {}, 1, {}}},
            {"barcode in another case",
             {products, {priceHeading, {u"abc"_s, u"4"_s}}, {}, {u"2#ABC .|.|.|4|."_s}, 0, {}}},
            {"letter case counts beyond ASCII",
             {products,
              {nameHeading, {u"Ç1"_s, u"A"_s, u"1"_s}, {u"ç1"_s, u"B"_s, u"2"_s}},
              {u"Ç1|A|0|1|0"_s, u"ç1|B|0|2|0"_s},
              {},
              0,
              {}}},
            {"same at 15 digits, blanks at the end, null stock",
             {products, {wholeHeading, {u"ABC"_s, u"UN"_s, u"1"_s, u"0,3"_s, u"0"_s}}, {}, {}, 1, {}}},
            {"stock that isn't taken",
             {products, {nameHeading, {u"7"_s, u"TUZ"_s, u"1"_s}}, {u"7|TUZ|0|1|0"_s}, {}, 0, {}}},
            {"blanks around",
             {products, {nameHeading, {u" 7 "_s, u"\u00a0TUZ "_s, u" 1 "_s}}, {u"7|TUZ|0|1|0"_s}, {}, 0, {}}},
            {"a name of two lines",
             {products,
              {nameHeading, {u"7"_s, u"TUZ\nİYOTLU"_s, u"1"_s}},
              {u"7|TUZ İYOTLU|0|1|0"_s},
              {},
              0,
              {}}},
            {"a formula is a text",
             {products, {nameHeading, {u"7"_s, u"=1+1"_s, u"1"_s}}, {u"7|=1+1|0|1|0"_s}, {}, 0, {}}},
            {"a formula is no price",
             {products,
              {nameHeading, {u"7"_s, u"A"_s, u"=1+1"_s}},
              {},
              {},
              0,
              {u"2: Satış fiyatı: sayı değil (=1+1)"_s}}},
            {"no barcode",
             {products, {nameHeading, {u" "_s, u"TUZ"_s, u"1"_s}}, {}, {}, 0, {u"2: Barkod boş"_s}}},
            {"no name",
             {products, {nameHeading, {u"7"_s, u" "_s, u"1"_s}}, {}, {}, 0, {u"2: Ürün adı boş"_s}}},
            {"no name of one that is there",
             {products, {nameHeading, {u"100"_s, {}, u"1"_s}}, {}, {}, 0, {u"2: Ürün adı boş"_s}}},
            {"a new one in a list of prices",
             {products, {priceHeading, {u"7"_s, u"1"_s}}, {}, {}, 0, {u"2: Yeni ürünün adı yok"_s}}},
            {"a new one without a price",
             {products,
              {nameHeading, {u"7"_s, u"TUZ"_s, {}}},
              {},
              {},
              0,
              {u"2: Yeni ürünün satış fiyatı yok"_s}}},
            {"a negative price",
             {products,
              {priceHeading, {u"100"_s, u"-1"_s}},
              {},
              {},
              0,
              {u"2: Satış fiyatı: fiyat olamaz (-1)"_s}}},
            {"a barcode as price",
             {products,
              {priceHeading, {u"100"_s, u"8690000000001"_s}},
              {},
              {},
              0,
              {u"2: Satış fiyatı: fiyat olamaz (8690000000001)"_s}}},
            {"a spoilt barcode",
             {products,
              {priceHeading, {u"8,69E+12"_s, u"1"_s}},
              {},
              {},
              0,
              {u"2: Barkod bozulmuş (8,69E+12): tabloda sayıya çevrilmiş"_s}}},
            {"NUL",
             {products,
              {nameHeading, {u"7"_s, u"T\0Z"_s, u"1"_s}},
              {},
              {},
              0,
              {u"2: Ürün adı: okunamayan harf var"_s}}},
            {"a letter that came to nothing",
             {products,
              {nameHeading, {u"7"_s, u"T\ufffdZ"_s, u"1"_s}},
              {},
              {},
              0,
              {u"2: Ürün adı: okunamayan harf var"_s}}},
            {"a row too wide",
             {products,
              {nameHeading, {u"7"_s, u"SÜT"_s, u" yağlı"_s, u"1"_s}},
              {},
              {},
              0,
              {u"2: 4 sütun var, 3 olmalı"_s}}},
            {"wide by empty cells",
             {products,
              {nameHeading, {u"7"_s, u"SÜT"_s, u"1"_s, {}, u" "_s}},
              {u"7|SÜT|0|1|0"_s},
              {},
              0,
              {}}},
            {"a row too narrow",
             {products, {nameHeading, {u"100"_s, u"SÜT"_s}}, {}, {}, 0, {u"2: 2 sütun var, 3 olmalı"_s}}},
            {"a narrow row of a spreadsheet",
             {products, {nameHeading, {u"100"_s, u"SÜT"_s}}, {}, {}, 1, {}, {}, {}, true}},
            {"twice with other values",
             {products,
              {priceHeading, {u"100"_s, u"1"_s}, {u"abc"_s, u"9"_s}, {u"100"_s, u"2"_s}, {u"100"_s, u"1"_s}},
              {},
              {u"2#ABC .|.|.|9|."_s},
              0,
              {u"2: Aşağıda başka değerlerle bir daha var"_s, u"4: 2. satırda da var, değerleri başka"_s,
               u"5: 2. satırın aynısı"_s}}},
            {"twice the same, in another case",
             {products,
              {nameHeading, {u"X1"_s, u"A"_s, u"1"_s}, {u"x1"_s, u"A"_s, u"1"_s}},
              {u"X1|A|0|1|0"_s},
              {},
              0,
              {u"3: 2. satırın aynısı"_s}}},
            {"a name cut at 50",
             {products,
              {nameHeading, {u"7"_s, fifty + u"SON"_s, u"1"_s}},
              {u"7|%1|0|1|0"_s.arg(fifty)},
              {},
              0,
              {},
              {u"2: Ürün adı 50 harfe kısaltıldı: "_s + fifty}}},
            {"both ways of writing prices",
             {products,
              {priceHeading, {u"100"_s, u"1.234,50"_s}, {u"abc"_s, u"1,234.50"_s}},
              {},
              {u"1#100 .|.|.|1234.5|."_s, u"2#ABC .|.|.|1234.5|."_s},
              0,
              {}}},
            {"ambiguous among both ways",
             {products,
              {priceHeading, {u"1"_s, u"1,5"_s}, {u"abc"_s, u"1.5"_s}, {u"100"_s, u"1.234"_s}},
              {},
              {u"2#ABC .|.|.|1.5|."_s},
              0,
              {u"2: Yeni ürünün adı yok"_s, u"4: Satış fiyatı: 1.234 binlik mi, ondalık mı belli değil"_s}}},
            {"a silent column follows its neighbours",
             {products,
              {wholeHeading, {u"100"_s, u"SÜT"_s, u"1.250"_s, u"1.5"_s, u"5"_s}},
              {},
              {u"1#100 .|.|1.25|1.5|."_s},
              0,
              {}}},
            {"a date for a price",
             {products,
              {priceHeading, {u"100"_s, u"01.05.2026"_s}},
              {},
              {},
              0,
              {u"2: Satış fiyatı: sayı yerine tarih var (01.05.2026)"_s},
              {},
              {CellKind::number, CellKind::moment},
              true}},
            {"a barcode that became a date",
             {products,
              {priceHeading, {u"18.06.2020"_s, u"1"_s}},
              {},
              {},
              0,
              {u"2: Barkod: tabloda tarihe çevrilmiş (18.06.2020)"_s},
              {},
              {CellKind::moment},
              true}},
            {"a name that became a date",
             {products,
              {nameHeading, {u"100"_s, u"07.05.2026"_s, u"1"_s}},
              {},
              {},
              0,
              {u"2: Ürün adı: tabloda tarihe çevrilmiş (07.05.2026)"_s},
              {},
              {CellKind::text, CellKind::moment},
              true}},
            {"a telephone that became a date",
             {customers,
              {customerHeading, {u"Ali"_s, u"05.12.2026"_s, {}}},
              {},
              {},
              0,
              {u"2: Telefon: tabloda tarihe çevrilmiş (05.12.2026)"_s},
              {},
              {CellKind::text, CellKind::moment},
              true}},
            {"numbers of a spreadsheet",
             {products,
              {priceHeading, {u"100"_s, u"12.499999999999998"_s}},
              {},
              {},
              1,
              {},
              {},
              {CellKind::number, CellKind::number},
              true}},
            {"a barcode that lost its last digits",
             {products,
              {priceHeading, {u"8690000000001000"_s, u"1"_s}},
              {},
              {},
              0,
              {u"2: Barkod: tabloda sayı olarak durduğu için son haneleri silinmiş"_s},
              {},
              {CellKind::number, CellKind::number},
              true}},
            {"a barcode with more zeros than a spreadsheet keeps digits",
             {products,
              {priceHeading, {u"000008690000000001"_s, u"1"_s}},
              {},
              {},
              0,
              {u"2: Yeni ürünün adı yok"_s},
              {},
              {CellKind::number, CellKind::number},
              true}},
            {"barcodes that other programs have spoilt",
             {products,
              {nameHeading, {u"'7"_s, u"TUZ"_s, u"1"_s}, {u"1 0 0"_s, u"SÜT"_s, u"12,5"_s}},
              {u"7|TUZ|0|1|0"_s},
              {},
              1,
              {},
              {},
              {},
              false,
              {u"2: Barkod düzeltildi, dosyada yazan: '7"_s,
               u"3: Barkod düzeltildi, dosyada yazan: 1 0 0"_s}}},
            {"a spoilt barcode twice",
             {products,
              {nameHeading, {u"7.0"_s, u"TUZ"_s, u"1"_s}, {u"7"_s, u"UN"_s, u"1"_s}},
              {},
              {},
              0,
              {u"2: Aşağıda başka değerlerle bir daha var"_s, u"3: 2. satırda da var, değerleri başka"_s}}},
            {"a barcode that is odd in the shop, too",
             {products, {priceHeading, {u"'D1"_s, u"4"_s}}, {}, {u"3#'d1 .|.|.|4|."_s}, 0, {}}},
            {"a spoilt barcode behind an apostrophe",
             {products,
              {priceHeading, {u"'8,69E+12"_s, u"1"_s}},
              {},
              {},
              0,
              {u"2: Barkod bozulmuş (8,69E+12): tabloda sayıya çevrilmiş"_s}}},
            {"two barcodes in a cell",
             {products,
              {priceHeading, {u"8690000000130\n8690000000147"_s, u"1"_s}},
              {},
              {},
              0,
              {u"2: Barkod: arada boşluk var, birden çok barkod olabilir (8690000000130 8690000000147)"_s}}},
            {"a customer's apostrophe stays",
             {customers, {customerHeading, {u"'Ayşe"_s, u"'1"_s, {}}}, {u"'Ayşe|'1|"_s}, {}, 0, {}}},
            {"line ends of Windows within",
             {products,
              {nameHeading, {u"7"_s, u"TUZ\r\nİYOTLU"_s, u"1"_s}},
              {u"7|TUZ İYOTLU|0|1|0"_s},
              {},
              0,
              {}}},
            {"two lines are no number",
             {products,
              {priceHeading, {u"100"_s, u"1\n234"_s}},
              {},
              {},
              0,
              {u"2: Satış fiyatı: sayı değil (1 234)"_s}}},
            {"a formula's failure",
             {products,
              {priceHeading, {u"#N/A"_s, u"#N/A"_s}},
              {},
              {},
              0,
              {u"2: Barkod: hücrede hata var (#N/A)"_s},
              {},
              {CellKind::error, CellKind::error},
              true}},
            {"customers",
             {customers,
              {customerHeading, {u"ALI"_s, u"0501"_s, u"Yol 1"_s}, {u"Ayşe"_s, {}, {}}},
              {u"Ayşe||"_s},
              {u"7#Ali .|0501|."_s},
              0,
              {}}},
            {"an address cut at 50, as the screen does",
             {customers,
              {customerHeading, {u"Ayşe"_s, u"1"_s, fifty + u"X"_s}},
              {u"Ayşe|1|%1"_s.arg(fifty)},
              {},
              0,
              {},
              {u"2: Adres 50 harfe kısaltıldı: "_s + fifty}}},
            {"two customers of one name, as in the shop",
             {customers, {customerHeading, {u"Can"_s, u"2"_s, {}}, {u"Can"_s, u"1"_s, {}}}, {}, {}, 2, {}}},
            {"two customers of one name, one of them changed",
             {customers,
              {customerHeading, {u"Can"_s, u"2"_s, {}}, {u"Can"_s, u"3"_s, {}}},
              {},
              {},
              0,
              {u"2: Aşağıda başka değerlerle bir daha var"_s, u"3: 2. satırda da var, değerleri başka"_s}}},
            {"a change goes to the first of one name",
             {customers, {customerHeading, {u"Can"_s, u"3"_s, {}}}, {}, {u"8#Can .|3|."_s}, 0, {}}},
            {"a customer without a name",
             {customers, {customerHeading, {{}, u"1"_s, {}}}, {}, {}, 0, {u"2: Müşteri adı boş"_s}}},
        });
    }
    void plans() {
        QFETCH(const PlanRow, row);
        const CellTable table = tableOfCells(row.cells, row.padded, row.kinds);
        const Mapping mapping = mapByHeadings(table, row.kind, true);
        QCOMPARE(faultOf(mapping, row.kind), QString());
        const ImportPlan plan = ImportRecords(table, row.kind, mapping).plan(shopOf(row.kind));
        QCOMPARE(shown(plan.refused), row.refused);
        QCOMPARE(shown(plan.added), row.added);
        QCOMPARE(shown(plan.changed), row.changed);
        QCOMPARE(plan.unchanged, row.unchanged);
        QCOMPARE(shown(plan.cut), row.cut);
        QCOMPARE(shown(plan.settled), row.settled);
    }

    void whatWasCutOnceIsTheSame() {
        const QString fifty(50, u'A');
        StoredRows shop;
        shop.insert(u"ali"_s, {{1, {u"Ali"_s, QString(), fifty}}});
        shop.insert(u"can"_s, {{2, {u"Can"_s, QString(), QString(fifty + u'X')}}});
        const CellTable table =
            tableOfCells({customerHeading, {u"Ali"_s, {}, fifty + u"Y"_s}, {u"Can"_s, {}, fifty + u"X"_s}});
        const ImportPlan plan =
            ImportRecords(table, Kind::customers, mapByHeadings(table, Kind::customers, false)).plan(shop);
        QCOMPARE(plan.unchanged, 2);
        QVERIFY(plan.cut.empty());
    }

    void maps_data() {
        addRows<HeadingRow>({
            {"the till's own words",
             {Kind::products,
              {{u"NO"_s, u"BARKOD"_s, u"ÜRÜN ADI"_s, u"ALIş FİYAT"_s, u"SATIş FİYATI"_s, u"STOK"_s}},
              true,
              {-1, 0, 1, 2, 3, 4}}},
            {"stock only where it is wanted",
             {Kind::products, {{u"Barkod"_s, u"Ürün adı"_s, u"Stok"_s}}, false, {0, 1, -1}}},
            {"other programs'",
             {Kind::products,
              {{u"Barkod No:"_s, u"Stok Adı"_s, u"Alış Fiyatı (TL)"_s, u"Perakende Fiyat"_s, u"Miktar"_s}},
              true,
              {0, 1, 2, 3, 4}}},
            {"without Turkish letters",
             {Kind::products, {{u"BARKODU"_s, u"Urun Adi"_s, u"SATIS FIYATI"_s}}, false, {0, 1, 3}}},
            {"below a title",
             {Kind::products, {{u"FİYAT LİSTESİ 2026"_s}, {u"Barkod"_s, u"Fiyat"_s}}, false, {0, 3}, 1}},
            {"a field that comes twice",
             {Kind::products, {{u"Barkod"_s, u"Barkod"_s, u"Ürün"_s}}, false, {0, -1, 1}}},
            {"none", {Kind::products, {{u"869"_s, u"SÜT"_s}}, false, {-1, -1}, -1}},
            {"customers",
             {Kind::customers, {{u"Adı Soyadı"_s, u"Cep Telefonu"_s, u"Açık Adres"_s}}, false, {0, 1, 2}}},
            {"the till's customers",
             {Kind::customers,
              {{u"NO"_s, u"MüşTERİ ADI"_s, u"TELEFON"_s, u"ADRES"_s}},
              false,
              {-1, 0, 1, 2}}},
        });
    }
    void maps() {
        QFETCH(const HeadingRow, row);
        const Mapping mapping = mapByHeadings(tableOfCells(row.cells), row.kind, row.stock);
        QCOMPARE(QList<int>(mapping.fields.begin(), mapping.fields.end()), row.fields);
        QCOMPARE(mapping.headingRow, row.headingRow);
    }

    void aMappingHasItsFaults() {
        QCOMPARE(faultOf({{0, 1, 3}, 0}, Kind::products), QString());
        QCOMPARE(faultOf({{1, 3}, 0}, Kind::products), u"“Barkod” sütunu seçilmedi"_s);
        QCOMPARE(faultOf({{0, 3, 3}, 0}, Kind::products), u"“Satış fiyatı” iki sütun için seçildi"_s);
        QCOMPARE(faultOf({{0, -1}, 0}, Kind::products), u"“Barkod” dışında bir sütun da seçin"_s);
        QCOMPARE(faultOf({{0}, 0}, Kind::customers), QString());
    }
};

}  // namespace kovanix::aktar

Q_DECLARE_METATYPE(kovanix::aktar::PlanRow)
Q_DECLARE_METATYPE(kovanix::aktar::HeadingRow)

QTEST_GUILESS_MAIN(kovanix::aktar::ImportPlanTest)
#include "test_importplan.moc"
