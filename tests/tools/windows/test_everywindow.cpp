#include <QAbstractButton>
#include <QAccessible>
#include <QButtonGroup>
#include <QLocale>
#include <QScrollBar>
#include <QTreeView>
#include <algorithm>
#include <memory>

#include "aktar/aktarwindow.h"
#include "desktop/messagebox.h"
#include "desktop/screensize.h"
#include "focuslog.h"
#include "grafik/grafikwindow.h"
#include "kit/filedialog.h"
#include "paintedtext.h"
#include "programs.h"
#include "rows.h"
#include "runtests.h"
#include "screencontract.h"
#include "widgets/activeresize.h"
#include "widgets/drawnbutton.h"
#include "widgets/face.h"
#include "yedek/lastcopycard.h"
#include "yedek/window.h"
#include "yedekfixture.h"

using namespace Qt::StringLiterals;

namespace kovanix {

class EveryWindowTest;

/// A page of a window, or a dialog.
struct PageRow {
    const char* name;
    QWidget& (EveryWindowTest::*open)();  ///< opens it the way the user does
};

struct CardRow {
    QWidget& (EveryWindowTest::*open)();
    QString words;
    QString hint;  ///< within it
};

struct SizeRow : PageRow {
    QSize display;
};

class EveryWindowTest : public QObject, yedek::BackupCase {
    Q_OBJECT

    std::unique_ptr<ToolWindow> m_window;

    template <class Window, class... Arguments>
    ToolWindow& open(const Arguments&... arguments) {
        m_window = std::make_unique<Window>(arguments...);
        if (m_window->windowState().testFlag(Qt::WindowMaximized)) {
            m_window->setWindowState(Qt::WindowNoState);
            m_window->resize(screenMetrics().pixels);
        }
        m_window->show();
        m_window->activateWindow();
        if (!QTest::qWaitFor([this] { return m_window->isActiveWindow() && !m_window->isWorking(); }))
            qFatal("it doesn't open");
        return *m_window;
    }
    ToolWindow& press(const QString& name) {
        auto* const button = m_window->findChild<DrawnButton*>(name);
        if (!button || !button->isVisible() || !button->isEnabled())
            qFatal("no button %s", qPrintable(name));
        button->click();
        if (!QTest::qWaitFor([this] { return !m_window->isWorking(); }))
            qFatal("%s doesn't end", qPrintable(name));
        return *m_window;
    }
    QWidget& dialog() {
        auto* const found = m_window->findChild<FileDialog*>();
        if (!found || !QTest::qWaitFor([found] {
                return found->isActiveWindow() && found->findChild<QTreeView*>()->model()->rowCount(
                                                      found->findChild<QTreeView*>()->rootIndex()) > 0;
            }))
            qFatal("no dialog");
        return *found;
    }
    QString fill(const QString& name, const QByteArray& bytes) {
        yedek::writeBytes(m_shop->file(name), bytes);
        return m_shop->file(name);
    }
    ToolWindow& readTable(const QByteArray& bytes) {
        transfer();
        press(u"iceaktar"_s);
        static_cast<aktar::AktarWindow&>(*m_window).readFile(fill(u"veri.csv"_s, bytes));
        if (!QTest::qWaitFor([this] { return !m_window->isWorking(); }))
            qFatal("reading doesn't end");
        return *m_window;
    }
    void sell(const QString& moment, double turnover, const QString& name) const {
        m_shop->run(
            u"INSERT INTO satislar (tarih, barkod, urun, adet, toplam, kar) VALUES ('%1', '%2', '%2', 1, %3, 2)"_s
                .arg(moment, name)
                .arg(turnover));
    }

    // The pages.
    QWidget& transfer() { return open<aktar::AktarWindow>(); }
    QWidget& exporting() {
        transfer();
        press(u"disaaktar"_s);
        return press(u"nedisa2"_s);
    }
    QWidget& noFile() {
        transfer();
        return press(u"iceaktar"_s);
    }
    QWidget& preview() {
        return readTable(
            "Barkod;Ürün adı;Satış fiyatı;Stok;Alış fiyatı;Kod;Raf;Not\n"
            "100;SÜT;13;9;10;a;b;c\n200;UN;2;1;1;a;b;c\n300;TUZ;x;1;1;a;b;c\n");
    }
    QWidget& result() {
        preview();
        return press(u"denetle"_s);
    }
    QWidget& fileToRead() {
        noFile();
        press(u"dosyasec"_s);
        return dialog();
    }
    QWidget& fileToWrite() {
        exporting();
        press(u"dosyasec"_s);
        return dialog();
    }
    QWidget& noCopies() { return open<yedek::Window>(m_place->path()); }
    QWidget& copies() {
        noCopies();
        press(u"yedekal"_s);
        const auto& card = *m_window->findChild<yedek::LastCopyCard*>();
        if (!QTest::qWaitFor([&] { return card.state() == yedek::LastCopyCard::State::good; }))
            qFatal("no copy");
        return *m_window;
    }
    QWidget& folder() {
        copies();
        press(u"klasorsec"_s);
        return dialog();
    }
    QWidget& days() {
        open<GrafikWindow>();
        return press(u"gun31"_s);
    }
    QWidget& goods() {
        days();
        return press(u"urun"_s);
    }
    QWidget& nothingSold() {
        open<GrafikWindow>();
        return press(u"dun"_s);
    }

    static QList<PageRow> pages() {
        using Test = EveryWindowTest;
        return {{"aktar", &Test::transfer},
                {"aktar, out", &Test::exporting},
                {"aktar, in without a file", &Test::noFile},
                {"aktar, preview", &Test::preview},
                {"aktar, result", &Test::result},
                {"file to read", &Test::fileToRead},
                {"file to write", &Test::fileToWrite},
                {"yedek without copies", &Test::noCopies},
                {"yedek", &Test::copies},
                {"folder", &Test::folder},
                {"grafik by days", &Test::days},
                {"grafik by products", &Test::goods},
                {"grafik of nothing", &Test::nothingSold}};
    }
    static void addPages() {
        QTest::addColumn<PageRow>("row");
        for (const PageRow& row : pages())
            QTest::newRow(row.name) << row;
    }
    static void addSizes(const QList<PageRow>& rows) {
        QTest::addColumn<SizeRow>("row");
        for (const PageRow& row : rows) {
            for (const QSize display : displays())
                QTest::addRow("%s %dx%d", row.name, display.width(), display.height())
                    << SizeRow{row, display};
        }
    }
    QWidget& openAt(const SizeRow& row) {
        setScreenMetricsSource([size = row.display] { return ScreenMetrics{size, 15, 15}; });
        return (this->*row.open)();
    }

private Q_SLOTS:
    void initTestCase() { isolateFromOtherTills(); }
    void init() {
        begin();
        qputenv("HOME", QFile::encodeName(m_shop->folder()));
        QDir().mkpath(m_shop->file(u"Documents/Eski"_s));
        QDir().mkpath(m_place->filePath(u"Eski"_s));
        fill(u"Documents/fiyatlar.csv"_s, "Barkod\n");
        m_shop->openShop();
        m_shop->setNow(QDateTime(QDate(2026, 11, 22), QTime(15, 0)));
        for (int day = 1; day <= 22; ++day)
            sell(u"2026-11-%1 09:00:00"_s.arg(day, 2, 10, QLatin1Char('0')), 123456.78 * day,
                 u"Elli harflik uzun ürün adı elli harflik uzun ü %1"_s.arg(day, 2));
        baglantikapat();
    }
    void cleanup() {
        m_window.reset();
        QVERIFY(allAnswered(m_shop->boxes));
        end();
    }

    void assistiveToolsAreToldOfEverything_data() { addPages(); }
    void assistiveToolsAreToldOfEverything() {
        QFETCH(const PageRow, row);
        const QWidget& page = (this->*row.open)();
        QCOMPARE(untoldControls(page).join(u'\n'), QString());
        QCOMPARE(untoldTables(page).join(u'\n'), QString());
    }

    void theCardIsRead_data() {
        addRows<CardRow>(
            {{"red", {&EveryWindowTest::noCopies, u"Henüz yedek yok"_s, u"dokunun"_s}},
             {"green", {&EveryWindowTest::copies, u"Son yedek: bugün 15:00"_s, u"denetlendi"_s}}});
    }
    void theCardIsRead() {
        QFETCH(const CardRow, row);
        (this->*row.open)();
        auto* const card = m_window->findChild<yedek::LastCopyCard*>();
        const QAccessibleInterface* const told = QAccessible::queryAccessibleInterface(card);
        QCOMPARE(told->text(QAccessible::Name), row.words);
        QVERIFY(told->text(QAccessible::Description).contains(row.hint));
    }

    void titlesAreWrittenAlike_data() { addPages(); }
    void titlesAreWrittenAlike() {
        QFETCH(const PageRow, row);
        const QString title = (this->*row.open)().windowTitle();
        const QLocale turkish(QLocale::Turkish, QLocale::Turkey);
        QCOMPARE(title, turkish.toUpper(title.left(1)) + turkish.toLower(title.mid(1)));
    }

    void focusMovesAreTold_data() { addPages(); }
    void focusMovesAreTold() {
        QFETCH(const PageRow, row);
        QWidget& page = (this->*row.open)();
        QTRY_VERIFY(QApplication::focusWidget() && page.isAncestorOf(QApplication::focusWidget()));
        const QWidget* const first = QApplication::focusWidget();
        FocusLog log;
        QStringList reached;
        do {
            log.clear();
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            reached << QApplication::focusWidget()->objectName();
            QVERIFY2(!log.last().trimmed().isEmpty(), qPrintable(reached.join(u' ')));
            QVERIFY2(reached.size() < 60, qPrintable(reached.join(u' ')));
        } while (QApplication::focusWidget() != first);
        // What can be pressed is reached; of a group one, from which the arrow keys go on.
        const auto isReached = [&](const QAbstractButton* button) {
            const auto group = button->group() ? button->group()->buttons() : QList<QAbstractButton*>();
            return reached.contains(button->objectName()) ||
                   std::ranges::any_of(group, [&](const QAbstractButton* other) {
                       return reached.contains(other->objectName());
                   });
        };
        for (const auto* button : page.findChildren<DrawnButton*>()) {
            if (button->isVisible() && button->isEnabled() && !button->objectName().isEmpty())
                QVERIFY2(isReached(button), qPrintable(button->objectName()));
        }
    }

    void fits_data() { addSizes(pages()); }
    void fits() {
        QFETCH(const SizeRow, row);
        QWidget& page = openAt(row);
        QTRY_COMPARE(layoutFaults(page).join(u'\n'), QString());
        const double scale = page.findChild<ActiveResize*>()->scale();
        constexpr int barWidth = 28;
        for (const QScrollBar* bar : page.findChildren<QScrollBar*>()) {
            const bool lies = bar->orientation() == Qt::Horizontal;
            if (bar->isVisible())
                QVERIFY2(bar->parentWidget()->contentsRect().contains(bar->rect()) &&
                             (lies ? bar->height() : bar->width()) >= qRound(barWidth * scale),
                         qPrintable(bar->parentWidget()->objectName()));
        }
    }

    void isLegible_data() { addPages(); }
    void isLegible() {
        QFETCH(const PageRow, row);
        QWidget& page = (this->*row.open)();
        QCoreApplication::processEvents();
        const QList<PaintedText> texts = paintedTexts(page);
        QVERIFY(!texts.isEmpty());
        for (const PaintedText& text : texts)
            QVERIFY2(text.middle >= legible,
                     qPrintable(u"%1 (%2): %3"_s.arg(text.text, text.control).arg(text.middle)));
    }
};

}  // namespace kovanix

int main(int argc, char** argv) {
    return kovanix::runTests<kovanix::EveryWindowTest>(argc, argv);
}
#include "test_everywindow.moc"
