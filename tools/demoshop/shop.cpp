#include "shop.h"

#include <QDir>
#include <QFile>
#include <QStringList>
#include <QTemporaryDir>
#include <QVariant>
#include <algorithm>
#include <array>

#include "catalogue.h"
#include "data/baglanmamodulu.h"
#include "data/schema.h"
#include "database/bulkwriter.h"
#include "database/connection.h"
#include "goods.h"
#include "history.h"
#include "profile/profilefile.h"
#include "runtime/runtimeerror.h"

namespace kovanix::demoshop {

using namespace Qt::StringLiterals;

namespace {

constexpr int folderFailure = 75;  // path or file access error
constexpr int shopExists = 58;     // file already exists
constexpr int unfitPassword = 5;   // invalid argument
constexpr qsizetype readyMadeWanted = 240;
constexpr int customerCount = 24;
constexpr quint64 historySeed = 0x9E3779B97F4A7C15;

const QString databaseName = u"kovanix.data"_s;
const QString olderDatabaseName = u"kovanix.mdb"_s;
const QString configurationName = u"Kovanix.config"_s;

QString connectionText(const QString& file, const QString& password) {
    const QString text =
        u"Provider=Microsoft.Jet.OLEDB.4.0;Data Source="_s + file + u";Persist Security Info=False"_s;
    return password.isEmpty() ? text : text + u";Jet OLEDB:Database Password="_s + password;
}

void fillProducts(BulkWriter& rows, const QString& table, const Catalogue& catalogue, qsizetype from) {
    rows.into(table, {u"barkod"_s, u"urun"_s, u"alis"_s, u"satis"_s, u"stok"_s});
    for (qsizetype number = from; number < catalogue.size(); ++number) {
        const Product product = catalogue.at(number);
        rows.add({product.barcode, product.name, product.purchase, product.sale, product.stock});
    }
}

void fillSales(BulkWriter& rows, const Catalogue& catalogue, const ShopPlan& plan, ShopSummary& summary) {
    rows.into(u"satislar"_s, u"tarih,barkod,urun,adet,fiyat,alis,kar,toplam,satis"_s.split(u','));
    Random random(plan.seed ^ historySeed);
    tellHistory(catalogue, plan.today, plan.sales, random, [&](const SoldLine& line) {
        const Product product = catalogue.at(line.product);
        const double total = line.quantity * line.price;
        const double profit = total - line.quantity * line.purchase;
        const QString moment = line.date.toString(Qt::ISODate) + u' ' + line.time.toString(Qt::ISODate);
        // The column satis holds the profit once more, as the till itself stores it.
        rows.add({moment, product.barcode, product.name, line.quantity, line.price, line.purchase, profit,
                  total, profit});
        if (summary.sales++ == 0)
            summary.firstSale = line.date;
        summary.lastSale = line.date;
    });
}

void fillUsers(BulkWriter& rows) {
    rows.into(u"kullanici"_s, {u"personeladi"_s, u"sifre"_s, u"yetki"_s});
    rows.add({u"Ayşe"_s, u""_s, u"Yönetici"_s});
    rows.add({u"Mehmet"_s, u""_s, u"Kasiyer"_s});
}

void fillCustomers(BulkWriter& rows, quint64 seed) {
    const std::array<QStringView, 12> first{u"Zeynep", u"Hüseyin", u"Şule", u"İbrahim", u"Gülay", u"Oğuz",
                                            u"Elif",   u"Cemal",   u"Işıl", u"Turgut",  u"Nuran", u"Yiğit"};
    const std::array<QStringView, 12> last{u"Aydoğan", u"Çınar",  u"Işık",    u"Demirağ",
                                           u"Göçmen",  u"Özsoy",  u"Şahiner", u"Tunç",
                                           u"Ulusoy",  u"Yıldız", u"Kaplan",  u"Eryılmaz"};
    const std::array<QStringView, 6> streets{u"Ihlamur Sk.",       u"Çınarlı Cd.", u"Gül Sk.",
                                             u"Değirmen Yolu Sk.", u"Okul Cd.",    u"Üzüm Sk."};
    rows.into(u"musteri"_s, {u"adi"_s, u"telefon"_s, u"adres"_s});
    Random random(seed);
    for (int number = 0; number < customerCount; ++number) {
        const QString name =
            u"%1 %2"_s.arg(first[random.below(first.size())], last[random.below(last.size())]);
        const QString telephone = u"0500 000 %1 %2"_s.arg(random.between(0, 99), 2, 10, QChar(u'0'))
                                      .arg(random.between(0, 99), 2, 10, QChar(u'0'));
        const QString address = u"%1 No: %2 D: %3"_s.arg(streets[random.below(streets.size())])
                                    .arg(random.between(1, 90))
                                    .arg(random.between(1, 12));
        rows.add({name, telephone, address});
    }
}

void makeTables(const QString& file, const QString& password) {
    // The till opens files but makes none: an empty file is the seed of a new database.
    QFile empty(file);
    if (!empty.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        throw RuntimeError(folderFailure, empty.errorString(), u"demo shop"_s);
    empty.close();

    Connection connection;
    connection.open(connectionText(file, password));
    tablolariolustur(connection);
    connection.close();
}

void makeDatabase(const QString& file, const Catalogue& catalogue, const ShopPlan& plan,
                  ShopSummary& summary) {
    makeTables(file, plan.password);
    Connection connection;
    connection.open(connectionText(file, plan.password));
    {
        BulkWriter rows(connection);
        fillProducts(rows, u"urunler"_s, catalogue, 0);
        // Drawn with the seed of the shop's own products, a longer row begins with the very same ones.
        Random random(plan.seed);
        summary.readyMade =
            std::clamp<qsizetype>(Catalogue::varietyCount() - plan.products, 0, readyMadeWanted);
        const Catalogue longer(plan.products + summary.readyMade, random);
        fillProducts(rows, u"urunler_hazir"_s, longer, plan.products);
        fillSales(rows, catalogue, plan, summary);
        fillUsers(rows);
        fillCustomers(rows, plan.seed);
        summary.customers = customerCount;
        rows.finish();
    }
    // Behind the bulk: an index is made faster than kept up.
    keepAccessPaths(connection);
    connection.close();
}

void makeConfiguration(const QString& file, const Catalogue& catalogue, const ShopPlan& plan) {
    const auto write = [&file](const QString& key, const QString& value) {
        if (!ProfileFile::setValue(file, u"ayar"_s, key, value))
            throw RuntimeError(folderFailure, u"Ayar dosyası yazılamadı: "_s + file);
    };
    write(u"ensonkikisayol"_s, u"1"_s);
    if (!plan.password.isEmpty()) {
        write(u"dbpass"_s, plan.password);
        // Blanks at its ends, quotes around it and letters outside the code page don't come back: no till
        // could open it.
        if (ProfileFile::value(file, u"ayar"_s, u"dbpass"_s) != plan.password)
            throw RuntimeError(unfitPassword, u"Bu parola ayar dosyasında tutulamıyor"_s);
    }
    for (int page = 1; page <= int(pageCaptions().size()); ++page)
        write(u"hizliurunkat"_s + QString::number(page), pageCaptions()[page - 1]);
    for (const QuickKey& key : catalogue.quickKeys()) {
        const QString page = QString::number(key.page);
        const QString slot = QString::number(key.slot);
        write(page + u"hizliurun"_s + slot, key.caption);
        write(page + u"hizlibarkod"_s + slot, key.barcode);
    }
}

void moveInto(const QDir& folder, const QDir& made) {
    const QStringList replaced{databaseName, databaseName + u"-wal"_s, databaseName + u"-shm"_s,
                               configurationName};
    for (const QString& name : replaced)
        if (folder.exists(name) && !QFile::remove(folder.filePath(name)))
            throw RuntimeError(folderFailure, u"Silinemedi: "_s + folder.filePath(name));
    for (const QString& name : {databaseName, configurationName})
        if (!QFile::rename(made.filePath(name), folder.filePath(name)))
            throw RuntimeError(folderFailure, u"Yazılamadı: "_s + folder.filePath(name));
}

}  // namespace

ShopSummary makeShop(const ShopPlan& plan) {
    const QDir folder(plan.folder);
    if (!plan.replace)
        for (const QString& name : {databaseName, olderDatabaseName, configurationName})
            if (folder.exists(name))
                throw RuntimeError(shopExists, u"Bu klasörde zaten bir dükkân var: "_s +
                                                   QDir::toNativeSeparators(folder.absoluteFilePath(name)));
    if (!folder.mkpath(u"."_s))
        throw RuntimeError(folderFailure, u"Klasör açılamadı: "_s + folder.absolutePath());
    const QTemporaryDir workshop(folder.filePath(u".demo-XXXXXX"_s));
    if (!workshop.isValid())
        throw RuntimeError(folderFailure, u"Klasöre yazılamıyor: "_s + workshop.errorString());

    ShopSummary summary;
    Random random(plan.seed);
    const Catalogue catalogue(plan.products, random);
    summary.products = catalogue.size();
    for (qsizetype number = 0; number < std::min(catalogue.size(), qsizetype(staples().size())); ++number)
        summary.weighed += staples()[size_t(number)].weighed ? 1 : 0;

    makeDatabase(workshop.filePath(databaseName), catalogue, plan, summary);
    makeConfiguration(workshop.filePath(configurationName), catalogue, plan);
    moveInto(folder, QDir(workshop.path()));
    return summary;
}

}  // namespace kovanix::demoshop
