#include "data/schema.h"

#include <QStringList>

#include "app/modTrace.h"
#include "data/baglanmamodulu.h"
#include "database/connection.h"
#include "runtime/attempt.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

const QString counter = u"COUNTER"_s;
const QString text50 = u"TEXT(50)"_s;
const QString number = u"DOUBLE"_s;

QList<ShopColumn> productColumns() {
    return {{u"no"_s, counter},  {u"barkod"_s, text50}, {u"urun"_s, text50},
            {u"alis"_s, number}, {u"satis"_s, number},  {u"stok"_s, number}};
}

QString createStatement(const ShopTable& table) {
    QStringList definitions;
    for (const ShopColumn& column : table.columns)
        definitions << column.name + u' ' + column.type;
    return u"CREATE TABLE " + table.name + u" (" + definitions.join(u", "_s) + u')';
}

bool sameName(const QString& a, const QString& b) {
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

}  // namespace

const QList<ShopTable>& shopTables() {
    static const QList<ShopTable> list{
        {u"urunler"_s, productColumns()},
        {u"satislar"_s,
         {{u"no"_s, counter},
          {u"tarih"_s, u"DATETIME"_s},
          {u"barkod"_s, text50},
          {u"urun"_s, text50},
          {u"adet"_s, number},
          {u"fiyat"_s, number},
          {u"alis"_s, number},
          {u"kar"_s, number},
          {u"toplam"_s, number},
          {u"satis"_s, number}}},
        {u"kullanici"_s,
         {{u"id"_s, counter}, {u"personeladi"_s, text50}, {u"sifre"_s, text50}, {u"yetki"_s, text50}}},
        {u"musteri"_s,
         {{u"no"_s, counter}, {u"adi"_s, text50}, {u"telefon"_s, text50}, {u"adres"_s, u"TEXT(100)"_s}}},
        {u"urunler_hazir"_s, productColumns()},
    };
    return list;
}

bool tablovar(Connection& connection, const QString& table) {
    for (const TableInfo& entry : connection.tables()) {
        if (sameName(entry.name, table) && sameName(entry.type, u"TABLE"_s))
            return true;
    }
    return false;
}

bool kolonvar(Connection& connection, const QString& table, const QString& column) {
    return connection.shape(table).indexOf(column) >= 0;
}

void tablolariolustur(Connection& connection) {
    for (const ShopTable& table : shopTables()) {
        bool exists = false;
        attempt([&] { exists = tablovar(connection, table.name); });
        if (exists)
            continue;
        attempt([&] { connection.execute(createStatement(table)); });
        izyaz(u"DB schema: " + table.name + u" tablosu olusturuldu");
    }
}

void kolonekle(Connection& connection, const QString& table, const QString& column, const QString& type) {
    bool wanted = false;
    attempt([&] { wanted = tablovar(connection, table) && !kolonvar(connection, table, column); });
    if (!wanted)
        return;
    const auto error = attempt(
        [&] { connection.execute(u"ALTER TABLE [" + table + u"] ADD COLUMN [" + column + u"] " + type); });
    const QString name = table + u'.' + column;
    if (!error)
        izyaz(u"DB schema: " + name + u" eklendi");
    else if (!sameName(column, u"no"_s) && !sameName(column, u"id"_s))
        izyaz(u"DB schema HATA: " + name + u" - " + error->description());
    // else silent: a table takes one counter only, and an older file may have it under another name
}

void semakontrol(Connection& connection) {
    if (semahazir || !connection.isOpen())
        return;
    tablolariolustur(connection);
    for (const ShopTable& table : shopTables()) {
        for (const ShopColumn& column : table.columns)
            kolonekle(connection, table.name, column.name, column.type);
    }
    semahazir = false;
    attempt([&] { semahazir = kolonvar(connection, u"satislar"_s, u"satis"_s); });
    izyaz(semahazir ? u"DB schema: kontrol tamam (satislar.satis OK)"_s
                    : u"DB schema UYARI: satislar.satis eklenemedi"_s);
}

}  // namespace kovanix
