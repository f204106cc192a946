#include <QAbstractItemModel>
#include <QClipboard>
#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QLabel>
#include <QStackedWidget>
#include <QtTest>

#include "desktop/messagebox.h"
#include "grafik/chartview.h"
#include "grafik/figureview.h"
#include "grafik/grafikwindow.h"
#include "paintedtext.h"
#include "pdfpages.h"
#include "rows.h"
#include "runtests.h"
#include "shopfixture.h"
#include "widgets/drawnbutton.h"
#include "widgets/drawnframe.h"
#include "widgets/dtpicker.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

struct PresetRow {
    QString button;
    QString words;
    QString turnover;
    std::size_t rows;
};

struct SizeRow {
    QSize size;
};

struct LettersRow {
    QSize size;
    QString division;
};

struct PrintRow {
    QString division;
    qsizetype pages;
    QStringList words;
};

}  // namespace

class WindowTest : public QObject {
    Q_OBJECT

    void sell(const QString& moment, double turnover, const QString& barcode = u"869"_s,
              const QString& name = u"Ekmek"_s) const {
        m_shop->run(
            u"INSERT INTO satislar (tarih, barkod, urun, adet, toplam, kar) VALUES ('%1', '%2', '%3', 1, "
            "%4, -1)"_s.arg(moment, barcode, name)
                .arg(turnover));
    }
    void open(QSize size = {1024, 768}) {
        m_window.emplace();
        m_window->setWindowState(Qt::WindowNoState);
        m_window->resize(size);
        m_window->show();
        QTRY_VERIFY(!m_window->isWorking());
    }
    void press(const QString& button) {
        m_window->findChild<DrawnButton*>(button)->click();
        QTRY_VERIFY(!m_window->isWorking());
    }
    template <class Control>
    Control& control(const QString& name) const {
        return *m_window->findChild<Control*>(name);
    }
    QString label(const QString& name) const { return control<QLabel>(name).text(); }
    QString words() const { return m_window->findChild<vkFrame*>()->titleNote(); }
    ChartView& chart() const { return control<ChartView>(u"grafik"_s); }
    FigureView& figures() const { return control<FigureView>(u"rakamlar"_s); }
    QStringList row(int number) const {
        QStringList cells;
        for (int column = 0; column < 4; ++column)
            cells << figures().model()->index(number, column).data().toString();
        return cells;
    }
    bool chartIsShown() const { return chart().isVisible(); }

private Q_SLOTS:
    void init() {
        m_shop.emplace();
        m_shop->openShop();
        m_shop->setNow(QDateTime(QDate(2026, 11, 22), QTime(15, 0)));
        qputenv("KOVANIX_DRIVE_C", QFile::encodeName(m_shop->file(u"drive"_s)));
    }
    void cleanup() {
        m_window.reset();
        qunsetenv("KOVANIX_DRIVE_C");
        qunsetenv("KOVANIX_PRINTER");
        QVERIFY(allAnswered(m_shop->boxes));
        m_shop.reset();
    }

    void presets_data() {
        addRows<PresetRow>(
            {{"today", {u"bugun"_s, u"22 Kasım 2026 Pazar"_s, u"1,00 TL"_s, 1}},
             {"yesterday", {u"dun"_s, u"21 Kasım 2026 Cumartesi"_s, u"10,00 TL"_s, 1}},
             {"8 days", {u"gun8"_s, u"15 – 22 Kasım 2026, 8 gün"_s, u"111,00 TL"_s, 8}},
             {"31 days", {u"gun31"_s, u"23 Ekim – 22 Kasım 2026, 31 gün"_s, u"1.111,00 TL"_s, 31}},
             {"month", {u"ay"_s, u"1 – 22 Kasım 2026, 22 gün"_s, u"111,00 TL"_s, 22}},
             {"year", {u"yil"_s, u"1 Ocak – 22 Kasım 2026, 326 gün"_s, u"11.111,00 TL"_s, 11}},
             {"all", {u"tumu"_s, u"31 Aralık 2025 – 22 Kasım 2026, 327 gün"_s, u"111.111,00 TL"_s, 12}}});
    }
    void presets() {
        QFETCH(const PresetRow, row);
        sell(u"2026-11-22 00:00:00"_s, 1);
        sell(u"2026-11-21 23:59:59"_s, 10);
        sell(u"2026-11-15 12:00:00"_s, 100);
        sell(u"2026-10-23 12:00:00"_s, 1000);
        sell(u"2026-01-01 12:00:00"_s, 10000);
        sell(u"2025-12-31 12:00:00"_s, 100000);
        open();
        QCOMPARE(label(u"tutar"_s), u"1,00 TL"_s);  // it opens on today
        press(row.button);
        QCOMPARE(words(), row.words);
        QCOMPARE(label(u"tutar"_s), row.turnover);
        QCOMPARE(figures().model()->rowCount(), row.rows);
        QVERIFY(control<DrawnButton>(row.button).isChecked());
        if (row.button != u"bugun")
            QVERIFY(!control<DrawnButton>(u"bugun"_s).isChecked());
    }

    void twoDates() {
        sell(u"2026-11-03 12:00:00"_s, 7);
        open();
        auto& first = control<DTPicker>(u"ilk"_s);
        first.setDate({2026, 11, 3});
        Q_EMIT first.change();
        QTRY_COMPARE(label(u"tutar"_s), u"7,00 TL"_s);
        QVERIFY(!control<DrawnButton>(u"bugun"_s).isChecked());
        QCOMPARE(words(), u"3 – 22 Kasım 2026, 20 gün"_s);
        auto& last = control<DTPicker>(u"son"_s);
        last.setDate({2026, 11, 1});
        Q_EMIT last.change();
        QTRY_VERIFY(!chartIsShown());
        QCOMPARE(words(), u"Başlangıç bitişten sonra"_s);
    }

    void theLastPressCounts() {
        sell(u"2026-11-21 12:00:00"_s, 10);
        open();
        for (const QString& button : {u"gun31"_s, u"tumu"_s, u"dun"_s})
            control<DrawnButton>(button).click();
        QTRY_COMPARE(label(u"tutar"_s), u"10,00 TL"_s);
        QTRY_VERIFY(!m_window->isWorking());
        QCOMPARE(words(), u"21 Kasım 2026 Cumartesi"_s);
    }

    void divisions() {
        for (int i = 0; i < 20; ++i)
            sell(u"2026-11-22 09:00:00"_s, 100 - i, QString::number(i), u"Ürün %1"_s.arg(i));
        open();
        press(u"saat"_s);
        QCOMPARE(figures().model()->rowCount(), 24);
        QCOMPARE(row(9), (QStringList{u"09:00 – 09:59"_s, u"20"_s, u"1.810,00"_s, u"-20,00"_s}));
        QCOMPARE(row(10), (QStringList{u"10:00 – 10:59"_s, u"0"_s, u"0,00"_s, u"0,00"_s}));
        press(u"urun"_s);
        QCOMPARE(figures().model()->rowCount(), 13);
        QCOMPARE(row(0).first(), u"Ürün 0"_s);
        QCOMPARE(row(12), (QStringList{u"Diğer ürünler (8)"_s, u"8"_s, u"676,00"_s, u"-8,00"_s}));
        press(u"gun"_s);
        QCOMPARE(row(0), (QStringList{u"22.11.2026 Pazar"_s, u"20"_s, u"1.810,00"_s, u"-20,00"_s}));
    }

    void nothingSold() {
        open();
        QVERIFY(!chartIsShown());
        QCOMPARE(label(u"tutar"_s), u"0,00 TL"_s);
        press(u"tumu"_s);
        QCOMPARE(words(), QString());
        sell(u"2026-11-22 09:00:00"_s, 5);
        press(u"bugun"_s);
        QVERIFY(chartIsShown());
    }

    void aTouchedBarTellsItsFigures() {
        sell(u"2026-11-22 09:00:00"_s, 5);
        open();
        press(u"saat"_s);
        const QRectF area = chart().chart()->plotArea();
        // High above a bar of its own height, and where there is none.
        const auto place = [&](int hour) {
            return QPointF(area.left() + area.width() * (hour + 0.5) / 24, area.top() + 3).toPoint();
        };
        QTest::mouseClick(chart().viewport(), Qt::LeftButton, {}, place(9));
        QCOMPARE(chart().chosen(), 9);
        QCOMPARE(figures().currentIndex().row(), 9);
        QCOMPARE(chart().accessibleDescription(),
                 u"09:00 – 09:59, Tutar 5,00 TL, Kazanç -1,00 TL, Miktar 1"_s);
        QTest::mouseClick(chart().viewport(), Qt::LeftButton, {}, place(3));
        QCOMPARE(chart().chosen(), 3);
        QTest::mouseClick(chart().viewport(), Qt::LeftButton, {}, place(3));
        QCOMPARE(chart().chosen(), -1);
        QVERIFY(!figures().selectionModel()->hasSelection());
        QTest::keyClick(&chart(), Qt::Key_Right);
        QTest::keyClick(&chart(), Qt::Key_Right);
        QCOMPARE(chart().chosen(), 1);
        QTest::keyClick(&chart(), Qt::Key_End);
        QTest::keyClick(&chart(), Qt::Key_Right);
        QCOMPARE(figures().currentIndex().row(), 23);
    }

    void aTouchedRowShowsItsBar() {
        sell(u"2026-11-22 09:00:00"_s, 5);
        open();
        press(u"gun8"_s);
        QTest::mouseClick(figures().viewport(), Qt::LeftButton, {},
                          figures().visualRect(figures().model()->index(2, 1)).center());
        QCOMPARE(chart().chosen(), 2);
        QTest::keyClick(&figures(), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), u"17.11.2026 Salı\t0\t0,00\t0,00"_s);
    }

    void theTableIsCopied() {
        for (int i = 0; i < 20; ++i)
            sell(u"2026-11-22 09:00:00"_s, 1000 + i, QString::number(i), u"Ürün %1"_s.arg(i));
        open();
        press(u"urun"_s);
        m_shop->boxes.expect(u"Satış grafiği"_s, u"Tablo kopyalandı. Hesap tablosuna yapıştırabilirsiniz."_s,
                             MessageBoxAnswer::ok);
        press(u"kopyala"_s);
        const QStringList lines = QGuiApplication::clipboard()->text().split(u"\r\n"_s);
        QCOMPARE(lines.size(), 23);  // with headings, sums and the last line's end: all products
        QCOMPARE(lines[1], u"Ürün 19\t19\t1\t1.019,00\t-1,00"_s);
        QCOMPARE(lines[21], u"Toplam\t\t20\t20.190,00\t-20,00"_s);
    }

    void theChartIsSavedAsAPicture() {
        sell(u"2026-11-22 09:00:00"_s, 5);
        open();
        const QString path = m_shop->file(u"drive/kovanix/grafik saat 2026-11-22 2026-11-22.png"_s);
        press(u"saat"_s);
        for (int i = 0; i < 2; ++i) {
            m_shop->boxes.expect(u"Satış grafiği"_s, u"Resim kaydedildi:\n"_s + path, MessageBoxAnswer::ok);
            press(u"resim"_s);
            QCOMPARE(QImage(path).size(), QSize(1600, 1000));
        }
        QVERIFY(QFile::remove(path) && QDir().mkpath(path));  // a folder is in the way
        m_shop->boxes.expect(u"Satış grafiği"_s, path + u" yazılamadı: bu bir dosya değil",
                             MessageBoxAnswer::ok);
        press(u"resim"_s);
    }

    void prints_data() {
        addRows<PrintRow>(
            {{"on one page",
              {u"gun"_s,
               1,
               {u"Günlere göre satışlar"_s, u"22 Kasım 2026 Pazar"_s, u"22.11.2026 Pazar 1 5,00 -1,00"_s,
                u"Toplam 1 5,00 -1,00"_s}}},
             {"table behind the chart",
              {u"saat"_s,
               2,
               {u"Saatlere göre satışlar"_s, u"09:00 – 09:59 1 5,00 -1,00"_s,
                u"Saatlere göre satışlar 22 Kasım 2026 Pazar\nSaat"_s, u"23:00 – 23:59 0 0,00 0,00"_s}}}});
    }
    void prints() {
        QFETCH(const PrintRow, row);
        qputenv("KOVANIX_PRINTER", "pdf:" + QFile::encodeName(m_shop->file(u"kagit"_s)));
        sell(u"2026-11-22 09:00:00"_s, 5);
        open();
        press(row.division);
        m_shop->boxes.expect(u"Satış grafiği"_s, u"Yazıcıya gönderildi."_s, MessageBoxAnswer::ok);
        press(u"yazdir"_s);
        const QList<QStringList> pages = pagesOf(m_shop->file(u"kagit/0001.pdf"_s));
        QCOMPARE(pages.size(), row.pages);
        const QString text = pages.front().join(u'\n') + u'\n' + pages.back().join(u'\n');
        for (const QString& part : row.words)
            QVERIFY2(text.contains(part), qPrintable(part + u" in\n" + text));
    }

    void noShop() {
        m_shop.emplace();
        m_shop->boxes.expect(u"Satış grafiği"_s, u"Dükkân bulunamadı: "_s + m_shop->databaseFile(),
                             MessageBoxAnswer::ok);
        open();
        QTRY_COMPARE(m_shop->boxes.answered(), 1);
        QCOMPARE(figures().model()->rowCount(), 0);
        QVERIFY(!QFileInfo::exists(m_shop->databaseFile()));
    }

    void sizes_data() {
        addRows<SizeRow>({{"800x600", {{800, 600}}},
                          {"800x600, less a title bar and a panel", {{800, 552}}},
                          {"1024x768", {{1024, 768}}},
                          {"1366x768", {{1366, 768}}},
                          {"1920x1080", {{1920, 1080}}}});
    }
    void sizes() {
        QFETCH(const SizeRow, row);
        for (int i = 0; i < 20; ++i)
            sell(u"2026-11-22 09:00:00"_s, 123456.78, QString::number(i),
                 u"Elli harflik uzun ürün adı elli harflik uzun ü %1"_s.arg(i, 2));
        open(row.size);
        press(u"urun"_s);
        QCOMPARE(m_window->size(), row.size);
        const auto buttons = m_window->findChildren<DrawnButton*>();
        constexpr int target = 44;
        for (const DrawnButton* button : buttons) {
            QVERIFY2(button->height() >= target && button->width() >= target,
                     qPrintable(button->objectName()));
            QVERIFY(m_window->rect().contains(QRect(button->mapTo(&*m_window, QPoint()), button->size())));
        }
        for (const QString& name : {u"miktar"_s, u"tutar"_s, u"kazanc"_s}) {
            const auto& text = control<QLabel>(name);
            QTRY_VERIFY(text.width() >= text.sizeHint().width());
        }
        // A third of the table for the names, and no numbers cut.
        int width = 0;
        for (int column = 0; column < 4; ++column)
            width += figures().columnWidth(column);
        QVERIFY(std::abs(width - figures().viewport()->width()) <= 1);
        QVERIFY(figures().columnWidth(0) * 3 >= figures().viewport()->width() - 3);
    }

    void theTableHasLettersOfOneSize_data() {
        addRows<LettersRow>({{"days at 800x600", {{800, 600}, u"gun"_s}},
                             {"hours at 800x600", {{800, 600}, u"saat"_s}},
                             {"products at 800x600", {{800, 600}, u"urun"_s}},
                             {"days at 1024x768", {{1024, 768}, u"gun"_s}},
                             {"products at 1024x768", {{1024, 768}, u"urun"_s}},
                             {"products at 1920x1080", {{1920, 1080}, u"urun"_s}}});
    }
    void theTableHasLettersOfOneSize() {
        QFETCH(const LettersRow, row);
        sell(u"2026-11-22 09:00:00"_s, 1, u"1"_s, u"Çay"_s);
        sell(u"2026-11-22 10:00:00"_s, 123456.78, u"2"_s,
             u"Elli harflik uzun ürün adı elli harflik uzun ü 50"_s);
        open(row.size);
        press(u"gun8"_s);
        press(row.division);
        const QWidget& rows = *figures().viewport();
        const QRect table(rows.mapTo(&*m_window, QPoint()), rows.size());
        QSet<int> sizes;
        QStringList shown;
        for (const PaintedText& text : paintedTexts(*m_window)) {
            if (!table.contains(text.place))
                continue;
            sizes << text.letters;
            shown << text.text;
        }
        QCOMPARE(sizes.size(), 1);
        QVERIFY2(*sizes.cbegin() >= 11, qPrintable(QString::number(*sizes.cbegin())));
        // The first row is whole, its name perhaps in several lines that end behind words.
        const QString cells = this->row(0).join(u' ');
        const QString painted = shown.join(u' ');
        QVERIFY2(painted.startsWith(cells), qPrintable(cells + u" in " + painted));
    }

private:
    std::optional<ShopFixture> m_shop;
    std::optional<GrafikWindow> m_window;
};

int main(int argc, char** argv) {
    return runTests<WindowTest>(argc, argv);
}
#include "test_window.moc"
