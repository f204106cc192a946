#pragma once

#include <QStringList>
#include <QTemporaryDir>
#include <array>
#include <memory>

#include "databasefile.h"
#include "shopfixture.h"

namespace kovanix {

struct ColumnRow {
    const char* table;
    const char* column;
    const char* type;
};

// The format of a shop's file, in the order in which it is checked.
inline constexpr std::array<ColumnRow, 30> allColumns{{
    {"urunler", "no", "COUNTER"},          {"urunler", "barkod", "TEXT(50)"},
    {"urunler", "urun", "TEXT(50)"},       {"urunler", "alis", "DOUBLE"},
    {"urunler", "satis", "DOUBLE"},        {"urunler", "stok", "DOUBLE"},
    {"satislar", "no", "COUNTER"},         {"satislar", "tarih", "DATETIME"},
    {"satislar", "barkod", "TEXT(50)"},    {"satislar", "urun", "TEXT(50)"},
    {"satislar", "adet", "DOUBLE"},        {"satislar", "fiyat", "DOUBLE"},
    {"satislar", "alis", "DOUBLE"},        {"satislar", "kar", "DOUBLE"},
    {"satislar", "toplam", "DOUBLE"},      {"satislar", "satis", "DOUBLE"},
    {"kullanici", "id", "COUNTER"},        {"kullanici", "personeladi", "TEXT(50)"},
    {"kullanici", "sifre", "TEXT(50)"},    {"kullanici", "yetki", "TEXT(50)"},
    {"musteri", "no", "COUNTER"},          {"musteri", "adi", "TEXT(50)"},
    {"musteri", "telefon", "TEXT(50)"},    {"musteri", "adres", "TEXT(100)"},
    {"urunler_hazir", "no", "COUNTER"},    {"urunler_hazir", "barkod", "TEXT(50)"},
    {"urunler_hazir", "urun", "TEXT(50)"}, {"urunler_hazir", "alis", "DOUBLE"},
    {"urunler_hazir", "satis", "DOUBLE"},  {"urunler_hazir", "stok", "DOUBLE"},
}};

extern const QStringList allTables;

// What the trace says about the check.
extern const QString checked;
extern const QString unchecked;
QString created(const QString& table);
QString added(const QString& table, const QString& column);

QString text(const char* latin);

/// A table of the shop's file without one column, in the engine's own SQL.
QString tableWithout(const QString& table, const QString& left);

/// A shop whose trace can be read, with one independent connection: each opening of a password file costs.
class TracedShop : public ShopFixture {
public:
    TracedShop();
    ~TracedShop();
    TracedShop(const TracedShop&) = delete;
    TracedShop& operator=(const TracedShop&) = delete;

    void makeDatabase(const QString& password = {});
    void run(const QString& sql);
    QStringList rows(const QString& sql);

    /// The texts of the lines since the last call.
    QStringList lines() const;

    /// Makes the tables, all but one, with the engine's own SQL, as another release left them.
    void makeTablesBut(const QString& left);
    /// Takes everything out of the file again.
    void empty();
    /// Checks the file as a start does, on a connection that stays open. @return whether it was found in
    /// order
    bool check();

    QStringList columnsOf(const QString& table);
    QStringList definitionOf(const QString& name);

private:
    RawDatabase& independent();

    QTemporaryDir m_temp;
    QString m_password;
    Connection m_checked;
    std::unique_ptr<RawDatabase> m_independent;
};

}  // namespace kovanix
