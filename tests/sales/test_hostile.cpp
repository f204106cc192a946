#include <QLineEdit>

#include "app/modTurkce.h"
#include "data/baglanmamodulu.h"
#include "salestest.h"
#include "values/numbers.h"

using namespace kovanix;

namespace {

QString onlyOf(const QString& text, const QString& allowed) {
    QString left;
    for (const QChar character : text) {
        if (allowed.contains(character))
            left.append(character);
    }
    return left;
}

double quantityOf(const QString& text) {
    return toNumber(text).value_or(1);
}

/// What the ticket can't show: it is wiped then.
bool overflows(double total) {
    return format(total, u"##0.00").size() >= 26;
}

}  // namespace

/// Every text field of the screen against texts that break out of a statement, a number or a line: they must
/// arrive as they are, and change no row but those that the action is for.
class HostileTest : public SalesTest {
    Q_OBJECT

    struct HostileRow {
        QString text;
        bool typed;  ///< or pasted
    };

    const QString digits = "0123456789";
    const QString digitsAndComma = ",0123456789";

    static void addRows() {
        QTest::addColumn<HostileRow>("row");
        const std::pair<const char*, QString> texts[] = {
            {"an apostrophe", "'"},
            {"two apostrophes", "''"},
            {"a comment", "';--"},
            {"a statement", "'; DROP TABLE urunler;--"},
            {"a percent sign", "%"},
            {"a bracket", "["},
            {"a date literal", "#1/1/2020#"},
            {"a quotation mark", "\""},
            {"an escaped zero", "\\0"},
            {"1,000 characters", QString("ab'%").repeated(250)},
            {"1,000 digits", QString("1234567890").repeated(100)},
            {"an emoji", "🍞👩‍🌾"},
            {"marks of writing direction", QString::fromUtf16(u"\u200Fabc\u202Exyz")},
            {"NULL", "NULL"},
            {"a negative number", "-1"},
            {"a huge number", "1e308"},
            {"a part of the connection's text", "x;Data Source=x"},
            {"the same, bare", ";Data Source=x"},
            {"commas", ",,1,,"},
        };
        for (const bool typed : {true, false}) {
            for (const auto& [name, text] : texts)
                QTest::addRow("%s: %s", typed ? "typed" : "pasted", name) << HostileRow{text, typed};
        }
    }

    /// Puts the row's text into a field the row's way.
    void put(QLineEdit& field) const {
        QFETCH(const HostileRow, row);
        field.setFocus();
        if (row.typed)
            m_shop->type(row.text);
        else
            paste(field, row.text);
    }
    /// What arrives in a field whose keys take only some characters; pasted text passes.
    static QString arriving(const QString& keys) {
        QFETCH(const HostileRow, row);
        return row.typed ? onlyOf(row.text, keys) : row.text;
    }
    static bool isTyped() {
        QFETCH(const HostileRow, row);
        return row.typed;
    }

    /// The tables that no test here may change, and the names of all.
    QMap<QString, QList<QVariantList>> others() const {
        auto found = tables();
        for (const char* table : {"urunler", "satislar", "sqlite_sequence"})
            found.remove(table);
        return found;
    }
    QList<QVariantList> allProducts() const {
        return m_shop->rows("SELECT barkod, urun, alis, satis, stok FROM urunler ORDER BY no");
    }
    void noteTables() {
        m_others = others();
        m_products = allProducts();
        QVERIFY(m_products.size() >= 5);
        QVERIFY(m_others.size() >= 3);
    }
    /// Nothing in the file has changed but what m_products says and these sales.
    void compareTables(const QList<QVariantList>& sold = {}) const {
        QCOMPARE(soldLines(), sold);
        QCOMPARE(allProducts(), m_products);
        QCOMPARE(others(), m_others);
    }
    void scanBread() const {
        ui().barkod->setFocus();
        m_shop->scan(goods::bread);
    }
    void commit() const {
        ui().barkod->setFocus();
        m_shop->key(Qt::Key_F1);
    }
    void commitNothing() const {
        m_shop->boxes.expect("Bilgi", "önce satış yapın", MessageBoxAnswer::ok);
        commit();
    }
    void expectOverflow() const {
        m_shop->boxes.expect("Bilgi", "LüTFEN DAHA AZ BASAMAKLI SAYI GÖRüNüZ", MessageBoxAnswer::ok);
    }
    /// The row of a sale of bread, and its effect on the stock. A total beyond all numbers is stored as 0.
    QVariantList soldBread(double quantity, double price) {
        m_products[0][4] = 10 - quantity;
        const double total = quantity * price;
        const double profit = total - quantity * 7;
        return {goods::bread,
                "Köy Ekmeği",
                quantity,
                price,
                7.0,
                qIsFinite(profit) ? profit : 0.0,
                qIsFinite(total) ? total : 0.0};
    }
    /// A product named by the row's text is added through the test's own connection.
    void addNamed(const QString& barcode) {
        QFETCH(const HostileRow, row);
        m_shop->addProduct(barcode, row.text, 2, 3);
        m_products.append({barcode, row.text, 2.0, 3.0, 10.0});
    }

    /// Everything that a case can leave behind: the file, what the screen shows, and which panels stand open.
    struct State {
        QMap<QString, QList<QVariantList>> tables;
        QMap<QString, QString> texts;
        QStringList visible;

        bool operator==(const State&) const = default;
    };
    State state() const {
        State found{tables(), texts(), {}};
        for (const QWidget* control : m_shop->sales().findChildren<QWidget*>()) {
            if (control->isVisible())
                found.visible.append(control->objectName());
        }
        return found;
    }
    /// Brings the shop of the case before back to its start. @return whether nothing of that case is left
    bool restored() {
        m_shop->run("DELETE FROM satislar");
        m_shop->run("DELETE FROM urunler WHERE no > 5");
        m_shop->run("UPDATE urunler SET stok = 10 WHERE barkod = '" + goods::bread + "'");
        m_shop->run("UPDATE sqlite_sequence SET seq = 5 WHERE name = 'urunler'");
        m_shop->run("DELETE FROM sqlite_sequence WHERE name = 'satislar'");
        for (QWidget* panel : {ui().urunbulunamadiframesi, ui().fiyatgorframe, ui().urunislemleri})
            panel->hide();
        for (auto* field : m_shop->sales().findChildren<QLineEdit*>())
            field->setText(m_start.texts.value(field->objectName()));
        ui().urununadi->clear();
        m_shop->sales().satistemizle();
        ui().barkod->setFocus();
        return state() == m_start;
    }

    State m_start;
    QMap<QString, QList<QVariantList>> m_others;
    QList<QVariantList> m_products;

private Q_SLOTS:
    // Most cases leave a screen that can be used again, which is much cheaper than a new one.
    void init() {
        if (m_shop && restored())
            return;
        openShop();
        m_start = state();
    }
    void cleanup() {
        const bool answered = allAnswered(m_shop->boxes);
        if (!answered)
            m_shop.reset();
        QVERIFY(answered);
    }
    void cleanupTestCase() { closeShop(); }

    void barkod_data() { addRows(); }
    void barkod() {
        QFETCH(const HostileRow, row);
        noteTables();
        const QString arrived = arriving(digits);
        put(*ui().barkod);
        QCOMPARE(ui().barkod->text(), arrived);
        m_shop->key(Qt::Key_Return);
        QCOMPARE(ui().urunbulunamadiframesi->isVisible(), sayicevir(arrived) != 0);
        if (ui().urunbulunamadiframesi->isVisible()) {
            QCOMPARE(ui().bulunulamayaurun->text(), arrived);
            press(*ui().urunbulunamadikapat);
        }
        QCOMPARE(ui().barkod->text(), "");
        QCOMPARE(m_shop->lines(), 0);
        compareTables();
        if (arrived.isEmpty())
            return;

        addNamed(arrived);
        put(*ui().barkod);
        m_shop->key(Qt::Key_Return);
        QCOMPARE(m_shop->line(1), (QStringList{arrived, row.text, "1", "3,00", "3,00"}));
        put(*ui().barkod);
        m_shop->key(Qt::Key_Return);
        QCOMPARE(m_shop->line(1), (QStringList{arrived, row.text, "2", "3,00", "6,00"}));
        commit();
        m_products.last()[4] = 8.0;
        compareTables({{arrived, row.text, 2.0, 3.0, 2.0, 2.0, 6.0}});
    }

    void adet_data() { addRows(); }
    void adet() {
        noteTables();
        QString arrived = arriving(digitsAndComma);
        QString passedOn;
        if (isTyped() && arrived.size() > 8) {
            m_shop->boxes.expect("Bilgi", "Adet miktarı 8 basamaktan fazla olamaz", MessageBoxAnswer::ok);
            passedOn = arrived.mid(9);  // the ninth is lost with the rest of the quantity
            arrived.clear();
        }
        put(*ui().adet);
        QCOMPARE(ui().adet->text(), arrived);
        QCOMPARE(ui().barkod->text(), passedOn);
        ui().barkod->clear();
        scanBread();
        QCOMPARE(m_shop->line(1).at(2), isNumeric(arrived) ? arrived : "1");
        commit();
        compareTables({soldBread(quantityOf(arrived), 10)});
    }

    void ver2_data() { addRows(); }
    void ver2() {
        noteTables();
        const QString arrived = arriving(digitsAndComma);
        put(*ui().ver2);
        QCOMPARE(m_shop->ver2(), arrived.isEmpty() ? "0,00" : arrived);
        if (isNumeric(arrived))
            QCOMPARE(m_shop->verilen(), numberText(*toNumber(arrived)));
        m_shop->key(Qt::Key_Return);
        QVERIFY(ui().barkod->hasFocus());
        scanBread();
        QCOMPARE(m_shop->toplam(), "10,00");
        commit();
        compareTables({soldBread(1, 10)});
    }

    void adetdegis_data() { addRows(); }
    void adetdegis() {
        noteTables();
        const QString arrived = arriving(digitsAndComma);
        scanBread();
        pressCell(1, 3);
        press(*ui().adetdegis);
        put(*ui().adetdegis);
        QCOMPARE(ui().adetdegis->text(), arrived);
        press(*ui().urunislemlerikapat);
        QCOMPARE(m_shop->line(1).mid(0, 4),
                 (QStringList{goods::bread, "Köy Ekmeği", isNumeric(arrived) ? arrived : "1", "10,00"}));
        commit();
        compareTables({soldBread(quantityOf(arrived), 10)});
    }

    void fiyatdegis_data() { addRows(); }
    void fiyatdegis() {
        noteTables();
        const QString arrived = arriving(digitsAndComma);
        const double price = toNumber(arrived).value_or(10);
        scanBread();
        pressCell(1, 4);
        press(*ui().fiyatdegis);
        put(*ui().fiyatdegis);
        QCOMPARE(ui().fiyatdegis->text(), arrived);
        if (overflows(price)) {
            expectOverflow();
            press(*ui().urunislemlerikapat);
            QCOMPARE(m_shop->lines(), 0);
            commitNothing();
            compareTables();
            return;
        }
        press(*ui().urunislemlerikapat);
        QCOMPARE(m_shop->line(1).at(3), format(price, u"###,###,##0.00"));
        commit();
        compareTables({soldBread(1, price)});
    }

    void bulunulamayaurun_data() { addRows(); }
    void bulunulamayaurun() {
        QFETCH(const HostileRow, row);
        noteTables();
        m_shop->scan(unknown);
        ui().bulunulamayaurun->clear();
        put(*ui().bulunulamayaurun);
        QCOMPARE(ui().bulunulamayaurun->text(), row.text);
        pressKeys("bununamayanurunfiyat", {18});
        press(*ui().urunbuunamadikaydet);
        m_products.append({row.text, "", 5.0, 5.0, 1.0});
        compareTables();
        QCOMPARE(m_shop->line(1), (QStringList{row.text, "", "1", "5,00", "5,00"}));
        commit();
        m_products.last()[4] = 0.0;
        compareTables({{row.text, "", 1.0, 5.0, 5.0, 0.0, 5.0}});
    }

    void urunadi_data() { addRows(); }
    void urunadi() {
        QFETCH(const HostileRow, row);
        noteTables();
        const QString stored = buyukharf(row.text).left(50);
        m_shop->scan(unknown);
        put(*ui().urunadi);
        QCOMPARE(ui().urunadi->text(), row.typed ? buyukharf(row.text) : row.text);
        pressKeys("bununamayanurunfiyat", {18});
        press(*ui().urunbuunamadikaydet);
        m_products.append({unknown, stored, 5.0, 5.0, 1.0});
        compareTables();
        QCOMPARE(m_shop->line(1), (QStringList{unknown, stored, "1", "5,00", "5,00"}));
        commit();
        m_products.last()[4] = 0.0;
        compareTables({{unknown, stored, 1.0, 5.0, 5.0, 0.0, 5.0}});
    }

    void urunsatisi_data() { addRows(); }
    void urunsatisi() {
        noteTables();
        // The field empties itself as soon as it holds no number.
        QString arrived;
        if (isTyped()) {
            for (const QChar character : arriving(digitsAndComma)) {
                arrived.append(character);
                if (!isNumeric(arrived))
                    arrived.clear();
            }
        } else if (isNumeric(arriving({}))) {
            arrived = arriving({});
        }
        m_shop->scan(unknown);
        put(*ui().urunsatisi);
        QCOMPARE(ui().urunsatisi->text(), arrived);
        if (arrived.isEmpty()) {
            m_shop->boxes.expect("    ", "Satış fiyatı mutlaka girilmelidir", MessageBoxAnswer::ok);
            press(*ui().urunbuunamadikaydet);
            compareTables();
            return;
        }
        const double price = *toNumber(arrived);
        if (overflows(price))
            expectOverflow();
        press(*ui().urunbuunamadikaydet);
        m_products.append({unknown, "", price, price, 1.0});
        compareTables();
        if (overflows(price)) {
            QCOMPARE(m_shop->lines(), 0);
            commitNothing();
            compareTables();
            return;
        }
        QCOMPARE(m_shop->line(1).at(3), format(price, u"###,###,##0.00"));
        commit();
        m_products.last()[4] = 0.0;
        compareTables({{unknown, "", 1.0, price, price, 0.0, price}});
    }

    void fiyargorbarkodu_data() { addRows(); }
    void fiyargorbarkodu() {
        QFETCH(const HostileRow, row);
        noteTables();
        const QString arrived = arriving(digits);
        m_shop->key(Qt::Key_F4);
        put(*ui().fiyargorbarkodu);
        QCOMPARE(ui().fiyargorbarkodu->text(), arrived);
        m_shop->boxes.expect("Bilgi", arrived.isEmpty() ? "önce ürün barkod okutun " : "ÜRÜN BULUNAMADI",
                             MessageBoxAnswer::ok);
        m_shop->key(Qt::Key_Return);
        compareTables();
        if (arrived.isEmpty())
            return;

        addNamed(arrived);
        put(*ui().fiyargorbarkodu);
        m_shop->key(Qt::Key_Return);
        QCOMPARE((QStringList{ui().fiyargorbarkodu2->text(), ui().fiyargoradi->text(),
                              ui().fiyargorfiyati->text()}),
                 (QStringList{arrived, row.text, "3,00"}));
        compareTables();
    }
};

int main(int argc, char** argv) {
    return runTests<HostileTest>(argc, argv);
}

#include "test_hostile.moc"
