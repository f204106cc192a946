// Makes a demo shop's folder: what a newcomer tries the till on, and what the benchmarks run against.

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QLocale>
#include <QTextStream>
#include <optional>

#include "runtime/runtimeerror.h"
#include "shop.h"

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
    const auto date = [](QDate day) { return day.toString(QStringLiteral("dd.MM.yyyy")); };
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
    QCoreApplication::setApplicationName(QStringLiteral("kovanix-demo-shop"));
    QTextStream out(stdout);
    QTextStream errors(stderr);

    const ShopPlan usual;
    const QCommandLineOption folder(QStringLiteral("folder"), QStringLiteral("Dükkânın klasörü."),
                                    QStringLiteral("DIR"));
    const QCommandLineOption products(QStringLiteral("products"), QStringLiteral("Ürün sayısı."),
                                      QStringLiteral("N"), QString::number(usual.products));
    const QCommandLineOption sales(QStringLiteral("sales"), QStringLiteral("Satış satırı sayısı."),
                                   QStringLiteral("N"), QString::number(usual.sales));
    const QCommandLineOption seed(QStringLiteral("seed"), QStringLiteral("Aynı sayı aynı dükkânı verir."),
                                  QStringLiteral("S"), QString::number(usual.seed));
    const QCommandLineOption password(QStringLiteral("password"),
                                      QStringLiteral("Veritabanı dosyasının parolası."), QStringLiteral("P"));
    const QCommandLineOption today(
        QStringLiteral("today"), QStringLiteral("Son satış günü (YYYY-MM-DD)."), QStringLiteral("DATE"),
        QDate::currentDate().addDays(-1).toString(Qt::ISODate));  // today is the newcomer's own
    const QCommandLineOption force(QStringLiteral("force"),
                                   QStringLiteral("Klasördeki dükkânı silip yenisini kurar."));
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Kovanix için deneme dükkânı kurar."));
    parser.addHelpOption();
    parser.addOptions({folder, products, sales, seed, password, today, force});
    parser.process(application);

    const auto wrong = [&errors](const QString& what) {
        errors << "kovanix-demo-shop: " << what << '\n';
        return wrongUsage;
    };
    if (!parser.isSet(folder) || parser.value(folder).isEmpty())
        return wrong(QStringLiteral("--folder gerekli"));
    const auto productCount = rowCount(parser.value(products));
    const auto saleCount = rowCount(parser.value(sales));
    bool seedIsNumber = false;
    const quint64 seedNumber = parser.value(seed).toULongLong(&seedIsNumber);
    const QDate lastDay = QDate::fromString(parser.value(today), Qt::ISODate);
    if (!productCount)
        return wrong(QStringLiteral("--products: geçersiz sayı: ") + parser.value(products));
    if (!saleCount)
        return wrong(QStringLiteral("--sales: geçersiz sayı: ") + parser.value(sales));
    if (!seedIsNumber)
        return wrong(QStringLiteral("--seed: geçersiz sayı: ") + parser.value(seed));
    if (!lastDay.isValid())
        return wrong(QStringLiteral("--today: geçersiz tarih: ") + parser.value(today));

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
