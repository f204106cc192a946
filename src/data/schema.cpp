#include "data/schema.h"

#include <QList>
#include <QStringList>

#include "app/modTrace.h"
#include "data/baglanmamodulu.h"
#include "database/connection.h"
#include "runtime/attempt.h"

namespace kovanix {

namespace {

struct Column {
    QString name;
    QString type;
};

struct Table {
    QString name;
    QList<Column> columns;
};

const QString counter = QStringLiteral("COUNTER");
const QString text50 = QStringLiteral("TEXT(50)");
const QString number = QStringLiteral("DOUBLE");

QList<Column> productColumns() {
    return {{QStringLiteral("no"), counter},   {QStringLiteral("barkod"), text50},
            {QStringLiteral("urun"), text50},  {QStringLiteral("alis"), number},
            {QStringLiteral("satis"), number}, {QStringLiteral("stok"), number}};
}

/// The tables of a shop's file, in the order in which they are made; the columns' order is part of the file
/// format.
const QList<Table>& tables() {
    static const QList<Table> list{
        {QStringLiteral("urunler"), productColumns()},
        {QStringLiteral("satislar"),
         {{QStringLiteral("no"), counter},
          {QStringLiteral("tarih"), QStringLiteral("DATETIME")},
          {QStringLiteral("barkod"), text50},
          {QStringLiteral("urun"), text50},
          {QStringLiteral("adet"), number},
          {QStringLiteral("fiyat"), number},
          {QStringLiteral("alis"), number},
          {QStringLiteral("kar"), number},
          {QStringLiteral("toplam"), number},
          {QStringLiteral("satis"), number}}},
        {QStringLiteral("kullanici"),
         {{QStringLiteral("id"), counter},
          {QStringLiteral("personeladi"), text50},
          {QStringLiteral("sifre"), text50},
          {QStringLiteral("yetki"), text50}}},
        {QStringLiteral("musteri"),
         {{QStringLiteral("no"), counter},
          {QStringLiteral("adi"), text50},
          {QStringLiteral("telefon"), text50},
          {QStringLiteral("adres"), QStringLiteral("TEXT(100)")}}},
        {QStringLiteral("urunler_hazir"), productColumns()},
    };
    return list;
}

QString createStatement(const Table& table) {
    QStringList definitions;
    for (const Column& column : table.columns)
        definitions << column.name + u' ' + column.type;
    return u"CREATE TABLE " + table.name + u" (" + definitions.join(QStringLiteral(", ")) + u')';
}

bool sameName(const QString& a, const QString& b) {
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

}  // namespace

bool tablovar(Connection& connection, const QString& table) {
    for (const TableInfo& entry : connection.tables()) {
        if (sameName(entry.name, table) && sameName(entry.type, QStringLiteral("TABLE")))
            return true;
    }
    return false;
}

bool kolonvar(Connection& connection, const QString& table, const QString& column) {
    return connection.shape(table).indexOf(column) >= 0;
}

void tablolariolustur(Connection& connection) {
    for (const Table& table : tables()) {
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
    else if (!sameName(column, QStringLiteral("no")) && !sameName(column, QStringLiteral("id")))
        izyaz(u"DB schema HATA: " + name + u" - " + error->description());
    // else silent: a table takes one counter only, and an older file may have it under another name
}

void semakontrol(Connection& connection) {
    if (semahazir || !connection.isOpen())
        return;
    tablolariolustur(connection);
    for (const Table& table : tables()) {
        for (const Column& column : table.columns)
            kolonekle(connection, table.name, column.name, column.type);
    }
    semahazir = false;
    attempt([&] { semahazir = kolonvar(connection, QStringLiteral("satislar"), QStringLiteral("satis")); });
    izyaz(semahazir ? QStringLiteral("DB schema: kontrol tamam (satislar.satis OK)")
                    : QStringLiteral("DB schema UYARI: satislar.satis eklenemedi"));
}

}  // namespace kovanix
