#include "aktar/fields.h"

#include <QHash>
#include <algorithm>
#include <array>

#include "values/lettercase.h"

namespace kovanix::aktar {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype rowsWithHeadings = 10;

/// Every name that a heading may have, as headingKey makes it, with its field.
QHash<QString, int> namesOfFields(Kind kind) {
    QHash<QString, int> names;
    const std::vector<Field>& fields = fieldsOf(kind);
    for (size_t field = 0; field < fields.size(); ++field) {
        names.insert(headingKey(fields[field].heading), static_cast<int>(field));
        for (const QString& name : fields[field].headings)
            names.insert(name, static_cast<int>(field));
    }
    return names;
}

int headingsIn(const CellTable& table, qsizetype row, Kind kind) {
    std::vector<bool> seen(fieldsOf(kind).size());
    for (qsizetype column = 0; column < table.cellCount(row); ++column) {
        if (const int field = fieldNamed(table.text(row, column), kind); field >= 0)
            seen[static_cast<size_t>(field)] = true;
    }
    return static_cast<int>(std::count(seen.begin(), seen.end(), true));
}

struct HeadingRow {
    qsizetype row = -1;
    int fields = 0;
};

HeadingRow findHeadingRow(const CellTable& table, Kind kind) {
    HeadingRow best;
    for (qsizetype row = 0; row < std::min(table.rowCount(), rowsWithHeadings); ++row) {
        const int fields = headingsIn(table, row, kind);
        // Below a title a single word that happens to be a heading is none.
        if (fields > best.fields && (row == 0 || fields > 1))
            best = {row, fields};
    }
    return best;
}

}  // namespace

QString tableOf(Kind kind) {
    switch (kind) {
        case Kind::products:
            return u"urunler"_s;
        case Kind::customers:
            return u"musteri"_s;
        case Kind::sales:
            break;
    }
    return u"satislar"_s;
}

const std::vector<Field>& fieldsOf(Kind kind) {
    static const std::vector<Field> products{
        {u"barkod"_s,
         u"Barkod"_s,
         FieldType::key,
         {u"barkodu"_s, u"barkodno"_s, u"barkodnumarasi"_s, u"barcode"_s, u"ean"_s, u"ean13"_s, u"gtin"_s,
          u"urunbarkodu"_s, u"stokbarkodu"_s, u"barkod1"_s}},
        {u"urun"_s,
         u"Ürün adı"_s,
         FieldType::text,
         {u"urun"_s, u"urunismi"_s, u"ad"_s, u"adi"_s, u"isim"_s, u"ismi"_s, u"stokadi"_s, u"maladi"_s,
          u"malzemeadi"_s, u"malinadi"_s, u"urunaciklama"_s, u"urunaciklamasi"_s, u"name"_s, u"productname"_s,
          u"malcinsi"_s, u"cinsi"_s, u"mal"_s, u"malzeme"_s}},
        {u"alis"_s,
         u"Alış fiyatı"_s,
         FieldType::price,
         {u"alis"_s, u"alisfiyat"_s, u"maliyet"_s, u"maliyetfiyati"_s, u"gelisfiyati"_s, u"alisfiyatitl"_s,
          u"alistl"_s, u"birimmaliyet"_s, u"cost"_s, u"purchaseprice"_s}},
        {u"satis"_s,
         u"Satış fiyatı"_s,
         FieldType::price,
         {u"satis"_s, u"satisfiyat"_s, u"fiyat"_s, u"fiyati"_s, u"fiyattl"_s, u"satisfiyatitl"_s,
          u"satistl"_s, u"birimfiyat"_s, u"birimfiyati"_s, u"perakende"_s, u"perakendefiyat"_s,
          u"perakendefiyati"_s, u"etiketfiyati"_s, u"price"_s, u"saleprice"_s, u"psf"_s}},
        {u"stok"_s,
         u"Stok"_s,
         FieldType::quantity,
         {u"stokmiktari"_s, u"stokadedi"_s, u"stokadet"_s, u"miktar"_s, u"miktari"_s, u"adet"_s, u"mevcut"_s,
          u"eldeki"_s, u"kalan"_s, u"kalanmiktar"_s, u"bakiye"_s, u"stock"_s, u"quantity"_s}},
    };
    static const std::vector<Field> customers{
        {u"adi"_s,
         u"Müşteri adı"_s,
         FieldType::key,
         {u"musteri"_s, u"ad"_s, u"adi"_s, u"adsoyad"_s, u"adisoyadi"_s, u"isim"_s, u"unvan"_s, u"unvani"_s,
          u"cariadi"_s, u"cari"_s, u"carihesapadi"_s, u"firma"_s, u"firmaadi"_s, u"name"_s, u"customer"_s}},
        {u"telefon"_s,
         u"Telefon"_s,
         FieldType::text,
         {u"tel"_s, u"telefonu"_s, u"telefonno"_s, u"telefonnumarasi"_s, u"telno"_s, u"gsm"_s, u"cep"_s,
          u"ceptelefonu"_s, u"ceptel"_s, u"cepno"_s, u"phone"_s}},
        {u"adres"_s, u"Adres"_s, FieldType::text, {u"adresi"_s, u"acikadres"_s, u"address"_s}},
    };
    static const std::vector<Field> sales{
        {u"tarih"_s, u"Tarih"_s, FieldType::moment, {}},
        {u"barkod"_s, u"Barkod"_s, FieldType::text, {}},
        {u"urun"_s, u"Ürün adı"_s, FieldType::text, {}},
        {u"adet"_s, u"Miktar"_s, FieldType::quantity, {}},
        {u"fiyat"_s, u"Fiyat"_s, FieldType::price, {}},
        {u"toplam"_s, u"Toplam"_s, FieldType::price, {}},
        {u"alis"_s, u"Alış fiyatı"_s, FieldType::price, {}},
        {u"kar"_s, u"Kazanç"_s, FieldType::price, {}},
    };
    return kind == Kind::products ? products : kind == Kind::customers ? customers : sales;
}

std::optional<Kind> kindNamed(const QString& name) {
    if (name == u"urunler")
        return Kind::products;
    if (name == u"musteriler")
        return Kind::customers;
    if (name == u"satislar")
        return Kind::sales;
    return std::nullopt;
}

QString headingKey(const QString& heading) {
    QString key;
    const QString plain = foldTurkishI(heading).normalized(QString::NormalizationForm_KD);
    for (const QChar letter : plain) {
        if (letter == u'ı')
            key += u'i';
        else if (letter.unicode() < 0x80 && letter.isLetterOrNumber())
            key += letter.toLower();
    }
    return key;
}

int fieldNamed(const QString& heading, Kind kind) {
    static const std::array names{namesOfFields(Kind::products), namesOfFields(Kind::customers),
                                  namesOfFields(Kind::sales)};
    return names[static_cast<size_t>(kind)].value(headingKey(heading), Mapping::none);
}

qsizetype Mapping::columnOf(int field) const {
    const auto found = std::find(fields.begin(), fields.end(), field);
    return found == fields.end() ? -1 : found - fields.begin();
}

int knownHeadings(const CellTable& table, Kind kind) {
    return findHeadingRow(table, kind).fields;
}

Mapping mapByHeadings(const CellTable& table, Kind kind, bool withStock) {
    Mapping mapping;
    mapping.headingRow = findHeadingRow(table, kind).row;
    mapping.fields.assign(static_cast<size_t>(table.columnCount()), Mapping::none);
    if (mapping.headingRow < 0)
        return mapping;
    for (qsizetype column = 0; column < table.cellCount(mapping.headingRow); ++column) {
        const int field = fieldNamed(table.text(mapping.headingRow, column), kind);
        if (field < 0 || mapping.columnOf(field) >= 0)
            continue;
        if (fieldsOf(kind)[static_cast<size_t>(field)].type == FieldType::quantity && !withStock)
            continue;
        mapping.fields[static_cast<size_t>(column)] = field;
    }
    return mapping;
}

QString faultOf(const Mapping& mapping, Kind kind) {
    const std::vector<Field>& fields = fieldsOf(kind);
    for (size_t field = 0; field < fields.size(); ++field) {
        if (std::count(mapping.fields.begin(), mapping.fields.end(), static_cast<int>(field)) > 1)
            return u"“%1” iki sütun için seçildi"_s.arg(fields[field].heading);
    }
    if (mapping.columnOf(0) < 0)
        return u"“%1” sütunu seçilmedi"_s.arg(fields.front().heading);
    if (std::all_of(mapping.fields.begin(), mapping.fields.end(), [](int field) { return field <= 0; }) &&
        kind == Kind::products)
        return u"“%1” dışında bir sütun da seçin"_s.arg(fields.front().heading);
    return {};
}

}  // namespace kovanix::aktar
