// Makes a demo shop's folder: what a newcomer tries the till on, and what the benchmarks run against.

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QLocale>
#include <QTextStream>
#include <optional>

#include "app/frame.h"
#include "runtime/runtimeerror.h"
#include "shop.h"

using namespace Qt::StringLiterals;

namespace {

using kovanix::demoshop::ShopPlan;
using kovanix::demoshop::ShopSummary;

constexpr int wrongUsage = 2;
constexpr qsizetype mostRows = 50'000'000;

/// A number of rows from the command line; nothing when it isn't one.
std::optional<qsizetype> rowCount(const QString& text) {
    bool ok = false;
    const qsizetype count = text.toLongLong(&ok);
    return ok && count >= 0 && count <= mostRows ? std::optional(count) : std::nullopt;
}

void tell(QTextStream& out, const ShopPlan& plan, const ShopSummary& made) {
    const QLocale turkish(QLocale::Turkish, QLocale::Turkey);
    const auto count = [&turkish](qsizetype number) { return turkish.toString(qlonglong(number)); };
    const auto date = [](QDate day) { return day.toString(u"dd.MM.yyyy"_s); };
    out << "Demo dükkân hazır: " << QDir::toNativeSeparators(QDir(plan.folder).absolutePath()) << '\n';
    out << "  " << count(made.products) << " ürün (" << count(made.weighed) << " tanesi tartıyla satılır)\n";
    if (made.sales > 0)
        out << "  " << count(made.sales) << " satış satırı, " << date(made.firstSale) << " - "
            << date(made.lastSale) << '\n';
    out << "  " << count(made.customers) << " müşteri, " << count(made.readyMade) << " hazır ürün tanımı\n";
    out << "  Kullanıcılar: Ayşe (Yönetici) ve Mehmet (Kasiyer), şifreleri boş\n";
    if (!plan.password.isEmpty())
        out << "  Veritabanı parolalıdır; parola Kovanix.config dosyasında durur\n";
}

}  // namespace

int main(int argc, char* argv[]) {
    const QCoreApplication application(argc, argv);
    kovanix::nameApplication();
    QCoreApplication::setApplicationName(u"kovanix-demo-shop"_s);
    QTextStream out(stdout);
    QTextStream errors(stderr);

    const ShopPlan usual;
    const QCommandLineOption folder(u"folder"_s, u"Dükkânın klasörü."_s, u"DIR"_s);
    const QCommandLineOption products(u"products"_s, u"Ürün sayısı."_s, u"N"_s,
                                      QString::number(usual.products));
    const QCommandLineOption sales(u"sales"_s, u"Satış satırı sayısı."_s, u"N"_s,
                                   QString::number(usual.sales));
    const QCommandLineOption seed(u"seed"_s, u"Aynı sayı aynı dükkânı verir."_s, u"S"_s,
                                  QString::number(usual.seed));
    const QCommandLineOption password(u"password"_s, u"Veritabanı dosyasının parolası."_s, u"P"_s);
    const QCommandLineOption today(
        u"today"_s, u"Son satış günü (YYYY-MM-DD)."_s, u"DATE"_s,
        QDate::currentDate().addDays(-1).toString(Qt::ISODate));  // today is the newcomer's own
    const QCommandLineOption force(u"force"_s, u"Klasördeki dükkânı silip yenisini kurar."_s);
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Kovanix için deneme dükkânı kurar."_s);
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions({folder, products, sales, seed, password, today, force});
    parser.process(application);

    const auto wrong = [&errors](const QString& what) {
        errors << "kovanix-demo-shop: " << what << '\n';
        return wrongUsage;
    };
    if (!parser.isSet(folder) || parser.value(folder).isEmpty())
        return wrong(u"--folder gerekli"_s);
    const auto productCount = rowCount(parser.value(products));
    const auto saleCount = rowCount(parser.value(sales));
    bool seedIsNumber = false;
    const quint64 seedNumber = parser.value(seed).toULongLong(&seedIsNumber);
    const QDate lastDay = QDate::fromString(parser.value(today), Qt::ISODate);
    if (!productCount)
        return wrong(u"--products: geçersiz sayı: "_s + parser.value(products));
    if (!saleCount)
        return wrong(u"--sales: geçersiz sayı: "_s + parser.value(sales));
    if (!seedIsNumber)
        return wrong(u"--seed: geçersiz sayı: "_s + parser.value(seed));
    if (!lastDay.isValid())
        return wrong(u"--today: geçersiz tarih: "_s + parser.value(today));

    try {
        const ShopPlan plan{parser.value(folder),   *productCount, *saleCount,         seedNumber,
                            parser.value(password), lastDay,       parser.isSet(force)};
        tell(out, plan, makeShop(plan));
    } catch (const kovanix::RuntimeError& error) {
        errors << "kovanix-demo-shop: " << error.description() << '\n';
        return 1;
    }
    return 0;
}
