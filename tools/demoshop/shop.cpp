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

namespace {

constexpr int folderFailure = 75;  // path or file access error
constexpr int shopExists = 58;     // file already exists
constexpr int unfitPassword = 5;   // invalid argument
constexpr qsizetype readyMadeWanted = 240;
constexpr int customerCount = 24;
constexpr quint64 historySeed = 0x9E3779B97F4A7C15;

const QString databaseName = QStringLiteral("kovanix.data");
const QString olderDatabaseName = QStringLiteral("kovanix.mdb");
const QString configurationName = QStringLiteral("Kovanix.config");

QString connectionText(const QString& file, const QString& password) {
    const QString text = QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=") + file +
                         QStringLiteral(";Persist Security Info=False");
    return password.isEmpty() ? text : text + QStringLiteral(";Jet OLEDB:Database Password=") + password;
}

void fillProducts(BulkWriter& rows, const QString& table, const Catalogue& catalogue, qsizetype from) {
    rows.into(table, {QStringLiteral("barkod"), QStringLiteral("urun"), QStringLiteral("alis"),
                      QStringLiteral("satis"), QStringLiteral("stok")});
    for (qsizetype number = from; number < catalogue.size(); ++number) {
        const Product product = catalogue.at(number);
        rows.add({product.barcode, product.name, product.purchase, product.sale, product.stock});
    }
}

void fillSales(BulkWriter& rows, const Catalogue& catalogue, const ShopPlan& plan, ShopSummary& summary) {
    rows.into(QStringLiteral("satislar"),
              QStringLiteral("tarih,barkod,urun,adet,fiyat,alis,kar,toplam,satis").split(u','));
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
    rows.into(QStringLiteral("kullanici"),
              {QStringLiteral("personeladi"), QStringLiteral("sifre"), QStringLiteral("yetki")});
    rows.add({QStringLiteral("Ayşe"), QStringLiteral(""), QStringLiteral("Yönetici")});
    rows.add({QStringLiteral("Mehmet"), QStringLiteral(""), QStringLiteral("Kasiyer")});
}

void fillCustomers(BulkWriter& rows, quint64 seed) {
    const std::array<QStringView, 12> first{u"Zeynep", u"Hüseyin", u"Şule", u"İbrahim", u"Gülay", u"Oğuz",
                                            u"Elif",   u"Cemal",   u"Işıl", u"Turgut",  u"Nuran", u"Yiğit"};
    const std::array<QStringView, 12> last{u"Aydoğan", u"Çınar",  u"Işık",    u"Demirağ",
                                           u"Göçmen",  u"Özsoy",  u"Şahiner", u"Tunç",
                                           u"Ulusoy",  u"Yıldız", u"Kaplan",  u"Eryılmaz"};
    const std::array<QStringView, 6> streets{u"Ihlamur Sk.",       u"Çınarlı Cd.", u"Gül Sk.",
                                             u"Değirmen Yolu Sk.", u"Okul Cd.",    u"Üzüm Sk."};
    rows.into(QStringLiteral("musteri"),
              {QStringLiteral("adi"), QStringLiteral("telefon"), QStringLiteral("adres")});
    Random random(seed);
    for (int number = 0; number < customerCount; ++number) {
        const QString name =
            QStringLiteral("%1 %2").arg(first[random.below(first.size())], last[random.below(last.size())]);
        const QString telephone = QStringLiteral("0500 000 %1 %2")
                                      .arg(random.between(0, 99), 2, 10, QChar(u'0'))
                                      .arg(random.between(0, 99), 2, 10, QChar(u'0'));
        const QString address = QStringLiteral("%1 No: %2 D: %3")
                                    .arg(streets[random.below(streets.size())])
                                    .arg(random.between(1, 90))
                                    .arg(random.between(1, 12));
        rows.add({name, telephone, address});
    }
}

void makeTables(const QString& file, const QString& password) {
    // The till opens files but makes none: an empty file is the seed of a new database.
    QFile empty(file);
    if (!empty.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        throw RuntimeError(folderFailure, empty.errorString(), QStringLiteral("demo shop"));
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
        fillProducts(rows, QStringLiteral("urunler"), catalogue, 0);
        // Drawn with the seed of the shop's own products, a longer row begins with the very same ones.
        Random random(plan.seed);
        summary.readyMade =
            std::clamp<qsizetype>(Catalogue::varietyCount() - plan.products, 0, readyMadeWanted);
        const Catalogue longer(plan.products + summary.readyMade, random);
        fillProducts(rows, QStringLiteral("urunler_hazir"), longer, plan.products);
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
        if (!ProfileFile::setValue(file, QStringLiteral("ayar"), key, value))
            throw RuntimeError(folderFailure, QStringLiteral("Ayar dosyası yazılamadı: ") + file);
    };
    write(QStringLiteral("ensonkikisayol"), QStringLiteral("1"));
    if (!plan.password.isEmpty()) {
        write(QStringLiteral("dbpass"), plan.password);
        // Blanks at its ends, quotes around it and letters outside the code page don't come back: no till
        // could open it.
        if (ProfileFile::value(file, QStringLiteral("ayar"), QStringLiteral("dbpass")) != plan.password)
            throw RuntimeError(unfitPassword, QStringLiteral("Bu parola ayar dosyasında tutulamıyor"));
    }
    for (int page = 1; page <= int(pageCaptions().size()); ++page)
        write(QStringLiteral("hizliurunkat") + QString::number(page), pageCaptions()[page - 1]);
    for (const QuickKey& key : catalogue.quickKeys()) {
        const QString page = QString::number(key.page);
        const QString slot = QString::number(key.slot);
        write(page + QStringLiteral("hizliurun") + slot, key.caption);
        write(page + QStringLiteral("hizlibarkod") + slot, key.barcode);
    }
}

void moveInto(const QDir& folder, const QDir& made) {
    const QStringList replaced{databaseName, databaseName + QStringLiteral("-wal"),
                               databaseName + QStringLiteral("-shm"), configurationName};
    for (const QString& name : replaced)
        if (folder.exists(name) && !QFile::remove(folder.filePath(name)))
            throw RuntimeError(folderFailure, QStringLiteral("Silinemedi: ") + folder.filePath(name));
    for (const QString& name : {databaseName, configurationName})
        if (!QFile::rename(made.filePath(name), folder.filePath(name)))
            throw RuntimeError(folderFailure, QStringLiteral("Yazılamadı: ") + folder.filePath(name));
}

}  // namespace

ShopSummary makeShop(const ShopPlan& plan) {
    const QDir folder(plan.folder);
    if (!plan.replace)
        for (const QString& name : {databaseName, olderDatabaseName, configurationName})
            if (folder.exists(name))
                throw RuntimeError(shopExists, QStringLiteral("Bu klasörde zaten bir dükkân var: ") +
                                                   QDir::toNativeSeparators(folder.absoluteFilePath(name)));
    if (!folder.mkpath(QStringLiteral(".")))
        throw RuntimeError(folderFailure, QStringLiteral("Klasör açılamadı: ") + folder.absolutePath());
    const QTemporaryDir workshop(folder.filePath(QStringLiteral(".demo-XXXXXX")));
    if (!workshop.isValid())
        throw RuntimeError(folderFailure, QStringLiteral("Klasöre yazılamıyor: ") + workshop.errorString());

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
